// Hostile input for the real binary: shared HTML that names files, pipes and devices; directory
// files that are pipes; file names that are not UTF-8; image data that does not decode.

#include "ImageSamples.h"
#include "RecordingDesktop.h"
#include "TestSupport.h"
#include "platform/FileNames.h"

#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QProcess>
#include <QRandomGenerator>
#include <QUrl>
#include <QUrlQuery>

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

using velmora::test::readFile;
using velmora::test::writeFile;

namespace {

// A run that has not ended by then hangs: it fails instead of blocking the suite.
constexpr int kDeadlineMs = 45000;

struct ShareRun {
    bool finished = false;
    int exitCode = -1;
    QString err;
    QUrlQuery printed; // the query of the command URL printed by --print-url
};

class TrustInput : public ::testing::Test {
protected:
    void SetUp() override { QDir().mkpath(container.dataFolder() + QStringLiteral("/Contacts")); }

    // velmora-share --headless ARGS with stdin; ARGS may end with raw bytes (a file name that
    // QProcess would re-encode), handed over through the environment and a shell.
    ShareRun share(const QStringList& args, const QByteArray& standardInput = {},
                   const QByteArray& rawArgument = {}) {
        const velmora::test::ScopedEnv raw("VELMORA_TEST_RAW_ARGUMENT", rawArgument);
        QProcess p;
        p.setWorkingDirectory(files.path());
        p.start(QStringLiteral("/bin/sh"),
                QStringList{QStringLiteral("-c"),
                            QStringLiteral("if [ -n \"$VELMORA_TEST_RAW_ARGUMENT\" ]; then exec "
                                           "\"$0\" \"$@\" \"$VELMORA_TEST_RAW_ARGUMENT\"; fi; "
                                           "exec \"$0\" \"$@\""),
                            QStringLiteral(VELMORA_SHARE), QStringLiteral("--headless")} +
                    args);
        p.write(standardInput);
        p.closeWriteChannel();
        if (!p.waitForFinished(kDeadlineMs)) {
            p.kill();
            p.waitForFinished();
            return {false, -1, QString::fromUtf8(p.readAllStandardError()), {}};
        }
        const QUrl url(QString::fromUtf8(p.readAllStandardOutput()).trimmed());
        return {true, p.exitCode(), QString::fromUtf8(p.readAllStandardError()),
                QUrlQuery(url.query())};
    }
    static QString value(const QUrlQuery& q, const QString& key) {
        return q.queryItemValue(key, QUrl::FullyDecoded);
    }

    QString staging() const { return container.dataFolder() + QStringLiteral("/ShareFull"); }

