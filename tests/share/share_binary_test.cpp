// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "ImageSamples.h"
#include "Process.h"
#include "RecordingDesktop.h"
#include "TestSupport.h"

#include <QFileInfo>
#include <QImage>
#include <QUrl>
#include <QUrlQuery>

using velmora::test::readFile;
using velmora::test::writeFile;

namespace {

const QString kMainApplication = QStringLiteral("it.zemlo.velmora");

// The real velmora-share on a container and a recording desktop of its own.
class ShareBinary : public ::testing::Test {
protected:
    void SetUp() override {
        desktop.addApplication(kMainApplication);
        const auto plist = [this](const char* name, const char* json) {
            return velmora::test::writePlist(container.dataFolder() + QLatin1String(name), json,
                                             false);
        };
        if (!plist("/Accounts.plist", R"([
            {"mail": "ada@x.test", "type": 1, "enabled": true,
             "aliases": [{"mail": "lovelace@x.test", "account": "ada@x.test"}]},
            {"mail": "old@x.test", "type": 3, "enabled": true},
            {"mail": "bob@y.test", "type": 0, "enabled": true}])") ||
            !plist("/Contacts/Addresses.plist", R"([
            {"mail": "grace@navy.test", "firstName": "Grace", "lastName": "Hopper", "rank": 5},
            {"mail": "grace.h@home.test", "firstName": "Grace", "rank": 1}])") ||
            !plist(
                "/Contacts/Groups.plist",
                R"([{"idx": "g1", "name": "Team", "addresses": [{"mail": "grace@navy.test"}]}])"))
            GTEST_SKIP() << "python3 is needed to write property lists";
        // Each file holds its own name, so a staged copy shows where it came from.
        for (const char* name : {"my report.pdf", "résumé ü.txt", ".ssh/id_rsa", "plain.txt"})
            writeFile(at(QString::fromUtf8(name)), name);
    }

    QString at(const QString& name) const { return files.filePath(name); }
    QString staging() const { return container.dataFolder() + QStringLiteral("/ShareFull"); }

    velmora::test::RecordingDesktop desktop;
    velmora::test::TempContainer container;
    QTemporaryDir files;
};

// Usage errors reach the user in the user's language (LANGUAGE), Qt's parser's included; a
// window where no compositor answers is a usage error too, never Qt's abort.
TEST_F(ShareBinary, UsageErrorsTouchNothingAndSpeakTheUsersLanguage) {
    const QString earlier = at(QStringLiteral("plain.txt"));
    writeFile(staging() + QStringLiteral("/earlier.txt"), "kept");
    const struct {
        QStringList args;
        const char* language;
        const char* platform;
        int exitCode;
        const char* said; // on standard output for exit 0, on standard error otherwise
    } rows[] = {
        {{"--help"}, "", "offscreen", 0, "--print-url"},
        {{"--version"}, "", "offscreen", 0, "velmora-share "},
        {{"--image", earlier}, "", "offscreen", 2, "not an image: "},
        {{"--no-such-option"}, "it", "offscreen", 2, "Opzione sconosciuta 'no-such-option'"},
        {{"--to", "grace@navy.test", earlier},
         "it",
         "offscreen",
         2,
         "--to richiede --headless\nProva 'velmora-share --help'."},
        {{earlier}, "", "wayland", 2, "no Wayland compositor"},
    };
    const velmora::test::ScopedEnv display("WAYLAND_DISPLAY", "no-compositor-here");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.said);
        const velmora::test::ScopedEnv language("LANGUAGE", row.language);
        const velmora::test::ScopedEnv platform("QT_QPA_PLATFORM", row.platform);
        const velmora::test::Ran ran = velmora::test::run(QStringLiteral(VELMORA_SHARE), row.args);
        EXPECT_EQ(ran.exitCode, row.exitCode);
        const QString& stream = row.exitCode == 0 ? ran.out : ran.err;
        EXPECT_TRUE(stream.contains(QString::fromUtf8(row.said))) << stream.toStdString();
    }
    EXPECT_EQ(readFile(staging() + QStringLiteral("/earlier.txt")), "kept")
        << "a usage error must come before the staging folder is emptied";
    EXPECT_TRUE(desktop.takeRecord(kMainApplication, 1000).isEmpty());
}

