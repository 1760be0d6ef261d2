// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/Log.h"

#include <gtest/gtest.h>
#include <thread>
#include <vector>

using namespace velmora;

TEST(Log, PlaceholdersTakeArgumentsInOrder) {
    EXPECT_EQ(Log::format(u"[%@] shareInit delete %@",
                          {QStringLiteral("***ERROR***"), QStringLiteral("gone")}),
              QStringLiteral("[***ERROR***] shareInit delete gone"));
    EXPECT_EQ(Log::format(u"exchangeDate %@", {QStringLiteral("50%@ off")}),
              QStringLiteral("exchangeDate 50%@ off"));
    EXPECT_EQ(Log::format(u"no args %@", {}), QStringLiteral("no args (null)"));
    EXPECT_EQ(Log::format(u"100% %d", {QStringLiteral("x")}), QStringLiteral("100% %d"));
}

// A capture sees lines from every thread, and an inner one hands back to the outer at its end.
TEST(Log, CaptureSeesLinesFromEveryThreadForItsScope) {
    LogCapture outer;
    {
        LogCapture inner;
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([i] { Log::error(u"[%@] step %@", QString::number(i)); });
        for (auto& t : threads)
            t.join();
        QStringList lines = inner.linesStartingWith(u"[***ERROR***] step ");
        lines.sort();
        EXPECT_EQ(lines, (QStringList{"[***ERROR***] step 0", "[***ERROR***] step 1",
                                      "[***ERROR***] step 2", "[***ERROR***] step 3"}));
    }
    Log::write(u"after", {});
    EXPECT_EQ(outer.lines().size(), 5);
    EXPECT_EQ(outer.lines().last(), QStringLiteral("after"));
}
