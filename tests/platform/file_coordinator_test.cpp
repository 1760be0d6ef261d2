// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "platform/FileCoordinator.h"

#include <QFileInfo>

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

using namespace velmora;

TEST(FileCoordinator, AccessorsOfOneItemNeverOverlap) {
    QTemporaryDir dir;
    const QString item = dir.path() + QStringLiteral("/ShareFull");
    std::atomic<int> inside{0};
    std::atomic<int> overlaps{0};
    std::atomic<int> runs{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 50; ++i) {
                const auto error =
                    FileCoordinator::coordinateWritingItemAtPath(item, [&](const QString& path) {
                        if (inside.fetch_add(1) != 0)
                            overlaps.fetch_add(1);
                        EXPECT_EQ(path, item);
                        std::this_thread::yield();
                        inside.fetch_sub(1);
                        runs.fetch_add(1);
                    });
                EXPECT_FALSE(error.has_value());
            }
        });
    }
    for (auto& t : threads)
        t.join();
    EXPECT_EQ(runs.load(), 400);
    EXPECT_EQ(overlaps.load(), 0);
    EXPECT_TRUE(QFileInfo::exists(dir.path() + QStringLiteral("/.ShareFull.lock")));
}

// A missing item or an unusable folder is an error and the accessor does not run; an accessor
// that throws lets go of the lock.
TEST(FileCoordinator, ErrorsLeaveTheAccessorUnrunAndAThrowReleasesTheLock) {
    QTemporaryDir dir;
    velmora::test::writeFile(dir.filePath(QStringLiteral("file")), "x");
    bool ran = false;
    auto accessor = [&](const QString&) { ran = true; };
    EXPECT_TRUE(FileCoordinator::coordinateWritingItemAtPath(QString(), accessor).has_value());
    const auto underFile = FileCoordinator::coordinateWritingItemAtPath(
        dir.filePath(QStringLiteral("file/ShareFull")), accessor);
    ASSERT_TRUE(underFile.has_value());
    EXPECT_FALSE(underFile->text().isEmpty());
    EXPECT_FALSE(ran);

    const QString item = dir.filePath(QStringLiteral("Accounts.plist"));
    EXPECT_THROW(FileCoordinator::coordinateWritingItemAtPath(
                     item, [](const QString&) { throw std::runtime_error("boom"); }),
                 std::runtime_error);
    EXPECT_FALSE(FileCoordinator::coordinateWritingItemAtPath(item, accessor));
    EXPECT_TRUE(ran);
}
