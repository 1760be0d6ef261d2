// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// The installed desktop entry as mail handler, reached through xdg-email, gio open and the portal.
#include "Process.h"
#include "RecordingDesktop.h"
#include "TestSupport.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUrl>
#include <QUrlQuery>

using velmora::test::Ran;
using velmora::test::readFile;
using velmora::test::writeFile;

namespace {

constexpr auto kEntry = "it.zemlo.velmora.share";
constexpr auto kMainApplication = "it.zemlo.velmora";

// Output and errors together, as the tools' messages are read by a person.
Ran runTool(const QString& program, const QStringList& args) {
    Ran ran = velmora::test::run(program, args);
    ran.out += ran.err;
    return ran;
}

class MailHandler : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* tool : {"gio", "update-desktop-database", "xdg-email"}) {
            if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty())
                GTEST_SKIP() << tool << " is not installed (scripts/bootstrap installs it)";
        }
        desktop.addApplication(QString::fromLatin1(kMainApplication));
        // The entry as installed, starting this build's program.
        QByteArray entry = readFile(QStringLiteral(VELMORA_DESKTOP_ENTRY));
        const QByteArray program = QFile::encodeName(QStringLiteral(VELMORA_SHARE));
        entry.replace("TryExec=velmora-share", "TryExec=" + program);
        entry.replace("Exec=velmora-share", "Exec=" + program);
        const QString applications = desktop.dataHome() + QStringLiteral("/applications");
        writeFile(applications + QStringLiteral("/%1.desktop").arg(QLatin1String(kEntry)), entry);
        const Ran updated = runTool(QStringLiteral("update-desktop-database"), {applications});
        ASSERT_EQ(updated.exitCode, 0) << updated.out.toStdString();
        // velmora-share as the chosen mail handler, as xdg-mime default would make it.
        writeFile(
            config.filePath(QStringLiteral("mimeapps.list")),
            "[Default Applications]\nx-scheme-handler/mailto=it.zemlo.velmora.share.desktop\n");
    }

    // key=value of the one URL the main application received; staged paths as D/ShareFull/NAME.
    QStringList received(const QStringList& keys) {
        const QStringList urls = desktop.takeArguments(QString::fromLatin1(kMainApplication));
        EXPECT_EQ(urls.size(), 1) << urls.join(u'\n').toStdString();
        const QUrlQuery q(QUrl(urls.value(0)).query(QUrl::FullyEncoded));
        static const QRegularExpression ownFolder(QStringLiteral("/ShareFull/share-[^/]+/"));
        QStringList values;
        for (const QString& key : keys)
            values << key + u'=' +
                          q.queryItemValue(key, QUrl::FullyDecoded)
                              .replace(ownFolder, QStringLiteral("/ShareFull/"))
                              .replace(container.dataFolder(), QStringLiteral("D"));
        return values;
    }

    velmora::test::RecordingDesktop desktop;
    velmora::test::TempContainer container;
    QTemporaryDir config;
    velmora::test::ScopedEnv configHome{"XDG_CONFIG_HOME", QFile::encodeName(config.path())};
    velmora::test::ScopedEnv noDesktop{"XDG_CURRENT_DESKTOP", QByteArray()};
    // The composer is driven without a window, as --headless would.
    velmora::test::ScopedEnv headless{"VELMORA_SHARE_TEST_HEADLESS", "1"};
    // xdg-open asks for a handler only in a graphical session; nothing connects to this display.
    velmora::test::ScopedEnv display{"DISPLAY", ":65000"};
    velmora::test::ScopedEnv noWayland{"WAYLAND_DISPLAY", QByteArray()};
    QTemporaryDir files;
};