    // A desktop of its own: nothing of the machine's is read or launched.
    velmora::test::RecordingDesktop desktop;
    velmora::test::TempContainer container;
    QTemporaryDir files;
};

QString dataUrl(const QByteArray& bytes) {
    return QStringLiteral("data:image/png;base64,") + QString::fromLatin1(bytes.toBase64());
}

// Red as only a decoded red image paints it: the composer itself paints nothing red.
qsizetype redPixels(const QImage& shot) {
    qsizetype count = 0;
    for (int y = 0; y < shot.height(); ++y) {
        for (int x = 0; x < shot.width(); ++x) {
            const QColor c = shot.pixelColor(x, y);
            count += c.red() > 200 && c.green() < 60;
        }
    }
    return count;
}

TEST_F(TrustInput, SharedHtmlNeverReadsWhatItNames) {
    const QString fifo = files.filePath(QStringLiteral("pipe"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    const QString canary = files.filePath(QStringLiteral("canary.png"));
    writeFile(canary, velmora::test::encoded(velmora::test::twoColourImage(8, 8), "png"));
    const int watch = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ASSERT_GE(watch, 0);
    ASSERT_GE(
        ::inotify_add_watch(watch, QFile::encodeName(canary).constData(), IN_OPEN | IN_ACCESS), 0);

    QImage red(8, 8, QImage::Format_RGB32);
    red.fill(Qt::red);
    // Red with noise in blue, so that it compresses badly: its data: URL is over the limit.
    QImage noisy(300, 300, QImage::Format_RGB32);
    for (int y = 0; y < noisy.height(); ++y)
        for (int x = 0; x < noisy.width(); ++x)
            noisy.setPixel(x, y, qRgb(255, 0, QRandomGenerator::global()->bounded(1, 256)));

    const struct {
        const char* name;
        QString html;
        bool standardInput;
        bool showsRed; // a decoded image shows; a placeholder never does
    } rows[] = {
        {"fifo-as-img-src",
         QStringLiteral("<p>one</p><img src=\"%1\" width=40 height=30>").arg(fifo), false, false},
        {"fifo-as-img-src-stdin", QStringLiteral("<p>one</p><img src=\"%1\">").arg(fifo), true,
         false},
        {"dev-zero-table-and-cell-background",
         QStringLiteral("<table background=\"/dev/zero\"><tr><td background=\"/dev/zero\">one</td>"
                        "</tr></table>"),
         true, false},
        {"dev-zero-body-background",
         QStringLiteral("<body background=\"/dev/zero\"><p>one</p></body>"), false, false},
        {"css-background-image",
         QStringLiteral("<style>td { background-image: url(/dev/zero) }</style><table><tr><td>"
                        "one</td></tr></table><p style=\"background-image: url('%1')\">two</p>")
             .arg(fifo),
         true, false},
        {"canary-everywhere",
         QStringLiteral("<html><head><link rel=\"stylesheet\" href=\"%1\"></head>"
                        "<body background=\"%1\"><p style=\"background-image: url(%1)\">one</p>"
                        "<img src=\"%1\"><img src=\"%2\" width=3000 height=3000></body></html>")
             .arg(canary, QUrl::fromLocalFile(canary).toString()),
         false, false},
        {"canary-everywhere-stdin",
         QStringLiteral("<table background=\"%1\"><tr><td>one</td></tr></table><img src=\"%1\">")
             .arg(canary),
         true, false},
        {"small-data-image",
         QStringLiteral("<p>one</p><img src=\"%1\" width=60 height=40>")
             .arg(dataUrl(velmora::test::encoded(red, "png"))),
         false, true},
        {"oversized-data-image",
         QStringLiteral("<p>one</p><img src=\"%1\">")
             .arg(dataUrl(velmora::test::encoded(noisy, "png"))),
         true, false},
        {"data-image-declaring-100000-squared",
         QStringLiteral("<p>one</p><img src=\"%1\">")
             .arg(dataUrl(velmora::test::pngDeclaringSize(100000, 100000))),
         false, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const QString shot = files.filePath(QString::fromLatin1(row.name) + QStringLiteral(".png"));
        QStringList args{QStringLiteral("--print-url"), QStringLiteral("--screenshot"), shot};
        if (row.standardInput)
            args.append(QStringLiteral("-"));
        else
            args += QStringList{QStringLiteral("--text"), row.html};
        QElapsedTimer timer;
        timer.start();
        const ShareRun r = share(args, row.standardInput ? row.html.toUtf8() : QByteArray());
        if (!r.finished || r.exitCode != 0) {
            ADD_FAILURE() << "exit " << r.exitCode << " after " << timer.elapsed() << " ms "
                          << r.err.toStdString();
            continue;
        }
        EXPECT_TRUE(value(r.printed, QStringLiteral("plainBody")).contains(u"one"));
        const QImage picture(shot);
        ASSERT_FALSE(picture.isNull());
        EXPECT_EQ(redPixels(picture) > 0, row.showsRed);
    }

    char events[4096];
    EXPECT_LT(::read(watch, events, sizeof events), 0) << "the canary was opened";
    // The watch does see an open: the check above can fail.
    readFile(canary);
    EXPECT_GT(::read(watch, events, sizeof events), 0);
    ::close(watch);
}

// Writes bytes under a raw (not necessarily UTF-8) path.
void writeRaw(const QByteArray& path, const QByteArray& bytes) {
    const int fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(::write(fd, bytes.constData(), size_t(bytes.size())), bytes.size());
    ::close(fd);
}

TEST_F(TrustInput, BadInputEndsCleanly) {
    const QByteArray rawName = QFile::encodeName(files.path()) + "/caf\xe9 \xff.txt";
    writeRaw(rawName, "contents kept");
    const QByteArray png = velmora::test::encoded(velmora::test::twoColourImage(64, 48), "png");
    const QByteArray jpeg = velmora::test::encoded(velmora::test::twoColourImage(64, 48), "jpg");
    const QString accounts = container.dataFolder() + QStringLiteral("/Accounts.plist");
    const QString addresses = container.dataFolder() + QStringLiteral("/Contacts/Addresses.plist");

    const struct {
        const char* name;
        QString fifo;     // made a named pipe for the run
        QStringList args; // after --headless --print-url
        QByteArray standardInput;
        QByteArray rawArgument; // a last argument as bytes
        int exitCode;
        QString said;       // on standard error
        QStringList staged; // names in the staging folder, sorted; exit 0 only
        QString bodyStart;  // exit 0 only
    } rows[] = {
        {"fifo-accounts",
         accounts,
         {QStringLiteral("--text"), QStringLiteral("hi")},
         {},
         {},
         0,
         QStringLiteral("Accounts.plist\": not a regular file"),
         {},
         QStringLiteral("hi")},
        {"fifo-addresses",
         addresses,
         {QStringLiteral("--to"), QStringLiteral("ada@x.test"), QStringLiteral("--text"),
          QStringLiteral("hi")},
         {},
         {},
         0,
         QStringLiteral("Addresses.plist\": not a regular file"),
         {},
         QStringLiteral("hi")},
        {"file-name-not-utf8",
         {},
         {QStringLiteral("file://") + QString::fromLatin1(rawName.toPercentEncoding("/"))},
         {},
         QByteArray("caf\xe9 \xff.txt"), // relative to the working directory
         0,
         {},
         {QStringLiteral("caf\ufffd \ufffd.txt"), QStringLiteral("caf\ufffd \ufffd_1.txt")},
         {}},
        {"truncated-png",
         {},
         {QStringLiteral("-")},
         png.left(png.size() / 2),
         {},
         2,
         QStringLiteral("png image data"),
         {},
         {}},
        {"png-declaring-100000-squared",
         {},
         {QStringLiteral("-")},
         velmora::test::pngDeclaringSize(100000, 100000),
         {},
         2,
         QStringLiteral("png image data"),
         {},
         {}},
        {"corrupt-jpeg",
         {},
         {QStringLiteral("-")},
         jpeg.left(20) + QByteArray(300, '\x55'),
         {},
         2,
         QStringLiteral("jpeg image data"),
         {},
         {}},
        {"text-starting-like-a-gif",
         {},
         {QStringLiteral("-")},
         "GIF89a was the format of 1989\n",
         {},
         0,
         {},
         {},
         QStringLiteral("GIF89a was the format of 1989")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        if (!row.fifo.isEmpty()) {
            ASSERT_EQ(::mkfifo(QFile::encodeName(row.fifo).constData(), 0600), 0);
        }
        writeFile(staging() + QStringLiteral("/earlier.txt"), "earlier");
        const ShareRun r = share(QStringList{QStringLiteral("--print-url")} + row.args,
                                 row.standardInput, row.rawArgument);
        if (!row.fifo.isEmpty())
            QFile::remove(row.fifo);
        if (!r.finished || r.exitCode != row.exitCode) {
            ADD_FAILURE() << "exit " << r.exitCode << " " << r.err.toStdString();
            continue;
        }
        EXPECT_TRUE(r.err.contains(row.said)) << r.err.toStdString();
        if (row.exitCode != 0) {
            EXPECT_TRUE(QFile::exists(staging() + QStringLiteral("/earlier.txt")));
            continue;
        }
        EXPECT_TRUE(value(r.printed, QStringLiteral("plainBody")).startsWith(row.bodyStart));
        QStringList staged = QDir(staging()).entryList(QDir::Files);
        staged.sort();
        EXPECT_EQ(staged, row.staged);
        for (const QString& name : staged)
            EXPECT_EQ(readFile(staging() + u'/' + name), "contents kept");
    }
    ::unlink(rawName.constData()); // QTemporaryDir cannot name it
}

// Every byte string survives the trip through a name and back; what is shown is valid UTF-8.
TEST(FileNames, AnyBytesRoundTrip) {
    QRandomGenerator random(11);
    for (int i = 0; i < 2000; ++i) {
        QByteArray bytes(random.bounded(12), '\0');
        for (char& b : bytes)
            b = char(random.bounded(256) > 200 ? random.bounded(0x80, 0x100)
                                               : random.bounded(1, 0x80));
        const QString name = velmora::FileNames::decode(bytes);
        ASSERT_EQ(velmora::FileNames::encode(name), bytes) << bytes.toHex().toStdString();
        ASSERT_TRUE(velmora::FileNames::displayable(name).toUtf8().isValidUtf8());
    }
    EXPECT_EQ(velmora::FileNames::decode("caf\xc3\xa9"), QStringLiteral("caf\u00e9"));
    // The UTF-8 form of an escape is not UTF-8 (a surrogate): its three bytes stay three bytes.
    EXPECT_EQ(velmora::FileNames::encode(velmora::FileNames::decode("\xed\xb3\xbf")),
              QByteArray("\xed\xb3\xbf"));
}

} // namespace
