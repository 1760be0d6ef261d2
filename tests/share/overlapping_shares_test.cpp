// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Several real binaries at once into one container.
#include "Process.h"
#include "TestSupport.h"

#include <QDateTime>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QRandomGenerator>
#include <QUrlQuery>

#include <fcntl.h>
#include <linux/fs.h>
#include <memory>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

using velmora::test::Process;
using velmora::test::readFile;
using velmora::test::writeFile;

namespace {

constexpr int kRunTimeoutMs = 120000;
#ifdef VELMORA_OVERLAP_ROUNDS
constexpr int kRounds = VELMORA_OVERLAP_ROUNDS;
#else
constexpr int kRounds = 50;
#endif

// Sets an entry's modification time (a link's own, not its target's) minutes into the past.
void ageBy(const QString& path, int minutes) {
    const qint64 when = QDateTime::currentSecsSinceEpoch() - qint64(minutes) * 60;
    const timespec times[2] = {{when, 0}, {when, 0}};
    ASSERT_EQ(
        ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, AT_SYMLINK_NOFOLLOW), 0)
        << path.toStdString();
}

class OverlappingShares : public ::testing::Test {
protected:
    QString staging() const { return container.dataFolder() + QStringLiteral("/ShareFull"); }
    // The real velmora-share on count same.bin files of their own content (appended to given).
    std::unique_ptr<Process> startShare(const QByteArray& tag, int count, QList<QByteArray>* given,
                                        bool headless = true) {
        QStringList args;
        if (headless)
            args << QStringLiteral("--headless") << QStringLiteral("--print-url");
        for (int i = 0; i < count; ++i) {
            QByteArray content = tag + '-' + QByteArray::number(i) + ':';
            for (int word = 0; word < 64; ++word)
                content += QByteArray::number(QRandomGenerator::global()->generate64(), 36);
            args << files.filePath(QString::fromLatin1(tag) +
                                   QStringLiteral("-%1/same.bin").arg(i));
            writeFile(args.last(), content);
            given->append(content);
        }
        return std::make_unique<Process>(QStringLiteral(VELMORA_SHARE), args);
    }
    // Waits for a headless share: its one URL names the given contents, in a folder of its own.
    QStringList expectOwnFiles(Process& run, QList<QByteArray> given) {
        EXPECT_TRUE(run.finish(kRunTimeoutMs)) << "a share did not end";
        EXPECT_EQ(run.exitCode(), 0) << run.err().toStdString();
        const QStringList lines = run.out().split(u'\n', Qt::SkipEmptyParts);
        EXPECT_EQ(lines.size(), 1) << run.out().toStdString();
        const QStringList staged = velmora::test::attachmentPaths(
            QUrlQuery(QUrl(lines.value(0), QUrl::StrictMode).query(QUrl::FullyEncoded)));
        QList<QByteArray> found;
        for (const QString& path : staged) {
            const QFileInfo folder(QFileInfo(path).path());
            EXPECT_EQ(folder.path(), staging());
            EXPECT_TRUE(folder.fileName().startsWith(QStringLiteral("share-%1-").arg(run.pid())))
                << path.toStdString();
            found.append(readFile(path));
        }
        std::sort(found.begin(), found.end());
        std::sort(given.begin(), given.end());
        EXPECT_EQ(found, given) << "a URL names a file that another share staged";
        return staged;
    }

    velmora::test::TempContainer container;
    QTemporaryDir files;
};

using OverlappingRounds = OverlappingShares;

// Three shares at once, round after round: each URL names its own share's same.bin files, kept.
TEST_F(OverlappingRounds, SameNamedFilesNeverCross) {
    QHash<QString, QByteArray> sent; // every path sent, with the content it was sent with
    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
        SCOPED_TRACE(round);
        QList<QByteArray> given[3];
        std::unique_ptr<Process> runs[3];
        for (int p = 0; p < 3; ++p)
            runs[p] = startShare('r' + QByteArray::number(round) + 'p' + QByteArray::number(p), 2,
                                 &given[p]);
        for (int p = 0; p < 3; ++p) {
            for (const QString& path : expectOwnFiles(*runs[p], given[p])) {
                EXPECT_FALSE(sent.contains(path)) << "two shares named " << path.toStdString();
                sent.insert(path, readFile(path));
            }
        }
    }
    // Every file sent is still there for the main application.
    for (auto it = sent.cbegin(); it != sent.cend(); ++it)
        EXPECT_EQ(readFile(it.key()), it.value()) << it.key().toStdString();
}

