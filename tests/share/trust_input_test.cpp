// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Hostile input for the real binary, headless, on a container and a desktop of its own.

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

class Trust : public ::testing::Test {
protected:
    void SetUp() override { QDir().mkpath(container.dataFolder() + QStringLiteral("/Contacts")); }

    // velmora-share --headless ARGS RAW, staging folder emptied; during runs once it has a folder.
    Ran share(const QStringList& args, const QByteArray& in = {}, const QByteArray& raw = {},
              int copyDelayMs = 0, const std::function<void()>& during = {}) {
        QDir(staging()).removeRecursively();
        const velmora::test::ScopedEnv delay("VELMORA_TEST_COPY_DELAY_MS",
                                             copyDelayMs ? QByteArray::number(copyDelayMs) : "");
        QList<QByteArray> words{"--headless"};
        for (const QString& arg : args)
            words.append(QFile::encodeName(arg));
        if (!raw.isEmpty())
            words.append(raw);
        velmora::test::Process p(QStringLiteral(VELMORA_SHARE), words, in, files.path());
        const QDeadlineTimer deadline(30000);
        while (during && ownFolder().isNull() && !deadline.hasExpired() && p.running())
            ::usleep(10000); // polled against the deadline
        if (during)
            during();
        const bool ended = p.finish(120000); // a hang fails the row instead of the suite
        return {ended ? p.exitCode() : -1, p.out(), p.err()};
    }
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
    QString path(QAnyStringView name) const { return files.filePath(name.toString()); }
    QString make(QAnyStringView name, qint64 size = 1) {
        QByteArray bytes(size, '\0');
        QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(bytes.data()), size / 4);
        writeFile(path(name), bytes);
        return path(name);
    }
    QString fifo(QAnyStringView name) {
        EXPECT_EQ(::mkfifo(QFile::encodeName(path(name)).constData(), 0600), 0);
        return path(name);
    }

    velmora::test::RecordingDesktop desktop; // nothing of the machine's desktop is used
    velmora::test::TempContainer container;
    QTemporaryDir files;
};

