// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// velmora-share as the desktop's mail handler: the installed desktop entry in a desktop of its
// own, reached through xdg-email, gio open and the Email portal. What the entry claims is checked
// on the installed files.
#include "Process.h"
#include "RecordingDesktop.h"
#include "TestSupport.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUrl>
#include <QUrlQuery>

using velmora::test::Ran;
using velmora::test::readFile;
using velmora::test::writeFile;

namespace {

// A staged path as it would be without the share's own folder ("ShareFull/share-1-abc/x" gives
// "ShareFull/x"); a path outside such a folder comes back as it is, and so fails a comparison.
QString inStaging(const QString& path) {
    static const QRegularExpression ownFolder(QStringLiteral("/ShareFull/share-[^/]+/"));
    return QString(path).replace(ownFolder, QStringLiteral("/ShareFull/"));
}

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
        writeFile(applications() + QStringLiteral("/%1.desktop").arg(QLatin1String(kEntry)), entry);
        const Ran updated = runTool(QStringLiteral("update-desktop-database"), {applications()});
        ASSERT_EQ(updated.exitCode, 0) << updated.out.toStdString();
    }

    QString applications() const { return desktop.dataHome() + QStringLiteral("/applications"); }
    // Makes velmora-share the chosen mail handler, as xdg-mime default would.
    void chooseAsMailHandler() {
        writeFile(
            config.filePath(QStringLiteral("mimeapps.list")),
            "[Default Applications]\nx-scheme-handler/mailto=it.zemlo.velmora.share.desktop\n");
    }
    QUrlQuery received() {
        const QStringList urls = desktop.takeArguments(QString::fromLatin1(kMainApplication));
        EXPECT_EQ(urls.size(), 1) << urls.join(u'\n').toStdString();
        return urls.isEmpty() ? QUrlQuery()
                              : QUrlQuery(QUrl(urls.first()).query(QUrl::FullyEncoded));
    }
    static QString value(const QUrlQuery& q, const char* key) {
        return q.queryItemValue(QString::fromLatin1(key), QUrl::FullyDecoded);
    }

    velmora::test::RecordingDesktop desktop;
    velmora::test::TempContainer container;
    QTemporaryDir config;
    velmora::test::ScopedEnv configHome{"XDG_CONFIG_HOME", QFile::encodeName(config.path())};
    velmora::test::ScopedEnv noDesktop{"XDG_CURRENT_DESKTOP", QByteArray()};
    // The composer is driven without a window, as --headless would.
    velmora::test::ScopedEnv headless{"VELMORA_SHARE_TEST_HEADLESS", "1"};
    // xdg-open asks for a scheme's handler only in a graphical session; nothing connects to
    // this display, as the composer runs on the offscreen platform.
    velmora::test::ScopedEnv display{"DISPLAY", ":65000"};
    velmora::test::ScopedEnv noWayland{"WAYLAND_DISPLAY", QByteArray()};
    QTemporaryDir files;
};

TEST_F(MailHandler, XdgEmailAndGioOpenReachTheComposer) {
    chooseAsMailHandler();
    const QString report = files.filePath(QStringLiteral("quarterly report.pdf"));
    writeFile(report, "%PDF-1.4");
    const QString staging = container.dataFolder() + QStringLiteral("/ShareFull");

    const Ran email = runTool(QStringLiteral("xdg-email"),
                              {QStringLiteral("--attach"), report, QStringLiteral("--subject"),
                               QStringLiteral("Hi + hello"), QStringLiteral("--cc"),
                               QStringLiteral("carol@example.org"), QStringLiteral("--body"),
                               QStringLiteral("Two\nlines"), QStringLiteral("bob@example.org")});
    ASSERT_EQ(email.exitCode, 0) << email.out.toStdString();
    QUrlQuery q = received();
    EXPECT_EQ(value(q, "to"), QStringLiteral("bob@example.org;"));
    EXPECT_EQ(value(q, "cc"), QStringLiteral("carol@example.org;"));
    EXPECT_EQ(value(q, "subject"), QStringLiteral("Hi + hello"));
    EXPECT_EQ(value(q, "plainBody"), QStringLiteral("Two\nlines"));
    EXPECT_EQ(inStaging(value(q, "attachment_0")),
              staging + QStringLiteral("/quarterly report.pdf"));

    const Ran open = runTool(
        QStringLiteral("gio"),
        {QStringLiteral("open"), QStringLiteral("mailto:ann@example.org?subject=From%20gio")});
    ASSERT_EQ(open.exitCode, 0) << open.out.toStdString();
    q = received();
    EXPECT_EQ(value(q, "to"), QStringLiteral("ann@example.org;"));
    EXPECT_EQ(value(q, "subject"), QStringLiteral("From gio"));
}