// Headless runs print the one URL; contacts match on the exact mail only and "Team" is no group.
TEST_F(ShareBinary, HeadlessRunsPrintTheMessageSent) {
    // Large enough that its thumbnail is still being made when the screenshot is due.
    const QImage picture = velmora::test::twoColourImage(600, 400);
    const QByteArray jpeg = velmora::test::encoded(picture, "jpg");
    writeFile(at(QStringLiteral("photo.jpg")), jpeg);
    writeFile(at(QStringLiteral("lake.png")), velmora::test::encoded(picture, "png"));
    // The composer's picture, kept for whoever wants to look at it.
    const QString shot = QStringLiteral(VELMORA_SCREENSHOT_DIR "/composer.png");
    QFile::remove(shot);
    // A path in a mailto: URI as a program writes it: spaces and non-ASCII letters as %XX.
    const auto escaped = [](const QString& text) {
        return QString::fromLatin1(QUrl::toPercentEncoding(text, "/"));
    };
    const QString dirUrl = escaped(QUrl::fromLocalFile(files.path()).toString(QUrl::FullyEncoded));
    const struct Row {
        const char* name;
        QStringList args{};
        QByteArray in{};
        int exitCode = 0;
        QStringList sent{};   // key=value of the URL, decoded; "no <key>" for a key it lacks
        QStringList said{};   // texts on standard error
        QStringList staged{}; // names of the staged files, sorted
        QString html{};       // a text the HTML body holds
    } rows[] = {
        {.name = "web-link-with-title-and-a-picture-in-the-screenshot",
         .args = {"--title", "Lake Bled & more", "https://example.test/lake?x=1&y=2", "--to",
                  "grace@navy.test", at("lake.png"), "--screenshot", shot},
         .sent = {"subject=Lake Bled & more", "plainBody=https://example.test/lake?x=1&y=2 ",
                  "from=ada@x.test", "account=ada@x.test", "to=grace@navy.test;"},
         .staged = {"lake.png"},
         .html = QStringLiteral("href=\"https://example.test/lake?x=1&amp;y=2\"")},
        {.name = "recipients-known-unknown-and-a-group-name-from-an-alias",
         .args = {"--to", "grace.h@home.test", "--to", "GRACE@navy.test", "--to",
                  "someone@else.test", "--to", "Team", "--subject", "Hello", "--body", "See you",
                  "--from", "lovelace@x.test"},
         .sent = {"to=grace.h@home.test;GRACE@navy.test;someone@else.test;Team;", "subject=Hello",
                  "plainBody=See you", "from=ada@x.test", "account=ada@x.test"}},
        {.name = "account-that-cannot-send",
         .args = {"--from", "old@x.test"},
         .exitCode = 2,
         .said = {"lovelace@x.test"}},
        {.name = "cancelled", .args = {"--cancel", at("plain.txt")}, .exitCode = 1},
        {.name = "image-file-and-image-on-standard-input",
         .args = {"--image", at("photo.jpg"), "-"},
         .in = jpeg,
         .staged = {"image.png", "image_1.png"}},
        {.name = "rich-text-on-standard-input",
         .args = {"-"},
         .in = "<p>Minutes of <b>Monday</b></p>",
         .sent = {"plainBody=Minutes of Monday\n\n "}},
        {.name = "mailto-utf8-escapes-and-a-literal-plus",
         .args = {"mailto:J%C3%BCrgen@b%C3%A4r.test,a+tag@x.test?subject=Gr%C3%BC%C3%9Fe%20%26%20"
                  "1+1%3D2&body=Line%201%0D%0ALine%202%0A%0Aa+b"},
         .sent = {"to=Jürgen@bär.test;a+tag@x.test;", "subject=Grüße & 1+1=2",
                  "plainBody=Line 1\nLine 2\n\na+b"}},
        {.name = "mailto-recipients-in-path-and-headers-and-known-contact",
         .args = {"MAILTO:a@x.test,grace@navy.test?to=c@x.test,%20d@x.test&TO=e@x.test"
                  "&cc=c1@x.test,c2@x.test&bcc=b@x.test&Cc=c3@x.test",
                  "--bcc", "b2@x.test"},
         .sent = {"to=a@x.test;grace@navy.test;c@x.test;d@x.test;e@x.test;",
                  "cc=c1@x.test;c2@x.test;c3@x.test;", "bcc=b@x.test;b2@x.test;", "no subject"}},
        {.name = "mailto-attachments-file-uri-raw-path-and-spaces",
         .args = {QStringLiteral("mailto:a@x.test?attach=%1/my%2520report.pdf&ATTACHMENT=%2"
                                 "&attachment=file://%3/plain.txt")
                      .arg(dirUrl, escaped(at(QStringLiteral("résumé ü.txt"))), files.path())},
         .sent = {"to=a@x.test;"},
         .staged = {"my report.pdf", "plain.txt", "résumé ü.txt"}},
        {.name = "mailto-beside-other-items-with-unknown-headers",
         .args = {"mailto:a@x.test?X-Mailer=evil&subject=Files&In-Reply-To=%3Cid%40x%3E&body=Here",
                  at("plain.txt"), "--cc", "k@x.test"},
         .sent = {"to=a@x.test;", "cc=k@x.test;", "subject=Files", "plainBody=Here"},
         .said = {"ignored the header x-mailer"},
         .staged = {"plain.txt"}},
        {.name = "mailto-empty", .args = {"mailto:"}, .sent = {"no to", "no subject"}},
        {.name = "mailto-refused-attachments",
         .args = {"mailto:a@x.test?attach=" + at(".ssh/id_rsa") +
                  "&attach=http://evil.test/x.pdf&attach=file:///etc/hostname"},
         .exitCode = 2,
         .said = {"id_rsa (a hidden file or folder)", "http://evil.test/x.pdf (not a local file)",
                  "/etc/hostname (in the system folder"}},
        {.name = "mailto-malformed-escape",
         .args = {"mailto:a@x.test?subject=50%25%2"},
         .exitCode = 2,
         .said = {"malformed mailto: URI"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const velmora::test::Ran ran = velmora::test::run(
            QStringLiteral(VELMORA_SHARE),
            QStringList{QStringLiteral("--headless"), QStringLiteral("--print-url")} + row.args,
            row.in);
        ASSERT_EQ(ran.exitCode, row.exitCode) << ran.err.toStdString();
        for (const QString& said : row.said)
            EXPECT_TRUE(ran.err.contains(said)) << ran.err.toStdString();
        const QString out = ran.out.trimmed();
        if (row.exitCode != 0) {
            EXPECT_TRUE(out.isEmpty()) << "nothing may be sent: " << out.toStdString();
            continue;
        }
        const QUrl url(out, QUrl::StrictMode);
        ASSERT_EQ(url.toString(QUrl::RemoveQuery), QStringLiteral("velmora://send"))
            << out.toStdString();
        const QUrlQuery q(url.query(QUrl::FullyEncoded));
        QStringList sent;
        for (const QString& pair : row.sent) {
            const QString key = pair.startsWith(u"no ") ? pair.mid(3) : pair.section(u'=', 0, 0);
            sent.append(q.hasQueryItem(key) ? key + u'=' + q.queryItemValue(key, QUrl::FullyDecoded)
                                            : QStringLiteral("no ") + key);
        }
        EXPECT_EQ(sent, row.sent);
        EXPECT_TRUE(
            q.queryItemValue(QStringLiteral("htmlBody"), QUrl::FullyDecoded).contains(row.html));
        // Images staged as PNG of the picture, files as copies of their own.
        QStringList staged;
        for (const QString& path : velmora::test::attachmentPaths(q)) {
            const QFileInfo info(path);
            staged.append(info.fileName());
            if (info.suffix() != u"png") {
                EXPECT_EQ(readFile(path), info.fileName().toUtf8());
                continue;
            }
            const QImage image(path, "png"); // decodes only as what it claims to be
            EXPECT_EQ(image.size(), picture.size());
            EXPECT_TRUE(velmora::test::nearColour(image.pixelColor(4, 24), Qt::red));
        }
        staged.sort();
        EXPECT_EQ(staged, row.staged);
    }
    EXPECT_TRUE(desktop.takeRecord(kMainApplication, 1000).isEmpty())
        << "neither a printed URL nor a failed or cancelled share launches the main application";

    // The picture's thumbnail is in the strip (below y 232), red on the left, blue on the right.
    const QImage image(shot);
    ASSERT_EQ(image.size(), QSize(600, 400));
    bool red = false, blue = false;
    for (int i = 0; i < 40 * 150; ++i) { // every 2nd pixel of every 4th row of the left half
        const QColor c = image.pixelColor(i % 150 * 2, 240 + i / 150 * 4);
        red = red || velmora::test::nearColour(c, Qt::red);
        blue = blue || velmora::test::nearColour(c, Qt::blue);
    }
    EXPECT_TRUE(red && blue) << "no thumbnail of the picture in " << shot.toStdString();
}

} // namespace
