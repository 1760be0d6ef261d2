#include "TestSupport.h"
#include "bridge/ConstVars.h"
#include "bridge/ExtensionUtilities.h"
#include "message/ExtensionMessage.h"
#include "platform/NotificationCenter.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <thread>

using namespace velmora;
using velmora::test::readFile;
using velmora::test::ScopedEnv;
using velmora::test::writeFile;

namespace {

// Desktop entries of every build of the main application in a private XDG data folder, each
// running a recorder that writes the tokens it inherited and its arguments to records/<build>.
class HostCommands : public ::testing::Test {
protected:
    void SetUp() override {
        // Written to a temporary name and moved, so a poll never reads half a record.
        const QString recorder = dir.filePath(QStringLiteral("recorder.sh"));
        writeFile(recorder, QByteArray(R"(#!/bin/sh
out="RECORDS/$1"; shift
{ echo "startup=${DESKTOP_STARTUP_ID-unset}"; echo "activation=${XDG_ACTIVATION_TOKEN-unset}"
  for a in "$@"; do printf 'arg=%s\n' "$a"; done; } > "$out.tmp" && mv "$out.tmp" "$out"
)")
                                .replace("RECORDS", QFile::encodeName(records())));
        QFile::setPermissions(recorder, QFile::permissions(recorder) | QFile::ExeOwner);
        QDir().mkpath(records());
        QDir().mkpath(dir.filePath(QStringLiteral("system")));
        for (const char* target : {"it.zemlo.velmora.beta8", "it.zemlo.velmora.beta10",
                                   "it.zemlo.velmora2", "it.zemlo.velmora"}) {
            writeFile(entry(QString::fromLatin1(target)),
                      QByteArray("[Desktop Entry]\nType=Application\nName=") + target +
                          "\nExec=\"" + QFile::encodeName(recorder) + "\" " + target + " %U\n");
        }
    }

    QString records() const { return dir.filePath(QStringLiteral("records")); }
    QString entry(const QString& target) const {
        return dir.filePath(QStringLiteral("home/applications/") + target +
                            QStringLiteral(".desktop"));
    }
    QStringList recorded() const { return QDir(records()).entryList(QDir::Files); }

    // The recorder's lines once it has run; the launched program is not our child, so poll.
    QStringList record(const QString& target) const {
        const QString path = records() + u'/' + target;
        QElapsedTimer timer;
        timer.start();
        while (!QFileInfo::exists(path) && timer.elapsed() < 20000)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        QStringList lines = QString::fromUtf8(readFile(path)).split(u'\n', Qt::SkipEmptyParts);
        QFile::remove(path);
        return lines;
    }

    QTemporaryDir dir;
    ScopedEnv home{"XDG_DATA_HOME", QFile::encodeName(dir.filePath(QStringLiteral("home")))};
    ScopedEnv system{"XDG_DATA_DIRS", QFile::encodeName(dir.filePath(QStringLiteral("system")))};
    // No session bus: GIO would otherwise announce the launch on the developer's desktop.
    ScopedEnv bus{"DBUS_SESSION_BUS_ADDRESS",
                  "unix:path=" + QFile::encodeName(dir.filePath(QStringLiteral("no-bus")))};
    ScopedEnv startup{"DESKTOP_STARTUP_ID", "startup-token"};
    ScopedEnv activation{"XDG_ACTIVATION_TOKEN", "activation-token"};
    ScopedEnv bundle{"VELMORA_BUNDLE_ID", "it.zemlo.velmora.share"};
};

UrlText url(const char* text) {
    return UrlText::fromString(QString::fromLatin1(text));
}

TEST_F(HostCommands, EachBundleIdentifierLaunchesItsBuild) {
    const struct {
        const char* self;
        const char* target;
    } rows[] = {
        {"it.zemlo.velmora.beta8.share", "it.zemlo.velmora.beta8"},
        {"it.zemlo.velmora.beta10.share", "it.zemlo.velmora.beta10"},
        {"it.zemlo.velmora2.share", "it.zemlo.velmora2"},
        {"it.zemlo.velmora.beta9.share", "it.zemlo.velmora"},
        {"org.example.other", "it.zemlo.velmora"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.self);
        const ScopedEnv self("VELMORA_BUNDLE_ID", row.self);
        ASSERT_TRUE(ExtensionUtilities::LaunchCommands({url("velmora://send?a=1")}, true));
        EXPECT_TRUE(record(QString::fromLatin1(row.target)).contains(u"arg=velmora://send?a=1"));
        EXPECT_TRUE(recorded().isEmpty()) << "another build was launched too";
    }
}

TEST_F(HostCommands, AllUrlsGoAsArgumentsOfOneLaunchAndOnlyForegroundPassesTokens) {
    const QList<UrlText> urls = {url("velmora://send?subject=Hi%20there&to=a%40b.c%3B"),
                                 url("velmora://Open?x=$(touch%20pwned)';*")};
    ASSERT_TRUE(ExtensionUtilities::LaunchCommands(urls, true));
    EXPECT_EQ(record(QStringLiteral("it.zemlo.velmora")),
              (QStringList{"startup=unset", "activation=unset",
                           "arg=velmora://send?subject=Hi%20there&to=a%40b.c%3B",
                           "arg=velmora://Open?x=$(touch%20pwned)';*"}));

    ASSERT_TRUE(ExtensionUtilities::LaunchCommands(urls.mid(0, 1), false));
    EXPECT_EQ(record(QStringLiteral("it.zemlo.velmora")),
              (QStringList{"startup=startup-token", "activation=activation-token",
                           "arg=velmora://send?subject=Hi%20there&to=a%40b.c%3B"}));
}

TEST_F(HostCommands, NothingToOpenOrNoApplicationGivesFalse) {
    EXPECT_FALSE(ExtensionUtilities::LaunchCommands({}, true));
    EXPECT_FALSE(ExtensionUtilities::LaunchCommands({UrlText()}, true));
    const QString release = entry(QStringLiteral("it.zemlo.velmora"));
    writeFile(release, readFile(release) + "Hidden=true\n");
    EXPECT_FALSE(ExtensionUtilities::LaunchCommands({url("velmora://send?a=1")}, false));
    QFile::remove(release);
    EXPECT_FALSE(ExtensionUtilities::LaunchCommands({url("velmora://send?a=1")}, false));
    // No fallback to another build.
    EXPECT_TRUE(recorded().isEmpty());
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
    EXPECT_EQ(record(QStringLiteral("it.zemlo.velmora")).mid(2),
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
    EXPECT_TRUE(recorded().isEmpty());
}

} // namespace
