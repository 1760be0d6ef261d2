// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "ImageSamples.h"
#include "Process.h"
#include "RecordingDesktop.h"
#include "TestSupport.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QSet>
#include <QUrl>
#include <QUrlQuery>

#include <algorithm>

using velmora::test::attachmentPaths;
using velmora::test::readFile;
using velmora::test::writeFile;

namespace {

constexpr auto kMainApplication = "it.zemlo.velmora";

using ShareRun = velmora::test::Ran;

// The real velmora-share on a container of its own, whose main application is a recorder on a
// desktop of its own.
class ShareBinary : public ::testing::Test {
protected:
    void SetUp() override {
        desktop.addApplication(QString::fromLatin1(kMainApplication));
        if (!velmora::test::writePlist(container.dataFolder() + QStringLiteral("/Accounts.plist"),
                                       R"([
            {"mail": "ada@x.test", "type": 1, "enabled": true,
             "aliases": [{"mail": "lovelace@x.test", "account": "ada@x.test"}]},
            {"mail": "old@x.test", "type": 3, "enabled": true},
            {"mail": "bob@y.test", "type": 0, "enabled": true}
        ])",
                                       false) ||
            !velmora::test::writePlist(
                container.dataFolder() + QStringLiteral("/Contacts/Addresses.plist"), R"([
            {"mail": "grace@navy.test", "firstName": "Grace", "lastName": "Hopper", "rank": 5},
            {"mail": "grace.h@home.test", "firstName": "Grace", "rank": 1}
        ])",
                false) ||
            !velmora::test::writePlist(
                container.dataFolder() + QStringLiteral("/Contacts/Groups.plist"), R"([
            {"idx": "g1", "name": "Team", "addresses": [{"mail": "grace@navy.test"}]}
        ])",
                false))
            GTEST_SKIP() << "python3 is needed to write property lists";
    }

    static ShareRun run(const QStringList& args, const QByteArray& standardInput = {}) {
        return velmora::test::run(QStringLiteral(VELMORA_SHARE), args, standardInput);
    }
    // A headless run; the container comes from the environment (TempContainer sets it).
    ShareRun share(QStringList args, const QByteArray& standardInput = {}) {
        args.prepend(QStringLiteral("--headless"));
        return run(args, standardInput);
    }

    // The query of the one URL the main application was launched with.
    QUrlQuery received() {
        const QStringList urls = desktop.takeArguments(QString::fromLatin1(kMainApplication));
        EXPECT_EQ(urls.size(), 1) << urls.join(u'\n').toStdString();
        if (urls.isEmpty())
            return {};
        const QUrl url(urls.first(), QUrl::StrictMode);
        EXPECT_EQ(url.scheme(), QStringLiteral("velmora"));
        EXPECT_EQ(url.host(), QStringLiteral("send"));
        return QUrlQuery(url.query(QUrl::FullyEncoded));
    }
    static QString value(const QUrlQuery& query, const char* key) {
        return query.queryItemValue(QString::fromLatin1(key), QUrl::FullyDecoded);
    }

    QString staging() const { return container.dataFolder() + QStringLiteral("/ShareFull"); }
    // The folder of the share's own that holds every staged path, directly in the staging
    // folder; null when they are not all in one.
    QString ownFolder(const QStringList& staged) const {
        QSet<QString> folders;
        for (const QString& path : staged)
            folders.insert(QFileInfo(path).path());
        if (folders.size() != 1 || QFileInfo(*folders.begin()).path() != staging() ||
            !QFileInfo(*folders.begin()).fileName().startsWith(QStringLiteral("share-")))
            return {};
        return *folders.begin();
    }
    QString file(const QString& name, const QByteArray& bytes) {
        const QString path = files.filePath(name);
        writeFile(path, bytes);
        return path;
    }

    velmora::test::RecordingDesktop desktop;
    velmora::test::TempContainer container;
    QTemporaryDir files;
};

