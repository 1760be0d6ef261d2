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

TEST(Log, CaptureSeesErrorLinesFromEveryThread) {
    LogCapture capture;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([i] { Log::error(u"[%@] step %@", QString::number(i)); });
    for (auto& t : threads)
        t.join();
    QStringList lines = capture.linesStartingWith(u"[***ERROR***] step ");
    lines.sort();
    EXPECT_EQ(lines, (QStringList{QStringLiteral("[***ERROR***] step 0"),
                                  QStringLiteral("[***ERROR***] step 1"),
                                  QStringLiteral("[***ERROR***] step 2"),
                                  QStringLiteral("[***ERROR***] step 3")}));
}

TEST(Log, CaptureEndsWithItsScope) {
    LogCapture outer;
    {
        LogCapture inner;
        Log::write(u"first", {});
        EXPECT_EQ(inner.lines(), QStringList{QStringLiteral("first")});
    }
    Log::write(u"second", {});
    EXPECT_EQ(outer.lines(), (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
}
