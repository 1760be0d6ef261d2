// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "Process.h"
#include "TestSupport.h"

#include <QDateTime>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QRandomGenerator>
#include <QUrl>
#include <QUrlQuery>

#include <fcntl.h>
#include <linux/fs.h>
#include <memory>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

using velmora::test::readFile;
using velmora::test::writeFile;

namespace {

constexpr int kRunTimeoutMs = 120000;
#ifdef VELMORA_OVERLAP_ROUNDS
constexpr int kRounds = VELMORA_OVERLAP_ROUNDS;
#else
constexpr int kRounds = 50;
#endif

// A run of the real velmora-share, its output going to files of its own.
std::unique_ptr<velmora::test::Process> startShare(const QStringList& args) {
    return std::make_unique<velmora::test::Process>(QStringLiteral(VELMORA_SHARE), args);
}

// The attachment paths of the one URL printed by --print-url.
QStringList printedAttachments(const QString& out) {
    const QStringList lines = out.split(u'\n', Qt::SkipEmptyParts);
    EXPECT_EQ(lines.size(), 1) << out.toStdString();
    return velmora::test::attachmentPaths(
        QUrlQuery(QUrl(lines.value(0), QUrl::StrictMode).query(QUrl::FullyEncoded)));
}

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
    // Files named same.bin in folders of their own, each with content of its own.
    QStringList sameNamedFiles(const QByteArray& tag, int count, QList<QByteArray>* contents) {
        QStringList paths;
        for (int i = 0; i < count; ++i) {
            QByteArray content = tag + '-' + QByteArray::number(i) + ':';
            for (int word = 0; word < 64; ++word)
                content += QByteArray::number(QRandomGenerator::global()->generate64(), 36);
            const QString path = files.filePath(QString::fromLatin1(tag) + u'-' +
                                                QString::number(i) + QStringLiteral("/same.bin"));
            writeFile(path, content);
            paths.append(path);
            contents->append(content);
        }
        return paths;
    }
    // Checks that the staged paths lie in one folder of the share's own, directly in the
    // staging folder, and hold exactly the given contents.
    void expectOwnFiles(const QStringList& staged, pid_t pid, const QList<QByteArray>& given) {
        ASSERT_EQ(staged.size(), given.size());
        QList<QByteArray> found;
        for (const QString& path : staged) {
            const QFileInfo folder(QFileInfo(path).path());
            EXPECT_EQ(folder.path(), staging());
            EXPECT_TRUE(folder.fileName().startsWith(QStringLiteral("share-%1-").arg(pid)))
                << path.toStdString();
            EXPECT_EQ(QFileInfo(path).fileName().left(4), QStringLiteral("same"));
            found.append(readFile(path));
        }
        QList<QByteArray> expected = given;
        std::sort(found.begin(), found.end());
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(found, expected) << "a URL names a file that another share staged";
    }
    // One headless share of a same-named file on its own, whose URL names only its own file;
    // err, when given, receives what it wrote on standard error.
    void shareOneFile(const QByteArray& tag, QString* err = nullptr) {
        QList<QByteArray> given;
        const auto share =
            startShare(QStringList{QStringLiteral("--headless"), QStringLiteral("--print-url")} +
                       sameNamedFiles(tag, 1, &given));
        ASSERT_TRUE(share->finish(kRunTimeoutMs));
        ASSERT_EQ(share->exitCode(), 0) << share->err().toStdString();
        expectOwnFiles(printedAttachments(share->out()), share->pid(), given);
        if (err)
            *err = share->err();
    }

    velmora::test::TempContainer container;
    QTemporaryDir files;
};

class OverlappingRounds : public OverlappingShares, public ::testing::WithParamInterface<int> {};

// Shares started together into one container, round after round: each URL names the two
// same.bin files its own share was given, and they keep their content while later rounds run.
TEST_P(OverlappingRounds, SameNamedFilesNeverCross) {
    const int processes = GetParam();
    QHash<QString, QByteArray> sent; // every path sent, with the content it was sent with
    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
        SCOPED_TRACE(round);
        std::vector<QList<QByteArray>> given(processes);
        std::vector<std::unique_ptr<velmora::test::Process>> runs;
        for (int p = 0; p < processes; ++p) {
            const QByteArray tag = 'r' + QByteArray::number(round) + 'p' + QByteArray::number(p);
            runs.push_back(startShare(
                QStringList{QStringLiteral("--headless"), QStringLiteral("--print-url")} +
                sameNamedFiles(tag, 2, &given[p])));
        }
        for (int p = 0; p < processes; ++p) {
            velmora::test::Process& run = *runs[p];
            ASSERT_TRUE(run.finish(kRunTimeoutMs)) << "a share did not end";
            ASSERT_EQ(run.exitCode(), 0) << run.err().toStdString();
            const QStringList staged = printedAttachments(run.out());
            expectOwnFiles(staged, run.pid(), given[p]);
            for (const QString& path : staged) {
                EXPECT_FALSE(sent.contains(path)) << "two shares named " << path.toStdString();
                sent.insert(path, readFile(path));
            }
        }
    }
    // Every file sent is still there for the main application.
    for (auto it = sent.cbegin(); it != sent.cend(); ++it)
        EXPECT_EQ(readFile(it.key()), it.value()) << it.key().toStdString();
}

