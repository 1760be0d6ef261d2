// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "message/ExtensionDate.h"
#include "platform/Log.h"

#include <QTimeZone>

#include <thread>
#include <vector>

using namespace velmora;

// The test main fixes LC_ALL=C.UTF-8 and TZ=Europe/Rome: in the C locale the short time is
// "HH:mm:ss" and the short date "d MMM yyyy".
namespace {

QDateTime local(int y, int m, int d, int h, int min) {
    return QDateTime(QDate(y, m, d), QTime(h, min));
}

// The day key and the text shown both follow the local day: the time for today, else the date.
TEST(DateService, DayKeyAndShownTextFollowTheLocalDay) {
    const ExtensionDate& dates = ExtensionDate::shared();
    const QDate today = QDateTime::currentDateTime().date();
    const auto key = [](QDate day) { return day.year() * 10000 + day.month() * 100 + day.day(); };
    const auto shortDate = [](QDate day) { return QLocale::c().toString(day, u"d MMM yyyy"); };
    const struct {
        const char* name;
        QDateTime date;
        int dayKey;
        QString shown;
    } rows[] = {
        {"earlier_today", QDateTime(today, QTime(0, 0, 1)), key(today), QStringLiteral("00:00:01")},
        {"yesterday_late", QDateTime(today.addDays(-1), QTime(23, 59)), key(today.addDays(-1)),
         shortDate(today.addDays(-1))},
        {"tomorrow", QDateTime(today.addDays(1), QTime(0, 10)), key(today.addDays(1)),
         shortDate(today.addDays(1))},
        {"before_midnight", local(2026, 1, 5, 23, 30), 20260105, QStringLiteral("5 Jan 2026")},
        // 23:30 UTC is already the next day in Rome.
        {"utc_after_midnight_in_rome",
         QDateTime(QDate(2026, 1, 5), QTime(23, 30), QTimeZone::utc()), 20260106,
         QStringLiteral("6 Jan 2026")},
        {"epoch_in_rome", QDateTime::fromMSecsSinceEpoch(0, QTimeZone::utc()), 19700101,
         QStringLiteral("1 Jan 1970")},
        {"invalid", QDateTime(), 0, QStringLiteral("")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(dates.IntDate(row.date), row.dayKey);
        EXPECT_EQ(dates.centralDate(row.date), row.shown);
        EXPECT_FALSE(dates.centralDate(row.date).isNull());
    }
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

// One service however many threads ask first, and conversions from any thread (ThreadSanitizer
// watches this one).
TEST(DateService, IsSharedAndUsableFromAnyThread) {
    LogCapture log;
    std::vector<const ExtensionDate*> seen(8);
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([t, &seen] {
            const ExtensionDate& dates = ExtensionDate::shared();
            seen[t] = &dates;
            for (int i = 0; i < 50; ++i) {
                dates.centralDate(QDateTime::currentDateTime());
                dates.IntDate(QDateTime::currentDateTime());
                dates.exchangeDate(QStringLiteral("2026-11-16T05:22:27Z"));
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (const ExtensionDate* dates : seen)
        EXPECT_EQ(dates, &ExtensionDate::shared());
    EXPECT_EQ(log.linesStartingWith(u"exchangeDate ").size(), 8 * 50);
}

} // namespace
