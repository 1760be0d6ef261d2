// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "RecordingDesktop.h"
#include "TestSupport.h"
#include "bridge/ConstVars.h"
#include "bridge/ExtensionUtilities.h"
#include "message/ExtensionMessage.h"
#include "platform/NotificationCenter.h"

using namespace velmora;
using velmora::test::ScopedEnv;

namespace {

// Every build of the main application as a recorder on a desktop of its own.
class HostCommands : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* target : {"it.zemlo.velmora.beta8", "it.zemlo.velmora.beta10",
                                   "it.zemlo.velmora2", "it.zemlo.velmora"})
            desktop.addApplication(QString::fromLatin1(target));
    }

    QStringList record(const char* target = "it.zemlo.velmora") {
        return desktop.takeRecord(QString::fromLatin1(target));
    }

    velmora::test::RecordingDesktop desktop;
    ScopedEnv startup{"DESKTOP_STARTUP_ID", "startup-token"};
    ScopedEnv activation{"XDG_ACTIVATION_TOKEN", "activation-token"};
    ScopedEnv bundle{"VELMORA_BUNDLE_ID", "it.zemlo.velmora.share"};
};

UrlText url(const char* text) {
    return UrlText::fromString(QString::fromLatin1(text));
}

// Each build launches its own main application and reads its channel's data folder (case counts).
TEST_F(HostCommands, EachBundleIdentifierLaunchesItsBuild) {
    const struct {
        const char* self;
        const char* target;
        const char* folder;
    } rows[] = {
        {"it.zemlo.velmora.beta8.share", "it.zemlo.velmora.beta8", "SharedDataBeta"},
        {"it.zemlo.velmora2.share", "it.zemlo.velmora2", "SharedData"},
        {"it.zemlo.velmora.beta9.share", "it.zemlo.velmora", "SharedDataBeta"},
        {"IT.ZEMLO.VELMORA.BETA8.share", "it.zemlo.velmora", "SharedData"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.self);
        const ScopedEnv self("VELMORA_BUNDLE_ID", row.self);
        EXPECT_EQ(ExtensionUtilities::GroupFolderName(), QLatin1String(row.folder));
        ASSERT_TRUE(ExtensionUtilities::LaunchCommands({url("velmora://send?a=1")}, true));
        EXPECT_TRUE(record(row.target).contains(u"arg=velmora://send?a=1"));
        EXPECT_TRUE(desktop.recorded().isEmpty()) << "another build was launched too";
    }
}

TEST_F(HostCommands, AllUrlsGoAsArgumentsOfOneLaunchAndOnlyForegroundPassesTokens) {
    const QList<UrlText> urls = {url("velmora://send?subject=Hi%20there&to=a%40b.c%3B"),
                                 url("velmora://Open?x=$(touch%20pwned)';*")};
    EXPECT_FALSE(ExtensionUtilities::LaunchCommands({UrlText()}, true)) << "nothing to open";
    ASSERT_TRUE(ExtensionUtilities::LaunchCommands(urls, true));
    EXPECT_EQ(record(), (QStringList{"startup=unset", "activation=unset",
                                     "arg=velmora://send?subject=Hi%20there&to=a%40b.c%3B",
                                     "arg=velmora://Open?x=$(touch%20pwned)';*"}));

    ASSERT_TRUE(ExtensionUtilities::LaunchCommands(urls.mid(0, 1), false));
    EXPECT_EQ(record(), (QStringList{"startup=startup-token", "activation=activation-token",
                                     "arg=velmora://send?subject=Hi%20there&to=a%40b.c%3B"}));
}

TEST_F(HostCommands, MessageCommandsEncodeTheAccountOnlyAndNotifyPerMessage) {
    const auto message = [](const char* account, const char* id, int folder) {
        auto m = ExtensionMessage::init();
        m->setAccount(QString::fromUtf8(account));
        m->setMessageId(QString::fromUtf8(id));
        m->setFolderStandardId(folder);
        return m;
    };
    const auto encoded = message("me+work@example.org&x", "id+1@host&k=v", 3);
    const auto unparsable = message("me@example.org", "has space", 1);
    const auto empty = std::make_shared<ExtensionMessage>();

    QList<std::pair<ExtensionMessage*, QString>> notified;
    const int observer = NotificationCenter::defaultCenter().addObserver(
        ConstVars::actionCalledExtension, [&](const Notification& n) {
            const QVariantMap object = n.object.toMap();
            notified.append(
                {object[QStringLiteral("message")].value<std::shared_ptr<ExtensionMessage>>().get(),
                 object[QStringLiteral("command")].toString()});
        });
    EXPECT_TRUE(ExtensionUtilities::LaunchCommandForMessages({encoded, unparsable, empty},
                                                             ConstVars::commandArchive, true));
    EXPECT_EQ(record().mid(2),
              (QStringList{"arg=velmora://archive?mail=me%2Bwork%40example.org%26x&messageid=id+1@"
                           "host&k=v&folderstandardid=3",
                           "arg=velmora://archive?mail=(null)&messageid=(null)&folderstandardid=("
                           "null)"}));
    EXPECT_EQ(notified, (QList<std::pair<ExtensionMessage*, QString>>{{encoded.get(), "archive"},
                                                                      {empty.get(), "archive"}}));

    notified.clear();
    EXPECT_FALSE(ExtensionUtilities::LaunchCommandForMessages({unparsable}, "delete", true));
    EXPECT_FALSE(ExtensionUtilities::LaunchCommandForMessages({}, "delete", true));
    NotificationCenter::defaultCenter().removeObserver(observer);
    EXPECT_TRUE(notified.isEmpty());
    EXPECT_TRUE(desktop.recorded().isEmpty());
}

} // namespace