// Starts a display, the GTK portal backend and the portal on the session bus that
// dbus-run-session made, then has the caller ask for a mail; exits with the caller's status, or
// 77 when a piece of the desktop cannot start here (its log is printed).
constexpr char kPortalSession[] = R"sh(
dir=$1; shift
export XDG_CURRENT_DESKTOP=GNOME XDG_DATA_DIRS=/usr/local/share:/usr/share GDK_BACKEND=x11
give_up() { echo "$1"; cat "$2" 2>/dev/null; kill $pids 2>/dev/null; exit 77; }
Xvfb -displayfd 3 -nolisten tcp 3>"$dir/display" 2>"$dir/xvfb.log" &
pids=$!
tries=0
while [ ! -s "$dir/display" ] && [ $tries -lt 200 ]; do sleep 0.1; tries=$((tries + 1)); done
[ -s "$dir/display" ] || give_up "Xvfb did not start:" "$dir/xvfb.log"
export DISPLAY=":$(cat "$dir/display")"
/usr/libexec/xdg-desktop-portal-gtk >"$dir/gtk.log" 2>&1 &
pids="$pids $!"
gdbus wait --session --timeout 30 org.freedesktop.impl.portal.desktop.gtk ||
    give_up "xdg-desktop-portal-gtk did not start:" "$dir/gtk.log"
/usr/libexec/xdg-desktop-portal >"$dir/portal.log" 2>&1 &
pids="$pids $!"
gdbus wait --session --timeout 30 org.freedesktop.portal.Desktop ||
    give_up "xdg-desktop-portal did not start:" "$dir/portal.log"
# The caller stands in for another application: what ThreadSanitizer reports inside its
# uninstrumented QtDBus thread is not this program's. velmora-share, started by the backend,
# keeps the sanitizer options it inherited.
TSAN_OPTIONS="${TSAN_OPTIONS:-}:report_bugs=0" "$@"
status=$?
kill $pids 2>/dev/null
exit $status
)sh";

TEST_F(MailHandler, TheEmailPortalReachesTheComposer) {
    for (const char* piece :
         {"/usr/bin/dbus-run-session", "/usr/bin/Xvfb", "/usr/libexec/xdg-desktop-portal",
          "/usr/libexec/xdg-desktop-portal-gtk"}) {
        if (!QFileInfo(QString::fromLatin1(piece)).isExecutable())
            GTEST_SKIP() << piece << " is not installed (packages dbus, xvfb, xdg-desktop-portal, "
                         << "xdg-desktop-portal-gtk); the route is tested through xdg-email";
    }
    chooseAsMailHandler();
    const QString report = files.filePath(QStringLiteral("portal report.pdf"));
    writeFile(report, "%PDF-1.4");
    QTemporaryDir session;
    const Ran ran =
        runTool(QStringLiteral("dbus-run-session"),
                {QStringLiteral("--"), QStringLiteral("sh"), QStringLiteral("-c"),
                 QString::fromLatin1(kPortalSession), QStringLiteral("sh"), session.path(),
                 QStringLiteral(VELMORA_PORTAL_CALL), QStringLiteral("dora@example.org"),
                 QStringLiteral("From a sandbox"), report});
    if (ran.exitCode == 77)
        GTEST_SKIP() << "the portal cannot run here: " << ran.out.toStdString();
    ASSERT_EQ(ran.exitCode, 0) << ran.out.toStdString();
    const QUrlQuery q = received();
    EXPECT_EQ(value(q, "to"), QStringLiteral("dora@example.org;"));
    EXPECT_EQ(value(q, "subject"), QStringLiteral("From a sandbox"));
    EXPECT_EQ(inStaging(value(q, "attachment_0")),
              container.dataFolder() + QStringLiteral("/ShareFull/portal report.pdf"));
}

} // namespace
