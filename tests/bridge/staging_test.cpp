// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "bridge/AttachmentSafety.h"
#include "bridge/ExtensionUtilities.h"
#include "bridge/FileNaming.h"
#include "bridge/ShareFolder.h"
#include "platform/FileCoordinator.h"
#include "platform/Log.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <deque>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace velmora;
using velmora::test::readFile;
using velmora::test::writeFile;

namespace {

const QString kService = QStringLiteral("ShareFull");

// Whether another holder could take the staging folder's lock right now.
bool stagingLockIsFree(const QString& dataFolder) {
    const QByteArray lock =
        QFile::encodeName(FileCoordinator::lockPathFor(dataFolder + u'/' + kService));
    const int fd = ::open(lock.constData(), O_RDWR | O_CLOEXEC);
    const bool free = fd >= 0 && ::flock(fd, LOCK_EX | LOCK_NB) == 0;
    if (fd >= 0)
        ::close(fd);
    return free;
}

// Hands out requests in order; each done records what it staged.
struct Requests {
    std::deque<ExtensionUtilities::StagingRequest> queued;
    QList<QStringList> staged;
    QList<bool> lockFree; // whether the lock was free whenever a request was handed out

    void add(QStringList paths, QList<QByteArray> datas) {
        queued.push_back({std::move(paths), std::move(datas), {}, [this](const QStringList& s) {
                              staged.append(s);
                          }});
    }
    std::function<std::optional<ExtensionUtilities::StagingRequest>()> take(const QString& data) {
        return [this, data]() -> std::optional<ExtensionUtilities::StagingRequest> {
            lockFree.append(stagingLockIsFree(data));
            if (queued.empty())
                return std::nullopt;
            auto request = std::move(queued.front());
            queued.pop_front();
            return request;
        };
    }
};

class Staging : public ::testing::Test {
protected:
    void SetUp() override {
        ExtensionUtilities::ShareInit(kService);
        log.clear();
    }