INSTANTIATE_TEST_SUITE_P(Processes, OverlappingRounds, ::testing::Values(2, 3));

// Holds a folder open: locked as the main application locks a share's folder while it reads
// the files, or made impossible to empty, even by root, for as long as it lives.
class HeldFolder {
public:
    enum Hold { ReaderLock, Undeletable };
    HeldFolder(const QString& folder, Hold hold)
        : m_fd(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
        , m_hold(hold) {
        if (hold == ReaderLock)
            m_held = m_fd >= 0 && ::flock(m_fd, LOCK_SH) == 0;
        else
            m_held = setImmutable(true);
    }
    ~HeldFolder() {
        if (m_held && m_hold == Undeletable)
            setImmutable(false);
        if (m_fd >= 0)
            ::close(m_fd);
    }
    HeldFolder(const HeldFolder&) = delete;
    HeldFolder& operator=(const HeldFolder&) = delete;
    // False where the system does not allow it.
    bool held() const { return m_held; }

private:
    bool setImmutable(bool on) const {
        if (::geteuid() != 0)
            return ::fchmod(m_fd, on ? 0555 : 0755) == 0;
        int flags = 0;
        if (m_fd < 0 || ::ioctl(m_fd, FS_IOC_GETFLAGS, &flags) != 0)
            return false;
        flags = on ? (flags | FS_IMMUTABLE_FL) : (flags & ~FS_IMMUTABLE_FL);
        return ::ioctl(m_fd, FS_IOC_SETFLAGS, &flags) == 0;
    }

    int m_fd;
    Hold m_hold;
    bool m_held = false;
};

// What a share leaves in the staging folder stays for the main application as long as it may
// read it, and goes afterwards: a composer window left open keeps its file while another share
// runs, and finished shares stay for the grace period or while held. Removal never follows a
// link out of the folder.
TEST_F(OverlappingShares, SharesStayWhileOpenHeldOrYoungAndGoAfterwards) {
    QList<QByteArray> firstGiven;
    const QStringList firstFiles = sameNamedFiles("window", 1, &firstGiven);
    // Not headless: the composer waits for the user (on the offscreen platform the tests use).
    const auto window = startShare(firstFiles);
    ASSERT_GT(window->pid(), 0);

    QString firstStaged;
    const QDeadlineTimer deadline(kRunTimeoutMs);
    while (firstStaged.isEmpty() && !deadline.hasExpired() && window->running()) {
        const QStringList folders = QDir(staging()).entryList(
            {QStringLiteral("share-%1-*").arg(window->pid())}, QDir::Dirs | QDir::NoDotAndDotDot);
        if (!folders.isEmpty() && readFile(staging() + u'/' + folders.first() +
                                           QStringLiteral("/same.bin")) == firstGiven.first())
            firstStaged = staging() + u'/' + folders.first() + QStringLiteral("/same.bin");
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
        {"loose-old.bin", LooseFile, 11, false, false},
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
            held.push_back(std::make_unique<HeldFolder>(path + QStringLiteral("/inner"),
                                                        HeldFolder::Undeletable));
            stuckRow = held.back()->held();
        }
        if (row.heldByReader) {
            held.push_back(std::make_unique<HeldFolder>(path, HeldFolder::ReaderLock));
            ASSERT_TRUE(held.back()->held());
        }
    }

    QString err;
    ASSERT_NO_FATAL_FAILURE(shareOneFile("next", &err));
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
    const QStringList removalLines = err.split(u'\n').filter(QStringLiteral("shareInit delete"));
    if (stuckRow) {
        ASSERT_EQ(removalLines.size(), 1) << err.toStdString();
        EXPECT_TRUE(removalLines.first().contains(QStringLiteral("share-5-cannot-be-removed")));
    } else {
        EXPECT_TRUE(removalLines.isEmpty()) << err.toStdString();
    }
}

} // namespace