QString dataUrl(const QByteArray& png) {
    return QStringLiteral("data:image/png;base64,") + QString::fromLatin1(png.toBase64());
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

// HTML naming a canary, a pipe and a device opens none of them; only a small data: image draws.
TEST_F(Trust, SharedHtmlNeverReadsWhatItNames) {
    const QString pipe = fifo("pipe");
    QImage red(8, 8, QImage::Format_RGB32);
    red.fill(Qt::red);
    // Drawn, it would show; opened, the watch sees it.
    const QString canary = path("canary.png");
    const QByteArray redPng = velmora::test::encoded(red, "png");
    writeFile(canary, redPng);
    const int watch = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ASSERT_GE(
        ::inotify_add_watch(watch, QFile::encodeName(canary).constData(), IN_OPEN | IN_ACCESS), 0);
    // Red with noise in blue compresses badly: its data: URL is over the limit.
    QImage noisy(300, 300, QImage::Format_RGB32);
    for (int i = 0; i < 300 * 300; ++i)
        noisy.setPixel(i % 300, i / 300, qRgb(255, 0, QRandomGenerator::global()->bounded(1, 256)));
    const struct {
        const char* name;
        QString html;
        bool standardInput;
        bool showsRed;
    } rows[] = {
        {"link-backgrounds-css-and-images",
         QStringLiteral("<head><link rel=stylesheet href=\"%1\"></head><body background=\"%1\">"
                        "<style>td { background-image: url(/dev/zero) }</style>"
                        "<p style=\"background-image: url(%2)\">one</p><img src=\"%1\">"
                        "<img src=\"%2\" width=40 height=30><img src=\"%3\" width=30 height=30>"
                        "<table background=/dev/zero><tr><td background=\"%1\">2</td></tr></table>")
             .arg(canary, pipe, QUrl::fromLocalFile(canary).toString()),
         false, false},
        {"small-data-image", QStringLiteral("one<img src=\"%1\" width=60>").arg(dataUrl(redPng)),
         false, true},
        {"oversized-data-images",
         QStringLiteral("one<img src=\"%1\"><img src=\"%2\">")
             .arg(dataUrl(velmora::test::encoded(noisy, "png")),
                  dataUrl(velmora::test::pngDeclaringSize(100000, 100000))),
         true, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        // Qt draws images on its own thread pool, whose hand-overs ThreadSanitizer cannot see.
        if (!kPaints && row.html.contains(u"data:"))
            continue;
        const QString shot = path(row.name) + QStringLiteral(".png");
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
    const struct {
        const char* name;
        QString fifo{}; // made a named pipe for the run
        QStringList args{};
        QByteArray standardInput{};
        QByteArray rawArgument{};
        int exitCode = 0;
        QString said{};       // on standard error
        QStringList staged{}; // exit 0: the share folder's files, sorted
    } rows[] = {
        {.name = "fifo-accounts",
         .fifo = "Accounts.plist",
         .args = {"--text", "hi"},
         .said = "Accounts.plist\": not a regular file"},
        {.name = "file-name-not-utf8-relative-and-as-file-url",
         .args = {"--text", "hi", "file://" + QString::fromLatin1(rawName.toPercentEncoding("/"))},
         .rawArgument = "caf\xe9 \xff.txt",
         .staged = {"caf\ufffd \ufffd.txt", "caf\ufffd \ufffd_1.txt"}},
        {.name = "truncated-png",
         .args = {"-"},
         .standardInput = png.left(png.size() / 2),
         .exitCode = 2,
         .said = "png image data"},
        {.name = "text-that-starts-like-a-gif", .args = {"-"}, .standardInput = "GIF89a hi\n"},
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
        EXPECT_TRUE(plainBody(r).contains(u"hi")) << r.out.toStdString();
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
    const QString big = make("big.bin", 12 << 20);
    QFile sparse(path("sparse.img"));
    ASSERT_TRUE(sparse.open(QIODevice::WriteOnly) && sparse.resize(qint64(64) << 20) &&
                sparse.seek(qint64(40) << 20));
    sparse.write(QByteArray(1 << 20, 'd'));
    sparse.close();
    make("f/a.txt");
    make("f/sub/b.txt");
    fifo("f/sub/pipe");
    const struct {
        const char* name;
        QStringList items{};
        int delayMs = 0;
        std::function<void()> during{};
        QStringList attached{};
        QStringList named{}; // on stderr as not attached
        int exitCode = 0;
        QStringList same{}; // staged with the content given
    } rows[] = {
        {.name = "slow copy and two files queued behind it",
         .items = {big, make("one.txt"), make("two.txt")},
         .delayMs = 1000,
         .attached = {"big.bin", "one.txt", "two.txt"},
         .same = {"big.bin", "two.txt"}},
        {.name = "file that vanishes before its copy",
         .items = {make("kept.txt"), make("gone.txt")},
         .delayMs = 1500,
         .during = [this] { QFile::remove(path("gone.txt")); },
         .attached = {"kept.txt"},
         .named = {"gone.txt"},
         .exitCode = 4,
         .same = {"kept.txt"}},
        {.name = "folder with a pipe inside, a pipe of its own and a sparse file",
         .items = {path("f"), fifo("lone-pipe"), sparse.fileName()},
         .attached = {"f", "sparse.img"},
         .named = {"f/sub/pipe", "lone-pipe"},
         .exitCode = 4,
         .same = {"f/a.txt", "f/sub/b.txt", "sparse.img"}},
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
    struct stat source {
    }, copy{};
    ::stat(QFile::encodeName(sparse.fileName()).constData(), &source);
    ::stat(QFile::encodeName(ownFolder() + QStringLiteral("/sparse.img")).constData(), &copy);
    EXPECT_LE(copy.st_blocks, source.st_blocks + 16);
}

// A failed hand-off ends with 3 naming the entry: a missing program (GIO) or interpreter.
TEST_F(Trust, HeadlessHandOffFailureNamesTheEntry) {
    const QString badInterpreter = path("velmora-bad-interpreter");
    writeFile(badInterpreter, "#!/nonexistent/sh\n");
    QFile::setPermissions(badInterpreter, QFile::ReadOwner | QFile::ExeOwner);
    const QString note = make("note.txt");
    for (const QByteArray& exec :
         {QByteArray("/nonexistent/velmora"), QFile::encodeName(badInterpreter)}) {
        writeFile(desktop.entryPath(kMainApplication),
                  "[Desktop Entry]\nType=Application\nName=V\nExec=" + exec + " %U\n");
        const Ran r = share({note});
        EXPECT_EQ(r.exitCode, 3) << exec.constData();
        EXPECT_TRUE(r.err.contains(QStringLiteral("it.zemlo.velmora.desktop")))
            << r.err.toStdString();
    }
}

} // namespace