TEST_F(MailHandler, XdgEmailAndGioOpenReachTheComposer) {
    const QString report = files.filePath(QStringLiteral("quarterly report.pdf"));
    writeFile(report, "%PDF-1.4");
    const Ran email = runTool(QStringLiteral("xdg-email"),
                              {"--attach", report, "--subject", "Hi + hello", "--cc",
                               "carol@example.org", "--body", "Two\nlines", "bob@example.org"});
    ASSERT_EQ(email.exitCode, 0) << email.out.toStdString();
    EXPECT_EQ(
        received({"to", "cc", "subject", "plainBody", "attachment_0"}),
        (QStringList{"to=bob@example.org;", "cc=carol@example.org;", "subject=Hi + hello",
                     "plainBody=Two\nlines", "attachment_0=D/ShareFull/quarterly report.pdf"}));

    const Ran open =
        runTool(QStringLiteral("gio"), {"open", "mailto:ann@example.org?subject=From%20gio"});
    ASSERT_EQ(open.exitCode, 0) << open.out.toStdString();
    EXPECT_EQ(received({"to", "subject"}),
              (QStringList{"to=ann@example.org;", "subject=From gio"}));
}

// Xvfb, the portal and its GTK backend on dbus-run-session's bus, then the caller (77: no portal).
constexpr char kPortalSession[] = R"sh(
dir=$1; shift
export XDG_CURRENT_DESKTOP=GNOME XDG_DATA_DIRS=/usr/local/share:/usr/share GDK_BACKEND=x11
trap 'kill $pids 2>/dev/null' EXIT
give_up() { echo "$1 did not start:"; cat "$dir/$1.log"; exit 77; }
Xvfb -displayfd 3 -nolisten tcp 3>"$dir/display" 2>"$dir/Xvfb.log" & pids=$!
for i in $(seq 200); do [ -s "$dir/display" ] && break; sleep 0.1; done
[ -s "$dir/display" ] || give_up Xvfb
export DISPLAY=":$(cat "$dir/display")"
/usr/libexec/xdg-desktop-portal-gtk >"$dir/gtk.log" 2>&1 & pids="$pids $!"
gdbus wait --session --timeout 30 org.freedesktop.impl.portal.desktop.gtk || give_up gtk
/usr/libexec/xdg-desktop-portal >"$dir/portal.log" 2>&1 & pids="$pids $!"
gdbus wait --session --timeout 30 org.freedesktop.portal.Desktop || give_up portal
# TSan's reports in the caller's uninstrumented QtDBus are not ours (velmora-share's still count).
TSAN_OPTIONS="${TSAN_OPTIONS:-}:report_bugs=0" "$@"
)sh";

TEST_F(MailHandler, TheEmailPortalReachesTheComposer) {
    for (const char* piece :
         {"/usr/bin/dbus-run-session", "/usr/bin/Xvfb", "/usr/libexec/xdg-desktop-portal",
          "/usr/libexec/xdg-desktop-portal-gtk"}) {
        if (!QFileInfo(QString::fromLatin1(piece)).isExecutable())
            GTEST_SKIP() << piece << " is not installed (packages dbus, xvfb, xdg-desktop-portal, "
                         << "xdg-desktop-portal-gtk); the route is tested through xdg-email";
    }
    const QString report = files.filePath(QStringLiteral("portal report.pdf"));
    writeFile(report, "%PDF-1.4");
    QTemporaryDir session;
    const Ran ran = runTool(QStringLiteral("dbus-run-session"),
                            {"--", "sh", "-c", kPortalSession, "sh", session.path(),
                             VELMORA_PORTAL_CALL, "dora@example.org", "From a sandbox", report});
    if (ran.exitCode == 77)
        GTEST_SKIP() << "the portal cannot run here: " << ran.out.toStdString();
    ASSERT_EQ(ran.exitCode, 0) << ran.out.toStdString();
    EXPECT_EQ(received({"to", "subject", "attachment_0"}),
              (QStringList{"to=dora@example.org;", "subject=From a sandbox",
                           "attachment_0=D/ShareFull/portal report.pdf"}));
}

} // namespace