// Holds a folder: locked as the main application locks it, or made undeletable, even by root.
class HeldFolder {
public:
    HeldFolder(const QString& folder, bool undeletable)
        : m_fd(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
        , m_held(m_fd >= 0 && (undeletable ? setImmutable(true) : ::flock(m_fd, LOCK_SH) == 0)) {}
    ~HeldFolder() {
        if (m_held)
            setImmutable(false); // undoes an undeletable hold, changes nothing after a lock
        if (m_fd >= 0)
            ::close(m_fd);
    }
    HeldFolder(const HeldFolder&) = delete;
    HeldFolder& operator=(const HeldFolder&) = delete;
    bool held() const { return m_held; } // false where the system does not allow it

private:
    bool setImmutable(bool on) const {
        if (::geteuid() != 0)
            return ::fchmod(m_fd, on ? 0555 : 0755) == 0;
        int flags = 0;
        if (::ioctl(m_fd, FS_IOC_GETFLAGS, &flags) != 0)
            return false;
        flags = on ? (flags | FS_IMMUTABLE_FL) : (flags & ~FS_IMMUTABLE_FL);
        return ::ioctl(m_fd, FS_IOC_SETFLAGS, &flags) == 0;
    }

    const int m_fd;
    const bool m_held;
};

// Staged files stay while a window is open, held or young, then go; links out are not followed.
TEST_F(OverlappingShares, SharesStayWhileOpenHeldOrYoungAndGoAfterwards) {
    QList<QByteArray> firstGiven;
    // Not headless: the composer waits for the user (on the offscreen platform the tests use).
    const auto window = startShare("window", 1, &firstGiven, false);
    QString firstStaged;
    const QDeadlineTimer deadline(kRunTimeoutMs);
    while (firstStaged.isEmpty() && !deadline.hasExpired() && window->running()) {
        const QStringList folders = QDir(staging()).entryList(
            {QStringLiteral("share-%1-*").arg(window->pid())}, QDir::Dirs | QDir::NoDotAndDotDot);
        const QString path = staging() + u'/' + folders.value(0) + QStringLiteral("/same.bin");
        if (!folders.isEmpty() && readFile(path) == firstGiven.first())
            firstStaged = path;
        else
            ::usleep(20000); // polled against the deadline above
    }
    ASSERT_FALSE(firstStaged.isEmpty()) << "the window run never staged its file";

    const QString outside = files.filePath(QStringLiteral("outside"));
    writeFile(outside + QStringLiteral("/precious.txt"), "precious");

    enum Kind { Folder, LooseFile, LinkOut, FolderWithLinkOut, StuckFolder };
    const struct Row {
        const char* name;
        Kind kind;
        int minutesOld;
        bool heldByReader;
        bool kept;
    } rows[] = {
        {"share-1-young", Folder, 9, false, true},
        {"share-2-old", Folder, 11, false, false},
        {"share-3-held-by-the-main-application", Folder, 600, true, true},
        {"loose-young.bin", LooseFile, 9, false, true},
        {"link-out", LinkOut, 60, false, false},
        {"share-4-linking-out", FolderWithLinkOut, 60, false, false},
        {"share-5-cannot-be-removed", StuckFolder, 60, false, true},
    };
    std::vector<std::unique_ptr<HeldFolder>> held;
    bool stuckRow = false;
    for (const Row& row : rows) {
        const QString path = staging() + u'/' + QString::fromLatin1(row.name);
        switch (row.kind) {
        case LooseFile:
            writeFile(path, "loose");
            break;
        case LinkOut:
            ASSERT_TRUE(QFile::link(outside, path));
            break;
        case FolderWithLinkOut:
            QDir().mkpath(path);
            ASSERT_TRUE(QFile::link(outside, path + QStringLiteral("/to-outside")));
            ASSERT_TRUE(QFile::link(outside + QStringLiteral("/precious.txt"),
                                    path + QStringLiteral("/precious.txt")));
            break;
        case Folder:
        case StuckFolder:
            writeFile(path + QStringLiteral("/inner/same.bin"), "staged");
            break;
        }
        ageBy(path, row.minutesOld);
        if (row.kind == StuckFolder) {
            held.push_back(std::make_unique<HeldFolder>(path + QStringLiteral("/inner"), true));
            stuckRow = held.back()->held();
        }
        if (row.heldByReader) {
            held.push_back(std::make_unique<HeldFolder>(path, false));
            ASSERT_TRUE(held.back()->held());
        }
    }

    QList<QByteArray> nextGiven;
    const auto next = startShare("next", 1, &nextGiven);
    expectOwnFiles(*next, nextGiven);
    const QString err = next->err();
    EXPECT_TRUE(window->running()) << "the composer window was meant to be still open";
    EXPECT_EQ(readFile(firstStaged), firstGiven.first())
        << "the second share removed or replaced the open composer's file";
    window->terminate();
    ASSERT_TRUE(window->finish(kRunTimeoutMs));

    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const QString path = staging() + u'/' + QString::fromLatin1(row.name);
        if (row.kind == StuckFolder && !stuckRow)
            continue;
        EXPECT_EQ(QFileInfo(path).exists() || QFileInfo(path).isSymLink(), row.kept);
    }
    EXPECT_EQ(readFile(outside + QStringLiteral("/precious.txt")), "precious");
    const QStringList removals = err.split(u'\n').filter(QStringLiteral("shareInit delete"));
    EXPECT_EQ(removals.size(), stuckRow ? 1 : 0) << err.toStdString();
    EXPECT_EQ(removals.filter(QStringLiteral("share-5-cannot-be-removed")), removals);
}

} // namespace
