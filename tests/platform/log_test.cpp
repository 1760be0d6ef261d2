// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/Log.h"

#include <gtest/gtest.h>

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
