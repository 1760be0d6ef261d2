// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Hostile input for the real binary: HTML naming pipes, devices and files; directory files that
// are pipes; file names that are not UTF-8; image data that does not decode.

#include "ImageSamples.h"
#include "Process.h"
#include "RecordingDesktop.h"
#include "TestSupport.h"
#include "platform/FileNames.h"

#include <QDir>
#include <QRandomGenerator>
#include <QUrlQuery>

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

using velmora::test::readFile;
using velmora::test::writeFile;

namespace {

struct ShareRun {
    int exitCode = -1; // -1: still running at the deadline, then killed
    QString err;
    QString plainBody; // of the URL printed by --print-url
};

class TrustInput : public ::testing::Test {
protected:
    void SetUp() override { QDir().mkpath(container.dataFolder() + QStringLiteral("/Contacts")); }

    // velmora-share --headless --print-url ARGS in the files folder; a last argument of raw
    // bytes reaches it as it is.
    ShareRun share(const QStringList& args, const QByteArray& in = {}, const QByteArray& raw = {}) {
        QList<QByteArray> words{"--headless", "--print-url"};
        for (const QString& arg : args)
            words.append(arg.toUtf8());
        if (!raw.isEmpty())
            words.append(raw);
        velmora::test::Process p(QStringLiteral(VELMORA_SHARE), words, in, files.path());
        // A hang fails the row instead of blocking the suite.
        const bool finished = p.finish(45000);
        const QUrlQuery query(QUrl(p.out().trimmed()).query());
        return {finished ? p.exitCode() : -1, p.err(),
                query.queryItemValue(QStringLiteral("plainBody"), QUrl::FullyDecoded)};
    }

    QString staging() const { return container.dataFolder() + QStringLiteral("/ShareFull"); }

