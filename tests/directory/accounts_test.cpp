// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "Shown.h"
#include "TestSupport.h"
#include "bridge/ExtensionUtilities.h"
#include "directory/ExtensionAccount.h"
#include "platform/Log.h"

using namespace velmora;
using velmora::test::ScopedEnv;
using velmora::test::shown;

namespace {

// An account as one line: mail, name, type, enabled, then each alias's mail, name, account.
QString line(const ExtensionAccount& a) {
    QStringList fields = shown({a.mail(), a.name()});
    fields << QString::number(a.type()) << QString::fromLatin1(a.enabled() ? "on" : "off");
    for (const auto& alias : a.aliases())
        fields << u'(' + shown({alias->mail(), alias->name(), alias->account()}).join(u' ') + u')';
    return fields.join(u' ');
}

// Both encodings the main application may write.
class AccountsFile : public ::testing::TestWithParam<bool> {
protected:
    QStringList read(const QByteArray& json) {
        if (!velmora::test::writePlist(container.dataFolder() + QStringLiteral("/Accounts.plist"),
                                       json, GetParam()))
            return {QStringLiteral("python3 is needed to write property lists")};
        QStringList lines;
        for (const auto& account : ExtensionUtilities::Accounts())
            lines << line(*account);
        return lines;
    }
    velmora::test::TempContainer container;
};

// A field of the wrong type ends the reading of its record, which keeps what came before; a
// bad alias is its own reader's failure, listed unfilled beside the good one.
TEST_P(AccountsFile, WrongTypesEndTheReadingButKeepTheRecord) {
    LogCapture log;
    EXPECT_EQ(read(R"([
        {"mail": "b@x.test", "name": "B", "type": 2, "enabled": true, "aliases": "oops"},
        {"mail": "c@x.test", "aliases": ["not a dictionary", {"mail": "ok@x.test"}]},
        {"mail": "d@x.test", "type": {"nested": 1}, "enabled": true},
        "not an account"
    ])"),
              (QStringList{R"("b@x.test" "B" 2 on)",
                           R"("c@x.test" "" 0 off (<null> <null> <null>) ("ok@x.test" "" ""))",
                           R"("d@x.test" "" 0 off)", R"(<null> <null> 0 off)"}));
    EXPECT_EQ(log.linesStartingWith(u"ExtensionAccount initWithDictonary ").size(), 3)
        << log.lines().join(u'\n').toStdString();
    EXPECT_EQ(log.linesStartingWith(u"ExtensionAlias initWithDictonary ").size(), 1);
    EXPECT_TRUE(read(R"({"mail": "a@x.test"})").isEmpty()) << "a root that is not an array";
}

INSTANTIATE_TEST_SUITE_P(Formats, AccountsFile, ::testing::Values(false, true),
                         [](const auto& info) { return info.param ? "binary" : "xml"; });

// A missing or malformed file is no accounts, unlogged; records describe themselves by mail.
TEST(Accounts, MissingOrMalformedFileIsNoAccountsWithoutALogLine) {
    const velmora::test::TempContainer container;
    LogCapture log;
    EXPECT_TRUE(ExtensionUtilities::Accounts().isEmpty());
    container.writeData(QStringLiteral("Accounts.plist"), "<plist><array><dict><key>mail</key>");
    EXPECT_TRUE(ExtensionUtilities::Accounts().isEmpty());
    EXPECT_TRUE(log.lines().isEmpty());

    container.writeData(QStringLiteral("Accounts.plist"),
                        "<plist><array><dict><key>mail</key><string>a@x.test</string>"
                        "<key>aliases</key><array><dict><key>mail</key><string>al@x.test</string>"
                        "</dict></array></dict></array></plist>");
    const auto accounts = ExtensionUtilities::Accounts();
    ASSERT_EQ(accounts.size(), 1);
    EXPECT_EQ(accounts[0]->description(), QStringLiteral("ExtensionAccount a@x.test"));
    EXPECT_EQ(accounts[0]->aliases().at(0)->description(),
              QStringLiteral("ExtensionAlias al@x.test"));
}

// Unnamed, the container is under XDG_DATA_HOME; a file in its way is no container, and logged.
TEST(Accounts, TheDefaultContainerIsUnderXdgDataHomeAndAMissingOneIsLogged) {
    QTemporaryDir dir;
    const QString file =
        dir.filePath(QStringLiteral("velmora/7QK4M2HXWD.velmora/SharedData/Accounts.plist"));
    velmora::test::writeFile(file, "<plist><array><dict/></array></plist>");
    const ScopedEnv container("VELMORA_GROUP_CONTAINER", "");
    const ScopedEnv bundle("VELMORA_BUNDLE_ID", "");
    const ScopedEnv data("XDG_DATA_HOME", QFile::encodeName(dir.path()));
    EXPECT_EQ(ExtensionUtilities::Accounts().size(), 1);

    const ScopedEnv blocked("XDG_DATA_HOME", QFile::encodeName(file));
    LogCapture log;
    EXPECT_TRUE(ExtensionUtilities::Accounts().isEmpty());
    EXPECT_EQ(log.linesStartingWith(u"[***ERROR***] NSFileCoordinator Accounts ").size(), 1);
}

} // namespace
