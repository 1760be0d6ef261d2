// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/Values.h"

#include <QDateTime>
#include <QVariantList>
#include <QVariantMap>

#include <gtest/gtest.h>
#include <limits>

using namespace velmora;

namespace {

struct TextCase {
    const char* name;
    const char* text;
    qint64 integer;
    bool boolean;
    double real;
};

void PrintTo(const TextCase& c, std::ostream* os) {
    *os << c.name;
}

class TextConversions : public ::testing::TestWithParam<TextCase> {};

TEST_P(TextConversions, ReadLeadingNumberLikeThePlatform) {
    const TextCase& c = GetParam();
    const QString text = QString::fromUtf8(c.text);
    EXPECT_EQ(Values::integerValue(QVariant(text)), c.integer);
    EXPECT_EQ(Values::boolValue(QVariant(text)), c.boolean);
    EXPECT_DOUBLE_EQ(Values::doubleValue(QVariant(text)), c.real);
}

INSTANTIATE_TEST_SUITE_P(
    Table, TextConversions,
    ::testing::Values(
        TextCase{"plain", "12", 12, true, 12.0}, TextCase{"signed", "-12", -12, true, -12.0},
        TextCase{"plus_zeros", "+007", 7, true, 7.0},
        TextCase{"leading_space", " \t\n42abc", 42, true, 42.0},
        TextCase{"hex_is_zero", "0x10", 0, false, 0.0},
        TextCase{"fraction_truncates", "1.9", 1, true, 1.9},
        TextCase{"exponent", "2.5e3x", 2, true, 2500.0},
        TextCase{"bare_exponent", "2e", 2, true, 2.0}, TextCase{"yes", "YES", 0, true, 0.0},
        TextCase{"true_lower", "true", 0, true, 0.0}, TextCase{"no", "NO", 0, false, 0.0},
        TextCase{"minus_zero", "-0", 0, false, -0.0},
        TextCase{"digit_then_text", "1abc", 1, true, 1.0}, TextCase{"empty", "", 0, false, 0.0},
        TextCase{"only_sign", "-", 0, false, 0.0},
        TextCase{"overflow_clamps", "99999999999999999999", std::numeric_limits<qint64>::max(),
                 true, 1e20},
        TextCase{"underflow_clamps", "-99999999999999999999", std::numeric_limits<qint64>::min(),
                 true, -1e20},
        TextCase{"max", "9223372036854775807", std::numeric_limits<qint64>::max(), true,
                 9223372036854775807.0},
        TextCase{"min", "-9223372036854775808", std::numeric_limits<qint64>::min(), true,
                 -9223372036854775808.0},
        TextCase{"comma_is_not_decimal", "3,5", 3, true, 3.0}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(Values, RealTextIgnoresTheProcessLocale) {
    const char* old = setlocale(LC_NUMERIC, "de_DE.UTF-8");
    EXPECT_DOUBLE_EQ(Values::doubleValue(QStringView(u"1.5")), 1.5);
    if (old)
        setlocale(LC_NUMERIC, "C");
}

TEST(Values, NumbersConvertAsNumbers) {
    EXPECT_EQ(Values::integerValue(QVariant(qint64(3))), 3);
    EXPECT_EQ(Values::integerValue(QVariant(3.99)), 3);
    EXPECT_EQ(Values::integerValue(QVariant(-3.99)), -3);
    EXPECT_EQ(Values::integerValue(QVariant(1e30)), std::numeric_limits<qint64>::max());
    EXPECT_EQ(Values::integerValue(QVariant(quint64(18446744073709551615ULL))),
              std::numeric_limits<qint64>::max());
    EXPECT_EQ(Values::integerValue(QVariant(true)), 1);
    EXPECT_TRUE(Values::boolValue(QVariant(qint64(2))));
    EXPECT_FALSE(Values::boolValue(QVariant(0.0)));
    EXPECT_TRUE(Values::boolValue(QVariant(0.5)));
    EXPECT_FLOAT_EQ(Values::floatValue(QVariant(true)), 1.0f);
}

TEST(Values, SinglePrecisionRoundsLargeTimestamps) {
    // Present-day seconds since 1970 lie between 2^30 and 2^31: steps of 128 in a float.
    EXPECT_EQ(double(Values::floatValue(QVariant(qint64(1700000065)))), 1700000128.0);
    EXPECT_EQ(double(Values::floatValue(QVariant(QStringLiteral("1700000001")))), 1700000000.0);
}

TEST(Values, MissingValueIsZeroFalseAndNull) {
    EXPECT_EQ(Values::integerValue(QVariant()), 0);
    EXPECT_FALSE(Values::boolValue(QVariant()));
    EXPECT_EQ(Values::doubleValue(QVariant()), 0.0);
    EXPECT_TRUE(Values::stringValue(QVariant()).isNull());
    EXPECT_FALSE(Values::stringValue(QVariant(QStringLiteral(""))).isNull());
}

TEST(Values, ContainersAndDatesHaveNoNumberOrText) {
    const QVariant kinds[] = {QVariant(QVariantMap{{QStringLiteral("a"), 1}}),
                              QVariant(QVariantList{1}), QVariant(QDateTime::fromSecsSinceEpoch(0)),
                              QVariant(QByteArray("x"))};
    for (const QVariant& v : kinds) {
        EXPECT_THROW(Values::integerValue(v), ValueError) << Values::kindName(v).toStdString();
        EXPECT_THROW(Values::boolValue(v), ValueError);
        EXPECT_THROW(Values::stringValue(v), ValueError);
    }
    EXPECT_EQ(Values::stringValue(QVariant(qint64(42))), QStringLiteral("42"));
}

} // namespace
