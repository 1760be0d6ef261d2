// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Hostile input for the real binary: HTML naming pipes, devices and files; directory files that
// are pipes; file names that are not UTF-8; image data that does not decode; shared files that
// are pipes, vanish, copy slowly or are sparse; a main application that cannot be started.

#include "ImageSamples.h"
#include "Process.h"
#include "RecordingDesktop.h"
#include "TestSupport.h"
#include "platform/FileNames.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QRandomGenerator>
#include <QUrlQuery>

#include <fcntl.h>
#include <functional>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

using velmora::test::Ran;
using velmora::test::readFile;
using velmora::test::writeFile;

namespace {

const QString kMainApplication = QStringLiteral("it.zemlo.velmora");

// The real binary, headless, on a container and a desktop of its own.
class Trust : public ::testing::Test {
protected:
    void SetUp() override { QDir().mkpath(container.dataFolder() + QStringLiteral("/Contacts")); }

    // velmora-share --headless ARGS in the files folder; a last argument of raw bytes reaches it
    // as it is. Earlier runs' folders are gone first, as after their grace period. during runs
    // once the share has made its own folder, before any item is copied when copies are slowed.
    Ran share(const QStringList& args, const QByteArray& in = {}, const QByteArray& raw = {},
              int copyDelayMs = 0, const std::function<void()>& during = {}) {
        QDir(staging()).removeRecursively();
        const velmora::test::ScopedEnv delay("VELMORA_TEST_COPY_DELAY_MS",
                                             copyDelayMs > 0 ? QByteArray::number(copyDelayMs)
                                                             : QByteArray());
        QList<QByteArray> words{"--headless"};
        for (const QString& arg : args)
            words.append(QFile::encodeName(arg));
        if (!raw.isEmpty())
            words.append(raw);
        velmora::test::Process p(QStringLiteral(VELMORA_SHARE), words, in, files.path());
        if (during) {
            const QDeadlineTimer deadline(30000);
            while (ownFolder().isNull() && !deadline.hasExpired() && p.running())
                ::usleep(10000); // polled against the deadline
            during();
        }
        // A hang fails the row instead of blocking the suite.
        if (!p.finish(120000))
            return {-1, p.out(), p.err()};
        return {p.exitCode(), p.out(), p.err()};
    }
    // The plain body of the URL printed by --print-url.
    static QString plainBody(const Ran& run) {
        return QUrlQuery(QUrl(run.out.trimmed()).query())
            .queryItemValue(QStringLiteral("plainBody"), QUrl::FullyDecoded);
    }
    // The staged names the one launch's URL carries.
    QStringList attachedNames() {
        const QStringList urls = desktop.takeArguments(kMainApplication);
        if (urls.size() != 1)
            return {QStringLiteral("launches: %1").arg(urls.size())};
        QStringList names;
        for (const QString& staged : velmora::test::attachmentPaths(
                 QUrlQuery(QUrl(urls.first()).query(QUrl::FullyEncoded))))
            names.append(QFileInfo(staged).fileName());
        names.sort();
        return names;
    }
    QString staging() const { return container.dataFolder() + QStringLiteral("/ShareFull"); }
    // The folder of the share that ran last; null before it has made one.
    QString ownFolder() const {
        const QFileInfoList shares =
            QDir(staging()).entryInfoList({QStringLiteral("share-*")}, QDir::Dirs);
        return shares.size() == 1 ? shares.first().filePath() : QString();
    }
    QString path(const QString& name) const { return files.filePath(name); }
    QString make(const QString& name, qint64 size = 1) {
        QByteArray bytes(size, '\0');
        QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(bytes.data()), size / 4);
        writeFile(path(name), bytes);
        return path(name);
    }
    QString fifo(const QString& name) {
        const QString p = path(name);
        EXPECT_EQ(::mkfifo(QFile::encodeName(p).constData(), 0600), 0);
        return p;
    }
    static struct stat statOf(const QString& p) {
        struct stat st {};
        ::stat(QFile::encodeName(p).constData(), &st);
        return st;
    }

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

TEST_F(Trust, SharedHtmlNeverReadsWhatItNames) {
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
        QStringList args{QStringLiteral("--print-url")};
        if (kPaints)
            args += QStringList{QStringLiteral("--screenshot"), shot};
        args += row.standardInput ? QStringList{QStringLiteral("-")}
                                  : QStringList{QStringLiteral("--text"), row.html};
        const Ran r = share(args, row.standardInput ? row.html.toUtf8() : QByteArray());
        ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
        EXPECT_TRUE(plainBody(r).contains(u"one")) << r.out.toStdString();
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

TEST_F(Trust, BadInputEndsCleanly) {
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
        const Ran r = share(QStringList{QStringLiteral("--print-url")} + row.args,
                            row.standardInput, row.rawArgument);
        if (!row.fifo.isEmpty())
            QFile::remove(fifo);
        ASSERT_EQ(r.exitCode, row.exitCode) << r.err.toStdString();
        EXPECT_TRUE(r.err.contains(row.said)) << r.err.toStdString();
        if (row.exitCode != 0) {
            EXPECT_FALSE(QFileInfo::exists(staging())) << "a refused share staged";
            continue;
        }
        EXPECT_TRUE(plainBody(r).contains(hi)) << r.out.toStdString();
        // What this run staged lies in its own share folder.
        const QStringList staged = QDir(ownFolder()).entryList(QDir::Files, QDir::Name);
        for (const QString& name : staged)
            EXPECT_EQ(readFile(ownFolder() + u'/' + name), "kept");
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

// Every item given is either in the URL or named on stderr, and the exit status says which.
TEST_F(Trust, EveryItemIsAttachedOrNamedWithItsReason) {
    desktop.addApplication(kMainApplication);
    // 12 MiB at a second per MiB: past the intake's wait of about 10 s.
    const QString big = make(QStringLiteral("big.bin"), 12 << 20);
    const QString sparse = path(QStringLiteral("sparse.img"));
    {
        QFile f(sparse);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        ASSERT_TRUE(f.resize(qint64(64) << 20));
        ASSERT_TRUE(f.seek(qint64(40) << 20));
        f.write(QByteArray(1 << 20, 'd'));
    }
    make(QStringLiteral("f/a.txt"));
    make(QStringLiteral("f/sub/b.txt"));
    fifo(QStringLiteral("f/sub/pipe"));
    const struct {
        const char* name;
        QStringList items;
        int delayMs;
        std::function<void()> during;
        QStringList attached;
        QStringList named; // on stderr as not attached
        int exitCode;
        QStringList same; // staged with the content given
    } rows[] = {
        {"slow copy and two files queued behind it",
         {big, make(QStringLiteral("one.txt")), make(QStringLiteral("two.txt"))},
         1000,
         {},
         {QStringLiteral("big.bin"), QStringLiteral("one.txt"), QStringLiteral("two.txt")},
         {},
         0,
         {QStringLiteral("big.bin"), QStringLiteral("two.txt")}},
        {"file that vanishes before its copy",
         {make(QStringLiteral("kept.txt")), make(QStringLiteral("gone.txt"))},
         1500,
         [this] { QFile::remove(path(QStringLiteral("gone.txt"))); },
         {QStringLiteral("kept.txt")},
         {QStringLiteral("gone.txt")},
         4,
         {QStringLiteral("kept.txt")}},
        {"folder with a pipe inside, a pipe of its own and a sparse file",
         {path(QStringLiteral("f")), fifo(QStringLiteral("lone-pipe")), sparse},
         0,
         {},
         {QStringLiteral("f"), QStringLiteral("sparse.img")},
         {QStringLiteral("f/sub/pipe"), QStringLiteral("lone-pipe")},
         4,
         {QStringLiteral("f/a.txt"), QStringLiteral("f/sub/b.txt"), QStringLiteral("sparse.img")}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Ran r = share(row.items, {}, {}, row.delayMs, row.during);
        EXPECT_EQ(r.exitCode, row.exitCode) << r.err.toStdString();
        EXPECT_EQ(attachedNames(), row.attached);
        EXPECT_EQ(r.err.count(QStringLiteral("not attached: ")), row.named.size())
            << r.err.toStdString();
        for (const QString& named : row.named)
            EXPECT_TRUE(r.err.contains(path(named) + QStringLiteral(": "))) << r.err.toStdString();
        for (const QString& same : row.same)
            EXPECT_EQ(readFile(ownFolder() + u'/' + same), readFile(path(same)))
                << same.toStdString();
    }
    EXPECT_FALSE(QFileInfo::exists(ownFolder() + QStringLiteral("/f/sub/pipe")));
    // The holes stay holes: no more blocks than the source (give or take metadata).
    EXPECT_LE(statOf(ownFolder() + QStringLiteral("/sparse.img")).st_blocks,
              statOf(sparse).st_blocks + 16);
}

// Headless, a hand-off that cannot happen ends with status 3 and says which entry it needs.
TEST_F(Trust, HeadlessHandOffFailureNamesTheEntry) {
    const QString notExecutable = path(QStringLiteral("velmora-not-executable"));
    writeFile(notExecutable, "#!/bin/sh\n");
    const QString badInterpreter = path(QStringLiteral("velmora-bad-interpreter"));
    writeFile(badInterpreter, "#!/nonexistent/sh\n");
    QFile::setPermissions(badInterpreter, QFile::ReadOwner | QFile::ExeOwner);
    const struct {
        const char* name;
        QByteArray exec;
    } rows[] = {
        {"program missing", "/nonexistent/velmora %U"},
        {"program not executable", QFile::encodeName(notExecutable) + " %U"},
        {"interpreter missing", QFile::encodeName(badInterpreter) + " %U"},
    };
    const QString note = make(QStringLiteral("note.txt"));
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        writeFile(desktop.entryPath(kMainApplication),
                  "[Desktop Entry]\nType=Application\nName=V\nExec=" + row.exec + "\n");
        const Ran r = share({note});
        EXPECT_EQ(r.exitCode, 3);
        EXPECT_TRUE(r.err.contains(QStringLiteral("it.zemlo.velmora.desktop")))
            << r.err.toStdString();
    }
}

} // namespace
