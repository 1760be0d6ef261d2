// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/DispatchQueue.h"

#include <atomic>
#include <future>
#include <gtest/gtest.h>

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

} // namespace