    velmora::test::RecordingDesktop desktop; // nothing of the machine's desktop is used
    velmora::test::TempContainer container;
    QTemporaryDir files;
};

QString dataUrl(const QImage& image) {
    return QStringLiteral("data:image/png;base64,") +
           QString::fromLatin1(velmora::test::encoded(image, "png").toBase64());
}

// Only a decoded red image paints red: the composer itself paints nothing red.
bool showsRed(const QImage& shot) {
    for (int y = 0; y < shot.height(); ++y)
        for (int x = 0; x < shot.width(); ++x)
            if (const QColor c = shot.pixelColor(x, y); c.red() > 200 && c.green() < 60)
                return true;
    return false;
}

#if defined(__SANITIZE_THREAD__)
constexpr bool kPaints = false;
#else
constexpr bool kPaints = true;
#endif

TEST_F(TrustInput, SharedHtmlNeverReadsWhatItNames) {
    const QString fifo = files.filePath(QStringLiteral("pipe"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    // A red image: drawn, it would show; opened, the watch sees it.
    const QString canary = files.filePath(QStringLiteral("canary.png"));
    writeFile(canary, velmora::test::encoded(velmora::test::twoColourImage(8, 8), "png"));
    const int watch = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ASSERT_GE(
        ::inotify_add_watch(watch, QFile::encodeName(canary).constData(), IN_OPEN | IN_ACCESS), 0);
    QImage red(8, 8, QImage::Format_RGB32);
    red.fill(Qt::red);
    // Red with noise in blue compresses badly: its data: URL is over the limit.
    QImage noisy(300, 300, QImage::Format_RGB32);
    for (int y = 0; y < noisy.height(); ++y)
        for (int x = 0; x < noisy.width(); ++x)
            noisy.setPixel(x, y, qRgb(255, 0, QRandomGenerator::global()->bounded(1, 256)));

    const struct {
        const char* name;
        QString html;
        bool standardInput;
        bool showsRed;
    } rows[] = {
        {"pipe-device-and-canary-in-text",
         QStringLiteral("<head><link rel=stylesheet href=\"%1\"></head><body background=\"%1\">"
                        "<style>td { background-image: url(/dev/zero) }</style>"
                        "<p style=\"background-image: url(%2)\">one</p><img src=\"%1\">"
                        "<img src=\"%2\" width=40 height=30><img src=\"%3\" width=30 height=30>"
                        "<table><tr><td>2</td></tr></table></body>")
             .arg(canary, fifo, QUrl::fromLocalFile(canary).toString()),
         false, false},
        {"device-and-canary-on-standard-input",
         QStringLiteral("<body background=/dev/zero><table background=/dev/zero><tr>"
                        "<td background=/dev/zero>one</td></tr></table><table background=\"%1\">"
                        "<tr><td>2</td></tr></table><img src=\"%1\"></body>")
             .arg(canary),
         true, false},
        {"small-data-image", QStringLiteral("one<img src=\"%1\" width=60>").arg(dataUrl(red)),
         false, true},
        {"oversized-data-images",
         QStringLiteral("one<img src=\"%1\"><img src=\"data:image/png;base64,%2\">")
             .arg(dataUrl(noisy),
                  QString::fromLatin1(velmora::test::pngDeclaringSize(100000, 100000).toBase64())),
         true, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        // Drawing a decoded image, or the picture of the composer, makes Qt spread its blits over
        // its own thread pool, whose hand-overs ThreadSanitizer cannot see: there only the rows
        // that decode nothing run, and without a picture.
        if (!kPaints && row.html.contains(u"data:"))
            continue;
        const QString shot = files.filePath(QString::fromLatin1(row.name) + QStringLiteral(".png"));
        QStringList args =
            kPaints ? QStringList{QStringLiteral("--screenshot"), shot} : QStringList{};
        args += row.standardInput ? QStringList{QStringLiteral("-")}
                                  : QStringList{QStringLiteral("--text"), row.html};
        const ShareRun r = share(args, row.standardInput ? row.html.toUtf8() : QByteArray());
        ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
        EXPECT_TRUE(r.plainBody.contains(u"one")) << r.plainBody.toStdString();
        if (kPaints) {
            EXPECT_EQ(showsRed(QImage(shot)), row.showsRed);
        }
    }
    char events[4096];
    EXPECT_LT(::read(watch, events, sizeof events), 0) << "the canary was opened";
    readFile(canary); // the watch does see an open
    EXPECT_GT(::read(watch, events, sizeof events), 0);
    ::close(watch);
}

TEST_F(TrustInput, BadInputEndsCleanly) {
    const QByteArray rawName = QFile::encodeName(files.path()) + "/caf\xe9 \xff.txt";
    const int fd = ::open(rawName.constData(), O_WRONLY | O_CREAT, 0600);
    ASSERT_EQ(::write(fd, "kept", 4), 4);
    ::close(fd);
    const QByteArray png = velmora::test::encoded(velmora::test::twoColourImage(64, 48), "png");
    const QString hi = QStringLiteral("hi");

    const struct {
        const char* name;
        QString fifo; // made a named pipe for the run
        QStringList args;
        QByteArray standardInput;
        QByteArray rawArgument;
        int exitCode;
        QString said;       // on standard error
        QStringList staged; // exit 0: the staging folder's files, sorted
    } rows[] = {
        // clang-format off
        {"fifo-accounts", QStringLiteral("Accounts.plist"), {QStringLiteral("--text"), hi}, {}, {},
         0, QStringLiteral("Accounts.plist\": not a regular file"), {}},
        {"fifo-addresses", QStringLiteral("Contacts/Addresses.plist"),
         {QStringLiteral("--to"), QStringLiteral("ada@x.test"), QStringLiteral("--text"), hi}, {}, {},
         0, QStringLiteral("Addresses.plist\": not a regular file"), {}},
        {"file-name-not-utf8-relative-and-as-file-url", {}, {QStringLiteral("--text"), hi,
         QStringLiteral("file://") + QString::fromLatin1(rawName.toPercentEncoding("/"))}, {},
         "caf\xe9 \xff.txt", 0, {},
         {QStringLiteral("caf\ufffd \ufffd.txt"), QStringLiteral("caf\ufffd \ufffd_1.txt")}},
        {"truncated-png", {}, {QStringLiteral("-")}, png.left(png.size() / 2), {},
         2, QStringLiteral("png image data"), {}},
        {"png-declaring-100000-squared", {}, {QStringLiteral("-")},
         velmora::test::pngDeclaringSize(100000, 100000), {}, 2, QStringLiteral("png image data"), {}},
        {"text-that-starts-like-a-gif", {}, {QStringLiteral("-")}, "GIF89a hi\n", {}, 0, {}, {}},
        // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const QString fifo = container.dataFolder() + u'/' + row.fifo;
        if (!row.fifo.isEmpty()) {
            ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        }
        // Earlier rows' share folders gone, as after their grace period; one file left behind.
        QDir(staging()).removeRecursively();
        writeFile(staging() + QStringLiteral("/earlier.txt"), "earlier");
        const ShareRun r = share(row.args, row.standardInput, row.rawArgument);
        if (!row.fifo.isEmpty())
            QFile::remove(fifo);
        ASSERT_EQ(r.exitCode, row.exitCode) << r.err.toStdString();
        EXPECT_TRUE(r.err.contains(row.said)) << r.err.toStdString();
        if (row.exitCode != 0) {
            EXPECT_TRUE(QFile::exists(staging() + QStringLiteral("/earlier.txt"))) << "staged";
            continue;
        }
        EXPECT_TRUE(r.plainBody.contains(hi)) << r.plainBody.toStdString();
        // What this run staged lies in its own share folder.
        QStringList staged;
        for (const QFileInfo& own :
             QDir(staging()).entryInfoList({QStringLiteral("share-*")}, QDir::Dirs)) {
            for (const QString& name : QDir(own.filePath()).entryList(QDir::Files)) {
                staged.append(name);
                EXPECT_EQ(readFile(own.filePath() + u'/' + name), "kept");
            }
        }
        staged.sort();
        EXPECT_EQ(staged, row.staged);
    }
    ::unlink(rawName.constData()); // QTemporaryDir cannot name it
}

// Any bytes survive the trip through a name and back; a name shown or sent is valid UTF-8.
TEST(FileNames, AnyBytesRoundTrip) {
    QRandomGenerator random(11);
    for (int i = 0; i < 2000; ++i) {
        QByteArray bytes(random.bounded(12), '\0');
        for (char& b : bytes)
            b = char(random.bounded(3) ? random.bounded(1, 0x80) : random.bounded(0x80, 0x100));
        const QString name = velmora::FileNames::decode(bytes);
        ASSERT_EQ(velmora::FileNames::encode(name), bytes) << bytes.toHex().toStdString();
        ASSERT_TRUE(velmora::FileNames::displayable(name).toUtf8().isValidUtf8());
    }
    // An escape's own UTF-8 form is not UTF-8 (a surrogate): its three bytes stay three bytes.
    EXPECT_EQ(velmora::FileNames::encode(velmora::FileNames::decode("\xed\xb3\xbf")),
              QByteArray("\xed\xb3\xbf"));
}

} // namespace