TEST_F(ShareBinary, HelpVersionAndUsageErrorsTouchNothing) {
    const ShareRun help = run({QStringLiteral("--help")});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_TRUE(help.out.contains(QStringLiteral("--print-url"))) << help.out.toStdString();
    const ShareRun version = run({QStringLiteral("--version")});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_TRUE(version.out.startsWith(QStringLiteral("velmora-share ")))
        << version.out.toStdString();

    const QString earlier = file(QStringLiteral("earlier.txt"), "kept");
    writeFile(staging() + QStringLiteral("/earlier.txt"), "kept");
    const QString text = file(QStringLiteral("words.txt"), "not a picture");
    // Messages are in the user's language (LANGUAGE), Qt's own parser's included.
    const struct {
        QStringList args;
        const char* named;
        const char* language;
    } rows[] = {
        {{QStringLiteral("--no-such-option")}, "no-such-option", ""},
        {{earlier, files.filePath(QStringLiteral("nope.txt"))}, "nope.txt", ""},
        {{QStringLiteral("http://[::1")}, "http://[::1", ""},
        {{QStringLiteral("--to"), QStringLiteral("grace@navy.test"), earlier}, "--headless", ""},
        {{QStringLiteral("--image"), text}, "words.txt", ""},
        {{QStringLiteral("--no-such-option")}, "Opzione sconosciuta 'no-such-option'", "it"},
        {{earlier, files.filePath(QStringLiteral("nope.txt"))},
         "file o cartella inesistente: ",
         "it"},
        {{QStringLiteral("--to"), QStringLiteral("grace@navy.test"), earlier},
         "--to richiede --headless\nProva 'velmora-share --help'.",
         "it"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.named);
        qputenv("LANGUAGE", row.language);
        const ShareRun bad = run(row.args);
        EXPECT_EQ(bad.exitCode, 2);
        EXPECT_TRUE(bad.err.contains(QString::fromUtf8(row.named))) << bad.err.toStdString();
    }
    qputenv("LANGUAGE", "it");
    EXPECT_TRUE(run({QStringLiteral("--help")}).out.contains(u"Stato di uscita:"));
    qunsetenv("LANGUAGE");
    // A window asked for where no compositor answers: a usage error, never Qt's abort.
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    qputenv("QT_QPA_PLATFORM", "wayland");
    qputenv("WAYLAND_DISPLAY", "no-compositor-here");
    const ShareRun noDisplay = run({earlier});
    qputenv("QT_QPA_PLATFORM", platform);
    qunsetenv("WAYLAND_DISPLAY");
    EXPECT_EQ(noDisplay.exitCode, 2);
    EXPECT_TRUE(noDisplay.err.contains(u"no Wayland compositor")) << noDisplay.err.toStdString();

    EXPECT_EQ(readFile(staging() + QStringLiteral("/earlier.txt")), "kept")
        << "a usage error must come before the staging folder is emptied";
    EXPECT_TRUE(desktop.recorded().isEmpty());
}

