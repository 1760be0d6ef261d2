// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/DispatchQueue.h"

#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <mutex>
#include <vector>

using namespace velmora;

namespace {

TEST(DispatchQueue, ManyItemsRunOnABoundedNumberOfThreadsAndABlockedOneHoldsUpOnlyItsOwn) {
    std::atomic<int> running = 0;
    std::atomic<int> mostAtOnce = 0;
    std::atomic<int> done = 0;
    std::promise<void> second;
    std::promise<void> first;
    {
        DispatchQueue queue(DispatchQueue::Priority::Default, 3);
        // The first item finishes only after the second has run: on one thread both would wait.
        queue.async([&, ran = second.get_future().share()] {
            ran.wait();
            first.set_value();
        });
        queue.async([&] { second.set_value(); });
        for (int i = 0; i < 1000; ++i) {
            queue.async([&] {
                const int now = ++running;
                int seen = mostAtOnce.load();
                while (now > seen && !mostAtOnce.compare_exchange_weak(seen, now)) {
                }
                --running;
                ++done;
            });
        }
        EXPECT_EQ(first.get_future().wait_for(std::chrono::seconds(30)), std::future_status::ready);
        EXPECT_LE(queue.threadCount(), 3);
    } // the queue's end waits for its work
    EXPECT_EQ(done, 1000);
    EXPECT_LE(mostAtOnce, 3);
    EXPECT_GE(DispatchQueue::defaultWidth(), 2);
}

TEST(DispatchQueue, DelayedItemsRunInTheOrderTheyFallDueAndHoldNoThreadWhileTheyWait) {
    std::mutex mutex;
    std::vector<int> order;
    auto record = [&](int n) {
        return [&, n] {
            const std::lock_guard lock(mutex);
            order.push_back(n);
        };
    };
    using std::chrono::milliseconds;
    {
        DispatchQueue queue(DispatchQueue::Priority::Background, 1);
        queue.asyncAfter(milliseconds(700), record(3));
        queue.asyncAfter(milliseconds(400), record(2));
        queue.asyncAfter(milliseconds(700), record(4)); // same time: queued later, runs later
        // The only thread is free for new work while the delayed items wait.
        queue.async(record(1));
    } // the queue's end runs the delayed items at their time
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3, 4}));
}

} // namespace
