// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "bridge/ExtensionUtilities.h"
#include "directory/ExtensionAccount.h"
#include "platform/Log.h"

using namespace velmora;

namespace {

// Both encodings the main application may write.
class AccountsFile : public ::testing::TestWithParam<bool> {
protected:
    bool binary() const { return GetParam(); }
    void write(const QByteArray& json) {
        if (!velmora::test::writePlist(container.dataFolder() + QStringLiteral("/Accounts.plist"),
                                       json, binary()))
            GTEST_SKIP() << "python3 is needed to write property lists";
    }
    velmora::test::TempContainer container;
};

TEST_P(AccountsFile, ReadsEveryKeyWithItsDefaultsAndConversions) {
    write(R"([
        {},
        {"mail": "ada@x.test", "name": "Ada", "type": "3", "enabled": "YES",
         "aliases": [{"mail": "al@x.test", "name": "Al", "account": "acc-1"}, {}]},
        {"mail": "b@x.test", "type": 12, "enabled": 1},
        {"mail": "c@x.test", "enabled": "NO"},
        {"mail": "d@x.test", "enabled": true, "ignored": [1, 2]}
    ])");
    LogCapture log;
    const auto accounts = ExtensionUtilities::Accounts();
    ASSERT_EQ(accounts.size(), 5);

    EXPECT_EQ(accounts[0]->mail(), QStringLiteral("No Mail"));
    EXPECT_EQ(accounts[0]->name(), QStringLiteral(""));
    EXPECT_FALSE(accounts[0]->name().isNull());
    EXPECT_EQ(accounts[0]->type(), 0);
    EXPECT_FALSE(accounts[0]->enabled());
    EXPECT_TRUE(accounts[0]->aliases().isEmpty());

    EXPECT_EQ(accounts[1]->type(), 3);
    EXPECT_TRUE(accounts[1]->enabled());
    const auto aliases = accounts[1]->aliases();
    ASSERT_EQ(aliases.size(), 2);
    EXPECT_EQ(aliases[0]->mail(), QStringLiteral("al@x.test"));
    EXPECT_EQ(aliases[0]->name(), QStringLiteral("Al"));
    EXPECT_EQ(aliases[0]->account(), QStringLiteral("acc-1"));
    EXPECT_EQ(aliases[1]->mail(), QStringLiteral("No Mail"));
    EXPECT_EQ(aliases[1]->account(), QStringLiteral(""));
    EXPECT_EQ(aliases[0]->description(), QStringLiteral("ExtensionAlias al@x.test"));

    EXPECT_EQ(accounts[2]->type(), 12);
    EXPECT_TRUE(accounts[2]->enabled());
    EXPECT_FALSE(accounts[3]->enabled());
    EXPECT_TRUE(accounts[4]->enabled());
    EXPECT_EQ(accounts[4]->description(), QStringLiteral("ExtensionAccount d@x.test"));
    EXPECT_TRUE(log.lines().isEmpty()) << log.lines().join(u'\n').toStdString();
}

TEST_P(AccountsFile, WrongTypesEndTheReadingButKeepTheRecord) {
    write(R"([
        {"mail": "b@x.test", "name": "B", "type": 2, "enabled": true, "aliases": "oops"},
        {"mail": "c@x.test", "aliases": ["not a dictionary", {"mail": "ok@x.test"}]},
        {"mail": "d@x.test", "type": {"nested": 1}, "enabled": true},
        "not an account"
    ])");
    LogCapture log;
    const auto accounts = ExtensionUtilities::Accounts();
    ASSERT_EQ(accounts.size(), 4);

    // Fields before "aliases" are kept; the list is there and empty.
    EXPECT_EQ(accounts[0]->mail(), QStringLiteral("b@x.test"));
    EXPECT_EQ(accounts[0]->type(), 2);
    EXPECT_TRUE(accounts[0]->enabled());
    EXPECT_TRUE(accounts[0]->aliases().isEmpty());

    // A bad alias is its own reader's failure: it is listed, unfilled, beside the good one.
    const auto aliases = accounts[1]->aliases();
    ASSERT_EQ(aliases.size(), 2);
    EXPECT_TRUE(aliases[0]->mail().isNull());
    EXPECT_EQ(aliases[1]->mail(), QStringLiteral("ok@x.test"));

    EXPECT_EQ(accounts[2]->mail(), QStringLiteral("d@x.test"));
    EXPECT_FALSE(accounts[2]->enabled()) << "reading stopped at \"type\"";
    EXPECT_TRUE(accounts[3]->mail().isNull());

    EXPECT_EQ(log.linesStartingWith(u"ExtensionAccount initWithDictonary ").size(), 3)
        << log.lines().join(u'\n').toStdString();
    EXPECT_EQ(log.linesStartingWith(u"ExtensionAlias initWithDictonary ").size(), 1);
}

TEST_P(AccountsFile, RootThatIsNotAnArrayReadsAsNoAccounts) {
    write(R"({"mail": "a@x.test"})");
    EXPECT_TRUE(ExtensionUtilities::Accounts().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Formats, AccountsFile, ::testing::Values(false, true),
                         [](const auto& info) { return info.param ? "binary" : "xml"; });

TEST(Accounts, MissingOrMalformedFileIsNoAccountsWithoutALogLine) {
    const velmora::test::TempContainer container;
    LogCapture log;
    EXPECT_TRUE(ExtensionUtilities::Accounts().isEmpty());
    container.writeData(QStringLiteral("Accounts.plist"), "<plist><array><dict><key>mail</key>");
    EXPECT_TRUE(ExtensionUtilities::Accounts().isEmpty());
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST(Accounts, BetaBuildReadsTheBetaDataFolder) {
    const velmora::test::TempContainer container("it.zemlo.velmora.beta10.share");
    container.writeData(
        QStringLiteral("Accounts.plist"),
        "<plist><array><dict><key>mail</key><string>beta@x.test</string></dict></array></plist>");
    const auto accounts = ExtensionUtilities::Accounts();
    ASSERT_EQ(accounts.size(), 1);
    EXPECT_EQ(accounts[0]->mail(), QStringLiteral("beta@x.test"));
}

TEST(Accounts, NoContainerLogsTheCoordinationError) {
    QTemporaryDir dir;
    velmora::test::writeFile(dir.filePath(QStringLiteral("file")), "x");
    const velmora::test::ScopedEnv env("VELMORA_GROUP_CONTAINER",
                                       QFile::encodeName(dir.filePath(QStringLiteral("file/c"))));
    LogCapture log;
    EXPECT_TRUE(ExtensionUtilities::Accounts().isEmpty());
    EXPECT_EQ(log.linesStartingWith(u"[***ERROR***] NSFileCoordinator Accounts ").size(), 1);
}

} // namespace
