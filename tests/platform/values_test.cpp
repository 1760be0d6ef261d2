// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/Values.h"

#include <QDateTime>
#include <QVariantList>
#include <QVariantMap>

#include <gtest/gtest.h>
#include <limits>
#include <string>

using namespace velmora;

namespace {

constexpr qint64 kMin = std::numeric_limits<qint64>::min();
constexpr qint64 kMax = std::numeric_limits<qint64>::max();

// Text is read by its leading number, with a point for decimals whatever the locale says.
TEST(Values, IntegerBoolAndRealOfEachKind) {
    const struct {
        const char* name;
        QVariant value;
        qint64 integer;
        bool boolean;
        double real;
    } rows[] = {
        {"plus_zeros", QStringLiteral("+007"), 7, true, 7.0},
        {"leading_space", QStringLiteral(" \t\n42abc"), 42, true, 42.0},
        {"hex_is_zero", QStringLiteral("0x10"), 0, false, 0.0},
        {"fraction_truncates", QStringLiteral("1.9"), 1, true, 1.9},
        {"exponent", QStringLiteral("2.5e3x"), 2, true, 2500.0},
        {"bare_exponent", QStringLiteral("2e"), 2, true, 2.0},
        {"yes", QStringLiteral("YES"), 0, true, 0.0},
        {"true_lower", QStringLiteral("true"), 0, true, 0.0},
        {"empty", QStringLiteral(""), 0, false, 0.0},
        {"overflow_clamps", QStringLiteral("99999999999999999999"), kMax, true, 1e20},
        {"underflow_clamps", QStringLiteral("-99999999999999999999"), kMin, true, -1e20},
        {"comma_is_not_decimal", QStringLiteral("3,5"), 3, true, 3.0},
        {"negative_real_truncates", -3.99, -3, true, -3.99},
        {"small_real", 0.5, 0, true, 0.5},
        {"real_clamps", 1e30, kMax, true, 1e30},
        {"unsigned_clamps", quint64(18446744073709551615ULL), kMax, true, 18446744073709551615.0},
        {"boolean", true, 1, true, 1.0},
        {"missing", QVariant(), 0, false, 0.0},
    };
    const std::string numeric = setlocale(LC_NUMERIC, nullptr);
    // scripts/bootstrap makes this locale, whose decimal separator is a comma.
    ASSERT_NE(setlocale(LC_NUMERIC, "de_DE.UTF-8"), nullptr);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Values::integerValue(row.value), row.integer);
        EXPECT_EQ(Values::boolValue(row.value), row.boolean);
        EXPECT_DOUBLE_EQ(Values::doubleValue(row.value), row.real);
    }
    setlocale(LC_NUMERIC, numeric.c_str());
}

TEST(Values, TextOfAValueIsNullWhenMissingAndRefusedForContainersAndDates) {
    EXPECT_TRUE(Values::stringValue(QVariant()).isNull());
    EXPECT_FALSE(Values::stringValue(QVariant(QStringLiteral(""))).isNull());
    EXPECT_EQ(Values::stringValue(QVariant(qint64(42))), QStringLiteral("42"));
    const QVariant kinds[] = {QVariant(QVariantMap{{QStringLiteral("a"), 1}}),
                              QVariant(QVariantList{1}), QVariant(QDateTime::fromSecsSinceEpoch(0)),
                              QVariant(QByteArray("x"))};
    for (const QVariant& v : kinds) {
        EXPECT_THROW(Values::integerValue(v), ValueError) << Values::kindName(v).toStdString();
        EXPECT_THROW(Values::boolValue(v), ValueError);
        EXPECT_THROW(Values::stringValue(v), ValueError);
    }
}

} // namespace