    // This share's own folder in the staging folder.
    QString stage(const char* name = "") const {
        return ShareFolder::current(kService)->path() + u'/' + QLatin1String(name);
    }
    QString source(const QString& relative, const QByteArray& bytes) const {
        writeFile(sources.filePath(relative), bytes);
        return sources.filePath(relative);
    }
    // Every entry of the staging folder, hidden ones included, so leftovers show.
    QStringList stagedEntries() const {
        return QDir(stage()).entryList(
            QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }

    velmora::test::TempContainer container;
    QTemporaryDir sources;
    LogCapture log;
};

// A numbered name goes before the extension, and no name leaves the folder.
TEST(GetGoodPath, ChoosesTheFirstFreeNumberedName) {
    const struct {
        const char* given;
        QStringList taken;
        const char* expected;
    } rows[] = {
        {"photo.jpg", {"/stage/photo.jpg", "/stage/photo_1.jpg"}, "/stage/photo_2.jpg"},
        {".profile", {"/stage/.profile"}, "/stage/.profile_1"},
        {"notes.", {"/stage/notes."}, "/stage/notes._1"},
        {"..", {}, "/stage/file"},
        {"../../etc/passwd", {}, "/stage/.._.._etc_passwd"},
        {"", {}, "/stage/file"},
    };
    for (const auto& row : rows) {
        const QSet<QString> taken(row.taken.begin(), row.taken.end());
        EXPECT_EQ(Zemlo_Fs::GetGoodPath(QString::fromUtf8(row.given), QStringLiteral("/stage"),
                                        [&](const QString& p) { return taken.contains(p); }),
                  QString::fromUtf8(row.expected))
            << row.given;
    }
}

// Requests under one hold of the lock each get what they would alone: names, content and mode
// kept, same names (a dangling link's too) numbered across requests, unreadable sources logged.
TEST_F(Staging, RequestsUnderOneHoldOfTheLockGetWhatEachGetsAlone) {
    const QString first = source(QStringLiteral("one/photo.jpg"), "first");
    const QString readme = source(QStringLiteral("README"), "readme");
    ::chmod(QFile::encodeName(readme).constData(), 0750);
    const QString fifo = sources.filePath(QStringLiteral("pipe"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(stage("nowhere"), stage("photo_1.jpg")));

    Requests requests;
    requests.add({first, source(QStringLiteral("two/photo.jpg"), "second"),
                  sources.filePath(QStringLiteral("vanished.txt")), fifo, readme},
                 {});
    requests.add({}, {"one", "two", QByteArray()});
    requests.add({first}, {});
    ExtensionUtilities::ShareBatch(kService, requests.take(container.dataFolder()));

    EXPECT_EQ(requests.staged,
              (QList<QStringList>{{stage("photo.jpg"), stage("photo_2.jpg"), stage("README")},
                                  {stage("image.png"), stage("image_1.png"), stage("image_2.png")},
                                  {stage("photo_3.jpg")}}));
    QStringList contents;
    for (const char* name :
         {"photo.jpg", "photo_2.jpg", "photo_3.jpg", "image.png", "image_1.png", "image_2.png"})
        contents.append(QString::fromLatin1(readFile(stage(name))));
    EXPECT_EQ(contents, (QStringList{"first", "second", "first", "one", "two", ""}));
    EXPECT_EQ(QFile::permissions(stage("README")) & 0x7777, QFile::permissions(readme) & 0x7777);
    // Every request, and the question that found none left, came while the lock was held.
    EXPECT_EQ(requests.lockFree, QList<bool>(4, false));
    EXPECT_TRUE(stagingLockIsFree(container.dataFolder()));
    const QStringList lines = log.lines();
    ASSERT_EQ(lines.size(), 2) << lines.join(u'\n').toStdString();
    for (int i : {0, 1})
        EXPECT_TRUE(lines[i].startsWith(u"[***ERROR***] Error writing file shareFiles ") &&
                    lines[i].contains(QLatin1String(i ? "pipe" : "vanished.txt")));
    EXPECT_EQ(stagedEntries(),
              (QStringList{"README", "image.png", "image_1.png", "image_2.png", "photo.jpg",
                           "photo_1.jpg", "photo_2.jpg", "photo_3.jpg"}));
}

TEST_F(Staging, FolderIsCopiedWholeWithItsLinks) {
    const char* names[] = {"a.jpg", "sub/b.jpg", "sub/deeper/c.txt"}; // each holding its name
    for (const char* name : names)
        source(QStringLiteral("album/") + QLatin1String(name), name);
    QDir(sources.path()).mkpath(QStringLiteral("album/empty"));
    ASSERT_TRUE(QFile::link(QStringLiteral("sub/b.jpg"),
                            sources.filePath(QStringLiteral("album/link.jpg"))));
    // The clean path names the copy: "album/sub/.." is "album".
    const QStringList staged = ExtensionUtilities::ShareFiles(
        kService, {sources.filePath(QStringLiteral("album/sub/.."))});
    ASSERT_EQ(staged, QStringList{stage("album")});
    for (const char* name : names)
        EXPECT_EQ(readFile(stage("album/") + QLatin1String(name)), name);
    EXPECT_TRUE(QFileInfo(stage("album/empty")).isDir());
    EXPECT_EQ(QFileInfo(stage("album/link.jpg")).symLinkTarget(), stage("album/sub/b.jpg"));
    EXPECT_EQ(stagedEntries(), QStringList{QStringLiteral("album")});
}

// Threads staging image.png at once each get a name and a complete file of their own.
TEST_F(Staging, ThreadsStagingImagePngAtOnceGetDistinctCompleteFiles) {
    constexpr int kThreads = 8;
    constexpr int kPerThread = 10;
    const auto buffer = [](int thread, int i) {
        const QByteArray tag = "thread" + QByteArray::number(thread) + '-' + QByteArray::number(i);
        return tag.repeated(256 * 1024 / tag.size());
    };
    std::vector<QStringList> fromThreads(kThreads);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([t, &fromThreads, &buffer] {
            for (int i = 0; i < kPerThread; ++i)
                fromThreads[t] += ExtensionUtilities::ShareDatas(kService, {buffer(t, i)});
        });
    }
    for (auto& t : threads)
        t.join();
    QSet<QString> paths;
    for (int t = 0; t < kThreads; ++t) {
        ASSERT_EQ(fromThreads[t].size(), kPerThread);
        for (int i = 0; i < kPerThread; ++i) {
            EXPECT_EQ(QFileInfo(fromThreads[t][i]).path() + u'/', stage());
            EXPECT_TRUE(readFile(fromThreads[t][i]) == buffer(t, i)) << t << ' ' << i;
            paths.insert(fromThreads[t][i]);
        }
    }
    EXPECT_EQ(paths.size(), kThreads * kPerThread) << "two writers got one name";
    EXPECT_EQ(stagedEntries().size(), kThreads * kPerThread) << "temporary files left behind";
}

// Without a container nothing is staged, and every operation and request logs its own line.
TEST(StagingWithoutContainer, EveryOperationLogsItsCoordinationLine) {
    QTemporaryDir dir;
    writeFile(dir.filePath(QStringLiteral("file")), "x");
    const velmora::test::ScopedEnv container(
        "VELMORA_GROUP_CONTAINER", QFile::encodeName(dir.filePath(QStringLiteral("file/c"))));
    EXPECT_TRUE(ExtensionUtilities::GroupPath().isNull());
    EXPECT_TRUE(ExtensionUtilities::GroupDataPath().isNull());
    LogCapture log;
    ExtensionUtilities::ShareInit(kService);
    Requests requests;
    requests.add({dir.filePath(QStringLiteral("file"))}, {});
    requests.add({}, {"png"});
    ExtensionUtilities::ShareBatch(kService, requests.take(QString()));
    EXPECT_EQ(requests.staged, (QList<QStringList>{{}, {}}));
    const QStringList lines = log.lines();
    const QStringList prefixes{"[***ERROR***] shareInit ", "[***ERROR***] Error shareFiles ",
                               "[***ERROR***] Error shareDatas "};
    ASSERT_EQ(lines.size(), prefixes.size()) << lines.join(u'\n').toStdString();
    for (qsizetype i = 0; i < lines.size(); ++i)
        EXPECT_TRUE(lines[i].startsWith(prefixes[i])) << lines[i].toStdString();
}

// The attachment check on real files: what links resolve to decides, not what they are called.
TEST(AttachmentSafety, OnlyPlainUserFilesPassAfterLinksAreResolved) {
    QTemporaryDir dir;
    const auto at = [&](const char* name) { return dir.filePath(QString::fromUtf8(name)); };
    writeFile(at("docs/report.pdf"), "pdf");
    writeFile(at(".gnupg/private.key"), "key");
    writeFile(at("container/SharedData/ShareFull/staged.png"), "png");
    QFile::link(at("docs/report.pdf"), at("docs/link-to-report"));
    QFile::link(at(".gnupg/private.key"), at("docs/innocent.txt"));
    QFile::link(QStringLiteral("/etc/hostname"), at("docs/hostname"));
    QFile::link(at("container/SharedData"), at("docs/shared"));
    QFile::link(at("docs/nowhere"), at("docs/dangling"));
    ASSERT_EQ(mkfifo(QFile::encodeName(at("docs/pipe")).constData(), 0600), 0);

    const struct {
        const char* name;
        QString path;
        QString accepted; // null: refused
    } rows[] = {
        {"file", at("docs/report.pdf"), at("docs/report.pdf")},
        {"folder", at("docs"), at("docs")},
        {"link-to-a-file", at("docs/link-to-report"), at("docs/report.pdf")},
        {"link-to-a-hidden-file", at("docs/innocent.txt"), {}},
        {"dot-dot", at("docs/../docs/report.pdf"), {}},
        {"link-into-etc", at("docs/hostname"), {}},
        {"link-into-the-container", at("docs/shared/ShareFull/staged.png"), {}},
        {"dangling-link", at("docs/dangling"), {}},
        {"named-pipe", at("docs/pipe"), {}},
        {"relative", QStringLiteral("docs/report.pdf"), {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const AttachmentSafety::Verdict verdict =
            AttachmentSafety::check(row.path, at("container"));
        EXPECT_EQ(verdict.path, row.accepted) << verdict.reason.toStdString();
        EXPECT_EQ(verdict.accepted(), verdict.reason.isNull());
    }
}

} // namespace
