// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Several stagings under one hold of the staging folder's lock: each gets what it gets alone.

#include "TestSupport.h"
#include "bridge/ExtensionUtilities.h"
#include "bridge/ShareFolder.h"
#include "platform/FileCoordinator.h"
#include "platform/Log.h"

#include <QDir>
#include <QFileInfo>

#include <deque>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

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

TEST(StagingBatch, RequestsStagedUnderOneHoldOfTheLockGetWhatEachGetsAlone) {
    const velmora::test::TempContainer container;
    QTemporaryDir sources;
    ExtensionUtilities::ShareInit(kService);
    const QString a = sources.filePath(QStringLiteral("a.txt"));
    writeFile(a, "a");
    const QString missing = sources.filePath(QStringLiteral("missing.txt"));

    LogCapture log;
    Requests requests;
    requests.add({a, missing}, {});
    requests.add({}, {"png", "png2"});
    requests.add({a}, {});
    ExtensionUtilities::ShareBatch(kService, requests.take(container.dataFolder()));

    const QString folder = ShareFolder::current(kService)->path();
    EXPECT_EQ(requests.staged, (QList<QStringList>{{folder + QStringLiteral("/a.txt")},
                                                   {folder + QStringLiteral("/image.png"),
                                                    folder + QStringLiteral("/image_1.png")},
                                                   {folder + QStringLiteral("/a_1.txt")}}));
    EXPECT_EQ(readFile(folder + QStringLiteral("/a_1.txt")), "a");
    EXPECT_EQ(readFile(folder + QStringLiteral("/image_1.png")), "png2");
    // Every request, and the question that found none left, came while the lock was held.
    EXPECT_EQ(requests.lockFree, QList<bool>(4, false));
    EXPECT_TRUE(stagingLockIsFree(container.dataFolder()));
    const QStringList lines = log.lines();
    ASSERT_EQ(lines.size(), 1) << lines.join(u'\n').toStdString();
    EXPECT_TRUE(lines[0].startsWith(u"[***ERROR***] Error writing file shareFiles "));
    // Only the staged files are left, no temporary entries.
    EXPECT_EQ(QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              (QStringList{"a.txt", "a_1.txt", "image.png", "image_1.png"}));
}

TEST(StagingBatch, WithoutTheLockEveryRequestLogsItsOwnLineAndStagesNothing) {
    QTemporaryDir dir;
    writeFile(dir.filePath(QStringLiteral("file")), "x");
    const velmora::test::ScopedEnv container(
        "VELMORA_GROUP_CONTAINER", QFile::encodeName(dir.filePath(QStringLiteral("file/c"))));
    LogCapture log;
    Requests requests;
    requests.add({dir.filePath(QStringLiteral("file"))}, {});
    requests.add({}, {"png"});
    ExtensionUtilities::ShareBatch(kService, requests.take(QString()));
    EXPECT_EQ(requests.staged, (QList<QStringList>{{}, {}}));
    const QStringList lines = log.lines();
    ASSERT_EQ(lines.size(), 2) << lines.join(u'\n').toStdString();
    EXPECT_TRUE(lines[0].startsWith(u"[***ERROR***] Error shareFiles "));
    EXPECT_TRUE(lines[1].startsWith(u"[***ERROR***] Error shareDatas "));
}

} // namespace
