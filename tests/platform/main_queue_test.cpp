// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "platform/MainQueue.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

#include <optional>
#include <thread>
#include <vector>

using namespace velmora;

namespace {

TEST(MainQueue, RunsWorkFromEveryThreadOnTheMainThreadInOrder) {
    QThread* const main = QThread::currentThread();
    std::vector<int> seen; // touched on the main thread only
    bool allOnMain = true;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 50; ++i) {
                MainQueue::async([&, t, i] {
                    allOnMain = allOnMain && QThread::currentThread() == main;
                    seen.push_back(t * 1000 + i);
                });
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_TRUE(seen.empty()); // nothing runs before the event loop does
    QCoreApplication::processEvents();
    ASSERT_EQ(seen.size(), 200u);
    EXPECT_TRUE(allOnMain);
    // Each thread's work in the order it queued it.
    std::vector<int> next(4, 0);
    for (int v : seen)
        EXPECT_EQ(v % 1000, next[size_t(v / 1000)]++) << v;
}

TEST(MainQueue, WorkQueuedBehindOneThatRunsItsOwnEventLoopRunsInThatLoop) {
    bool insideFirst = false;
    std::optional<bool> secondRanInsideFirst;
    MainQueue::async([&] {
        insideFirst = true;
        // As a modal sheet would: an event loop of its own, here until the second has run.
        const QDeadlineTimer deadline(5000);
        while (!secondRanInsideFirst && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
        insideFirst = false;
    });
    MainQueue::async([&] { secondRanInsideFirst = insideFirst; });
    QCoreApplication::processEvents();
    EXPECT_EQ(secondRanInsideFirst, std::optional<bool>(true));
}

} // namespace
