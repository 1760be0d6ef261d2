// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "Shown.h"
#include "TestSupport.h"
#include "message/ExtensionDate.h"
#include "platform/Log.h"

#include <QTimeZone>

using namespace velmora;

namespace {

// The local day (the test main fixes TZ=Europe/Rome and the C locale): the time for today,
// else the date.
TEST(DateService, DayKeyAndShownTextFollowTheLocalDay) {
    const ExtensionDate& dates = ExtensionDate::shared();
    EXPECT_EQ(dates.centralDate(QDateTime(QDate::currentDate(), QTime(0, 0, 1))),
              QStringLiteral("00:00:01"));
    const QDateTime lateUtc(QDate(2026, 1, 5), QTime(23, 30), QTimeZone::utc()); // Rome: the 6th
    EXPECT_EQ(dates.IntDate(lateUtc), 20260106);
    EXPECT_EQ(dates.centralDate(lateUtc), QStringLiteral("6 Jan 2026"));
    EXPECT_EQ(dates.IntDate(QDateTime()), 0);
    EXPECT_EQ(test::shown(dates.centralDate(QDateTime())), QStringLiteral("\"\""));
}

TEST(DateService, ReadsOnlyTheExactExchangeFormatAndLogsEachText) {
    const ExtensionDate& dates = ExtensionDate::shared();
    const QDateTime instant(QDate(2026, 11, 16), QTime(5, 22, 27), QTimeZone::utc());
    const struct {
        const char* name;
        QString text;
        QDateTime expected;
    } rows[] = {
        {"utc", QStringLiteral("2026-11-16T05:22:27Z"), instant},
        {"numeric_offset", QStringLiteral("2026-11-16T05:22:27+00:00"), {}},
        {"no_such_day", QStringLiteral("2026-02-30T05:22:27Z"), {}},
        {"hour_24", QStringLiteral("2026-11-16T24:00:00Z"), {}},
        {"leading_blank", QStringLiteral(" 2026-11-16T05:22:27Z"), {}},
        {"wide_digits", QString::fromUtf8("２０２６-11-16T05:22:27Z"), {}},
        {"trailing_text", QStringLiteral("2026-11-16T05:22:27Z "), {}},
        {"empty", QStringLiteral(""), {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        LogCapture log;
        const QDateTime read = dates.exchangeDate(row.text);
        EXPECT_EQ(read.isValid(), row.expected.isValid());
        if (row.expected.isValid()) {
            EXPECT_EQ(read.toMSecsSinceEpoch(), row.expected.toMSecsSinceEpoch());
            EXPECT_EQ(read.timeSpec(), Qt::UTC);
        }
        EXPECT_EQ(log.lines(), QStringList{QStringLiteral("exchangeDate ") + row.text});
    }
    LogCapture log;
    EXPECT_FALSE(dates.exchangeDate(QString()).isValid());
    EXPECT_TRUE(log.lines().isEmpty());
}

} // namespace