// The options and links of a headless run become the one URL sent. Contacts are matched on the
// exact mail only, and the groups file offers no group, so "Team" is typed text like any other;
// an alias sends for its account.
TEST_F(ShareBinary, OptionsAndLinksBecomeTheMessageSent) {
    const struct {
        const char* name;
        QStringList args;
        QStringList sent; // key=value, decoded
        QString html;     // a text the HTML body must hold; empty: not checked
    } rows[] = {
        {"web-link-with-title",
         {"--title", "Lake Bled & more", "https://example.test/lake?x=1&y=2", "--to",
          "grace@navy.test"},
         {"subject=Lake Bled & more", "plainBody=https://example.test/lake?x=1&y=2 ",
          "from=ada@x.test", "account=ada@x.test", "to=grace@navy.test;"},
         QStringLiteral("href=\"https://example.test/lake?x=1&amp;y=2\"")},
        {"recipients-known-unknown-and-a-group-name",
         {"--to", "grace.h@home.test", "--to", "GRACE@navy.test", "--to", "someone@else.test",
          "--to", "Team", "--subject", "Hello", "--body", "See you"},
         {"to=grace.h@home.test;GRACE@navy.test;someone@else.test;Team;", "subject=Hello",
          "plainBody=See you"},
         {}},
        {"alias", {"--from", "lovelace@x.test"}, {"from=ada@x.test", "account=ada@x.test"}, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const ShareRun r = share(row.args);
        ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
        const QUrlQuery q = received();
        QStringList sent;
        for (const QString& pair : row.sent) {
            const QString key = pair.section(u'=', 0, 0);
            sent.append(key + u'=' + q.queryItemValue(key, QUrl::FullyDecoded));
        }
        EXPECT_EQ(sent, row.sent);
        EXPECT_TRUE(value(q, "htmlBody").contains(row.html)) << value(q, "htmlBody").toStdString();
        EXPECT_TRUE(attachmentPaths(q).isEmpty());
    }

    // An account of a type that cannot send is refused, naming the addresses that can.
    const ShareRun typeThree = share({QStringLiteral("--from"), QStringLiteral("old@x.test")});
    EXPECT_EQ(typeThree.exitCode, 2);
    EXPECT_TRUE(typeThree.err.contains(QStringLiteral("lovelace@x.test")))
        << typeThree.err.toStdString();
    EXPECT_TRUE(desktop.takeRecord(QString::fromLatin1(kMainApplication), 1000).isEmpty());
}

TEST_F(ShareBinary, TwoFilesWithTheSameNameAreBothStaged) {
    const QString one = file(QStringLiteral("a/notes.txt"), "one");
    const QString two = file(QStringLiteral("b/notes.txt"), "two");
    // Left from an earlier share: never sent with this one.
    writeFile(staging() + QStringLiteral("/old.txt"), "old");
    const ShareRun r = share({one, QUrl::fromLocalFile(two).toString()});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    // The providers answer on worker threads, so either file may come first and keep the name.
    QStringList staged = attachmentPaths(received());
    QList<QByteArray> contents;
    for (const QString& path : staged)
        contents.append(readFile(path));
    staged.sort();
    std::sort(contents.begin(), contents.end());
    const QString folder = ownFolder(staged);
    ASSERT_FALSE(folder.isNull()) << staged.join(u' ').toStdString();
    EXPECT_EQ(staged, (QStringList{folder + QStringLiteral("/notes.txt"),
                                   folder + QStringLiteral("/notes_1.txt")}));
    EXPECT_EQ(contents, (QList<QByteArray>{"one", "two"}));
    // Young enough that the main application may still be reading it.
    EXPECT_EQ(readFile(staging() + QStringLiteral("/old.txt")), "old");
}

TEST_F(ShareBinary, ImagesFromAFileOrStandardInputAreStagedAsPng) {
    const QImage picture = velmora::test::twoColourImage(64, 48);
    const QString jpeg = file(QStringLiteral("photo.jpg"), velmora::test::encoded(picture, "jpg"));
    ShareRun r = share({QStringLiteral("--image"), jpeg});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    QStringList staged = attachmentPaths(received());
    const QString first = ownFolder(staged);
    ASSERT_EQ(staged, QStringList{first + QStringLiteral("/image.png")});
    ASSERT_FALSE(first.isNull());
    EXPECT_EQ(readFile(staged[0]).left(8), QByteArray("\x89PNG\r\n\x1a\n"));
    EXPECT_EQ(QImage(staged[0]).size(), picture.size());

    r = share({QStringLiteral("-")}, velmora::test::encoded(picture, "jpg"));
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    staged = attachmentPaths(received());
    const QString second = ownFolder(staged);
    ASSERT_EQ(staged, QStringList{second + QStringLiteral("/image.png")});
    ASSERT_FALSE(second.isNull());
    EXPECT_NE(second, first) << "two shares staged into one folder";
    const QImage fromStandardInput(staged[0]);
    EXPECT_EQ(fromStandardInput.size(), picture.size());
    EXPECT_TRUE(velmora::test::nearColour(fromStandardInput.pixelColor(4, 24), Qt::red));

    // Text on standard input is rich text: it reaches the body, and nothing is staged.
    r = share({QStringLiteral("-")}, "<p>Minutes of <b>Monday</b></p>");
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QUrlQuery q = received();
    EXPECT_TRUE(attachmentPaths(q).isEmpty());
    EXPECT_TRUE(value(q, "plainBody").startsWith(QStringLiteral("Minutes of Monday")))
        << value(q, "plainBody").toStdString();
}

TEST_F(ShareBinary, CancelAndPrintUrlLaunchNothing) {
    const QString notes = file(QStringLiteral("notes.txt"), "n");
    ShareRun r = share({QStringLiteral("--cancel"), notes});
    EXPECT_EQ(r.exitCode, 1) << r.err.toStdString();

    r = share(
        {QStringLiteral("--print-url"), QStringLiteral("--subject"), QStringLiteral("a b"), notes});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QStringList printed = r.out.split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(printed.size(), 1) << r.out.toStdString();
    EXPECT_TRUE(printed[0].startsWith(QStringLiteral("velmora://send?")));
    EXPECT_EQ(QUrlQuery(QUrl(printed[0]).query())
                  .queryItemValue(QStringLiteral("subject"), QUrl::FullyDecoded),
              QStringLiteral("a b"));
    EXPECT_TRUE(desktop.takeRecord(QString::fromLatin1(kMainApplication), 1000).isEmpty())
        << "neither a cancelled share nor a printed URL launches the main application";
}

TEST_F(ShareBinary, ScreenshotShowsTheComposerWithItsItems) {
    const QString picture =
        file(QStringLiteral("lake.png"),
             velmora::test::encoded(velmora::test::twoColourImage(300, 200), "png"));
    const QString shot = QStringLiteral(VELMORA_SCREENSHOT_DIR "/composer.png");
    QFile::remove(shot);
    const ShareRun r = share({QStringLiteral("--title"), QStringLiteral("Lake"),
                              QStringLiteral("https://example.test/lake"), picture,
                              QStringLiteral("--to"), QStringLiteral("grace@navy.test"),
                              QStringLiteral("--screenshot"), shot, QStringLiteral("--print-url")});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QImage image(shot);
    ASSERT_EQ(image.size(), QSize(600, 400));
    // The picture's thumbnail is in the strip (below y 232), red on the left, blue on the right.
    bool red = false;
    bool blue = false;
    for (int y = 240; y < 400; y += 4) {
        for (int x = 0; x < 300; x += 2) {
            red = red || velmora::test::nearColour(image.pixelColor(x, y), Qt::red);
            blue = blue || velmora::test::nearColour(image.pixelColor(x, y), Qt::blue);
        }
    }
    EXPECT_TRUE(red && blue) << "no thumbnail of the picture in " << shot.toStdString();
}

} // namespace
