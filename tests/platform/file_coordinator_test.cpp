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

// A path that cannot be locked is an error and the accessor does not run; an accessor that throws
// lets go of the lock.
TEST(FileCoordinator, ErrorsLeaveTheAccessorUnrunAndAThrowReleasesTheLock) {
    QTemporaryDir dir;
    velmora::test::writeFile(dir.filePath(QStringLiteral("file")), "x");
    int runs = 0;
    auto accessor = [&](const QString&) { ++runs; };
    for (const QString& path : {QString(), dir.filePath(QStringLiteral("file/ShareFull"))}) {
        const auto error = FileCoordinator::coordinateWritingItemAtPath(path, accessor);
        EXPECT_TRUE(error && !error->text().isEmpty()) << path.toStdString();
    }
    EXPECT_EQ(runs, 0);
    const QString item = dir.filePath(QStringLiteral("Accounts.plist"));
    auto boom = [](const QString&) { throw std::runtime_error("boom"); };
    EXPECT_THROW(FileCoordinator::coordinateWritingItemAtPath(item, boom), std::runtime_error);
    EXPECT_FALSE(FileCoordinator::coordinateWritingItemAtPath(item, accessor));
    EXPECT_EQ(runs, 1);
}
