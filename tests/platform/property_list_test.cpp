// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "PlistTestSupport.h"
#include "TestSupport.h"
#include "platform/Log.h"
#include "platform/PropertyList.h"

#include <QDateTime>

#include <cmath>
#include <functional>
#include <limits>

using velmora::PropertyList;
using velmora::test::sameValue;
using namespace velmora::test::bplist;

namespace {

using Limits = PropertyList::Limits;

QByteArray xmlPlist(const QByteArray& body) {
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">)" +
           body + "</plist>\n";
}

QDateTime utc(int y, int mo, int d, int h, int mi, int s, int ms = 0) {
    return QDateTime(QDate(y, mo, d), QTime(h, mi, s, ms), Qt::UTC);
}

QVariant i64(qint64 v) {
    return QVariant(v);
}

QVariant u64(quint64 v) {
    return QVariant(v);
}

Limits withLimit(auto Limits::*field, qint64 value) {
    Limits limits;
    limits.*field = static_cast<std::remove_reference_t<decltype(limits.*field)>>(value);
    return limits;
}

// ---- Every kind of value: one table for both formats ----

struct ValueRow {
    const char* name;
    QByteArray xml;                 // the body of a <plist>; empty when the row is binary only
    std::vector<QByteArray> binary; // objects, the first is the root; none when XML only
    QVariant expected;
};

void PrintTo(const ValueRow& row, std::ostream* os) {
    *os << row.name;
}

class Values : public ::testing::TestWithParam<ValueRow> {};

TEST_P(Values, ReadTheSameInBothFormats) {
    const ValueRow& row = GetParam();
    QString error;
    if (!row.xml.isEmpty()) {
        EXPECT_TRUE(sameValue(PropertyList::fromXml(xmlPlist(row.xml), &error), row.expected))
            << "XML";
        EXPECT_TRUE(error.isEmpty()) << error.toStdString();
    }
    if (!row.binary.empty()) {
        EXPECT_TRUE(sameValue(PropertyList::fromBinary(file(row.binary), &error), row.expected))
            << "binary";
        EXPECT_TRUE(error.isEmpty()) << error.toStdString();
    }
}

constexpr qint64 kMin = std::numeric_limits<qint64>::min();
constexpr qint64 kMax = std::numeric_limits<qint64>::max();

INSTANTIATE_TEST_SUITE_P(
    PropertyList, Values,
    ::testing::Values(
        ValueRow{"string_blank", "<string> \n</string>", {}, QStringLiteral(" \n")},
        ValueRow{"string_references_cdata_comment",
                 "<string>&lt;a&gt;&amp;&#x1F600;&#233;<![CDATA[<b>]]><!-- c -->d</string>",
                 {},
                 QStringLiteral("<a>&\U0001F600\u00e9<b>d")},
        ValueRow{"string_undeclared_entity_stays_literal",
                 "<string>&lol9;</string>",
                 {},
                 QStringLiteral("&lol9;")},
        ValueRow{"string_lone_surrogate",
                 {},
                 {bytes({0x62, 0xD8, 0x3D, 0, 'A'})},
                 QString(QChar(0xD83D)) + u'A'},
        ValueRow{"string_long_count", {}, {ascii(QByteArray(300, 'x'))}, QString(300, u'x')},
        ValueRow{"integer_signs_and_hex",
                 "<array><integer>-42</integer><integer>+7</integer><integer> -0 </integer>"
                 "<integer>0x1F</integer><integer>-0X10</integer></array>",
                 {},
                 QVariantList{i64(-42), i64(7), i64(0), i64(31), i64(-16)}},
        ValueRow{
            "integer_limits",
            "<array><integer>9223372036854775807</integer><integer>-9223372036854775808</integer>"
            "<integer>9223372036854775808</integer><integer>18446744073709551615</integer></array>",
            {array({1, 2, 3, 4}), integer(kMax), integer(kMin),
             bytes({0x14}) + bigEndian(0, 8) + bigEndian(quint64(1) << 63, 8),
             bytes({0x14}) + bigEndian(0, 8) + QByteArray(8, '\xFF')},
            QVariantList{i64(kMax), i64(kMin), u64(quint64(1) << 63), u64(~quint64(0))}},
        // Integers of 1, 2 and 4 bytes are unsigned, of 8 signed; 16 bytes are signed 128-bit.
        ValueRow{"integer_widths",
                 {},
                 {array({1, 2, 3, 4, 5}), bytes({0x10, 0xFF}), bytes({0x11, 0xFF, 0xFE}),
                  bytes({0x12, 0xFF, 0xFF, 0xFF, 0xFF}), bytes({0x14}) + bigEndian(5, 16),
                  bytes({0x14}) + QByteArray(15, '\xFF') + '\xFE'},
                 QVariantList{i64(255), i64(65534), i64(4294967295), i64(5), i64(-2)}},
        ValueRow{"reals",
                 "<array><real>1.5</real><real>-2.5e-3</real><real>.5</real></array>",
                 {array({1, 2, 3}), bytes({0x22, 0x3F, 0xC0, 0, 0}), real(-0.0025), real(0.5)},
                 QVariantList{1.5, -0.0025, 0.5}},
        ValueRow{"reals_not_finite",
                 "<array><real>nan</real><real>INF</real><real>+infinity</real><real>-inf</real></"
                 "array>",
                 {array({1, 2, 2, 3}), real(std::nan("")), real(HUGE_VAL), real(-HUGE_VAL)},
                 QVariantList{std::nan(""), HUGE_VAL, HUGE_VAL, -HUGE_VAL}},
        ValueRow{
            "date_milliseconds_before_2001", {}, {date(-1.25)}, utc(2000, 12, 31, 23, 59, 58, 750)},
        ValueRow{"uid",
                 "<dict><key>CF$UID</key><integer>258</integer></dict>",
                 {bytes({0x81, 0x01, 0x02})},
                 QVariantMap{{"CF$UID", i64(258)}}},
        ValueRow{"uid_8_bytes",
                 {},
                 {bytes({0x87, 0, 0, 1, 0, 0, 0, 0, 0})},
                 QVariantMap{{"CF$UID", i64(qint64(1) << 40)}}},
        ValueRow{"dictionary_later_duplicate_wins",
                 "<dict><key>k</key><integer>1</integer><key></key><dict/><key>k</key><integer>2</"
                 "integer></dict>",
                 {dict({1, 2, 1}, {3, 4, 5}), ascii("k"), ascii(""), integer(1), dict({}, {}),
                  integer(2)},
                 QVariantMap{{"k", i64(2)}, {"", QVariantMap{}}}},
        ValueRow{
            "nested_and_sets",
            "<array><dict><key>list</key><array><array/><string/></array></dict></array>",
            {array({1}), dict({2}, {3}), ascii("list"), array({4, 5}, 0xC), array({}), ascii("")},
            QVariantList{QVariantMap{{"list", QVariantList{QVariantList{}, QStringLiteral("")}}}}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(PropertyList, FromDataPicksTheFormatAndReportsOnlyFailures) {
    EXPECT_TRUE(sameValue(PropertyList::fromData(file({ascii("b")})), QStringLiteral("b")));
    // A bare value is a root too, after a byte order mark and white space.
    EXPECT_TRUE(sameValue(PropertyList::fromData("\xEF\xBB\xBF <array><true/></array>"),
                          QVariantList{true}));
    QString error = QStringLiteral("stale");
    EXPECT_FALSE(PropertyList::fromData("bplist00", &error).isValid());
    EXPECT_FALSE(error.isEmpty());
    EXPECT_TRUE(PropertyList::fromData("<array/>", &error).isValid());
    EXPECT_TRUE(error.isEmpty()) << "success clears the error";
}

// ---- Malformed input: a null result and a reason ----

struct BadRow {
    const char* name;
    std::function<QByteArray()> input;
    const char* mentions; // a fragment the reason must contain
};

void PrintTo(const BadRow& row, std::ostream* os) {
    *os << row.name;
}

class Malformed : public ::testing::TestWithParam<BadRow> {};

TEST_P(Malformed, GivesNullAndSaysWhy) {
    QString error;
    EXPECT_FALSE(PropertyList::fromData(GetParam().input(), &error).isValid());
    EXPECT_TRUE(error.contains(QLatin1String(GetParam().mentions))) << error.toStdString();
}

BadRow raw(const char* name, const QByteArray& data, const char* mentions) {
    return {name, [data] { return data; }, mentions};
}

BadRow xml(const char* name, const char* body, const char* mentions) {
    return raw(name, xmlPlist(body), mentions);
}

BadRow objects(const char* name, std::vector<QByteArray> objects, const char* mentions) {
    return raw(name, file(objects), mentions);
}

// A well-formed file, an array holding a string, with a different trailer.
BadRow trailer(const char* name, std::function<void(Trailer&)> change, const char* mentions) {
    Trailer t;
    change(t);
    return raw(name, file({array({1}), ascii("x")}, t), mentions);
}

QByteArray withByte(QByteArray data, qsizetype at, char value) {
    data[at] = value;
    return data;
}

std::string badName(const ::testing::TestParamInfo<BadRow>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Xml, Malformed,
    ::testing::Values(
        raw("unclosed", "<plist><array><string>a</string>", "at byte"),
        raw("empty", "", "document element"),
        raw("two_roots", "<array/><array/>", "after the root"),
        xml("plist_two_values", "<string/><string/>", "exactly one"),
        xml("plist_no_value", "", "no value"), xml("unknown_element", "<set/>", "<set>"),
        xml("key_without_value", "<dict><key>a</key></dict>", "no value"),
        xml("key_then_key", "<dict><key>a</key><key>b</key><true/></dict>", "no value"),
        xml("value_where_key_expected", "<dict><string>a</string><true/></dict>", "<key>"),
        xml("key_outside_dict", "<array><key>a</key></array>", "outside"),
        xml("text_in_array", "<array>loose<true/></array>", "loose"),
        xml("element_in_string", "<string>a<b/></string>", "inside"),
        xml("content_in_true", "<true>yes</true>", "content"),
        xml("integer_text", "<integer>12a</integer>", "\"12a\""),
        xml("integer_empty", "<integer/>", "not an integer"),
        xml("integer_double_sign", "<integer>--1</integer>", "not an integer"),
        xml("integer_above_64_bits", "<integer>18446744073709551616</integer>", "not an integer"),
        xml("integer_below_64_bits", "<integer>-9223372036854775809</integer>", "below"),
        xml("real_text", "<real>1.5x</real>", "not a real"),
        xml("real_out_of_range", "<real>1e999</real>", "not a real"),
        xml("date_without_zone", "<date>2024-01-01T00:00:00</date>", "not a date"),
        xml("date_impossible", "<date>2023-02-29T00:00:00Z</date>", "not a date"),
        xml("base64_bad_character", "<data>SGVs*G8=</data>", "base64"),
        xml("base64_lone_character", "<data>SGVsb</data>", "base64")),
    badName);

INSTANTIATE_TEST_SUITE_P(
    Binary, Malformed,
    ::testing::Values(
        raw("magic_only", "bplist00", "not a bplist00"),
        raw("truncated", file({ascii("x")}).chopped(1), "trailer"),
        trailer(
            "offset_size_3", [](Trailer& t) { t.offsetSize = 3; }, "offset size"),
        trailer(
            "ref_size_0", [](Trailer& t) { t.refSize = 0; }, "reference size"),
        trailer(
            "no_objects", [](Trailer& t) { t.objectCount = 0; }, "top object"),
        trailer(
            "top_out_of_range", [](Trailer& t) { t.topObject = 2; }, "top object"),
        trailer(
            "table_past_trailer", [](Trailer& t) { t.objectCount = 30; }, "does not fit"),
        trailer(
            "table_in_header", [](Trailer& t) { t.tableOffset = 4; }, "does not fit"),
        trailer(
            "table_offset_huge", [](Trailer& t) { t.tableOffset = ~quint64(0); }, "does not fit"),
        trailer(
            "count_overflows_table", [](Trailer& t) { t.objectCount = quint64(1) << 62; },
            "does not fit"),
        // The one object is at byte 8; its two-byte offset at bytes 10 and 11.
        raw("offset_in_header", withByte(file({ascii("x")}), 11, 2), "outside the object area"),
        raw("offset_in_table", withByte(file({ascii("x")}), 11, 10), "outside the object area"),
        objects("ref_out_of_range", {array({7})}, "does not exist"),
        objects("self_reference", {array({0})}, "contains itself"),
        objects("indirect_cycle", {array({1}), dict({2}, {0}), ascii("k")}, "contains itself"),
        objects("key_not_string", {dict({1}, {1}), integer(1)}, "not a string"),
        objects("string_past_area", {head(0x5, 9) + "abc"}, "runs past"),
        objects("array_past_area", {head(0xA, 10) + '\0'}, "runs past"),
        objects("count_not_integer", {bytes({0x5F, 0x23}) + QByteArray(8, 0)}, "count"),
        objects("count_beyond_file", {head(0x4, quint64(1) << 40)}, "impossible"),
        objects("null_marker", {bytes({0x00})}, "0x00"),
        objects("fill_marker", {bytes({0x0F})}, "0x0f"),
        objects("utf8_marker", {bytes({0x71, 'a'})}, "0x71"),
        objects("real_of_one_byte", {bytes({0x20, 0})}, "0x20"),
        objects("integer_of_32_bytes", {bytes({0x15}) + QByteArray(32, 0)}, "2^5"),
        objects("integer_16_bytes_above_64_bits", {bytes({0x14, 1}) + QByteArray(15, 0)}, "64-bit"),
        objects("integer_16_bytes_below_64_bits",
                {bytes({0x14}) + QByteArray(8, '\xFF') + QByteArray(8, 0)}, "64-bit"),
        objects("uid_of_9_bytes", {bytes({0x88}) + QByteArray(9, 1)}, "UID"),
        objects("date_not_finite", {date(std::nan(""))}, "date")),
    badName);

// ---- Limits ----

QByteArray nestedXmlArrays(int levels) {
    return QByteArray("<array>").repeated(levels) + QByteArray("</array>").repeated(levels);
}

// levels arrays, each holding the next; references take four bytes so any length fits.
QByteArray nestedBinaryArrays(int levels) {
    std::vector<QByteArray> chain;
    for (int i = 0; i < levels; ++i)
        chain.push_back(i + 1 < levels ? head(0xA, 1) + bigEndian(i + 1, 4) : head(0xA, 0));
    Trailer t;
    t.offsetSize = 4;
    t.refSize = 4;
    return file(chain, t);
}

TEST(PropertyListLimits, DepthIsCountedInBothFormats) {
    const Limits limits = withLimit(&Limits::maxDepth, 10);
    QString error;
    EXPECT_TRUE(PropertyList::fromXml(nestedXmlArrays(10), &error, limits).isValid())
        << error.toStdString();
    EXPECT_TRUE(PropertyList::fromBinary(nestedBinaryArrays(10), &error, limits).isValid())
        << error.toStdString();
    EXPECT_FALSE(PropertyList::fromXml(nestedXmlArrays(11), &error, limits).isValid());
    EXPECT_TRUE(error.contains(u"deeper than 10")) << error.toStdString();
    EXPECT_FALSE(PropertyList::fromBinary(nestedBinaryArrays(11), &error, limits).isValid());
    EXPECT_TRUE(error.contains(u"deeper than 10")) << error.toStdString();
    // Far past the limit: refused without exhausting the stack.
    EXPECT_FALSE(PropertyList::fromXml(nestedXmlArrays(200000)).isValid());
    EXPECT_FALSE(PropertyList::fromBinary(nestedBinaryArrays(200000)).isValid());
}

TEST(PropertyListLimits, SharedObjectCountsItsHeightWhereverItIsReferenced) {
    // Object 1 heads a chain of five arrays. The root holds it directly (levels 2 to 6) and
    // inside a wrapper (levels 3 to 7): only the second place goes past a limit of 6.
    const QByteArray f = file(
        {array({1, 6}), array({2}), array({3}), array({4}), array({5}), array({}), array({1})});
    QString error;
    EXPECT_TRUE(PropertyList::fromBinary(f, &error, withLimit(&Limits::maxDepth, 7)).isValid());
    EXPECT_FALSE(PropertyList::fromBinary(f, &error, withLimit(&Limits::maxDepth, 6)).isValid());
    EXPECT_TRUE(error.contains(u"deeper than 6")) << error.toStdString();
}

TEST(PropertyListLimits, ObjectCount) {
    const Limits limits = withLimit(&Limits::maxObjects, 3);
    QString error;
    EXPECT_TRUE(PropertyList::fromXml("<array><true/><true/></array>", &error, limits).isValid());
    EXPECT_FALSE(
        PropertyList::fromXml("<array><true/><true/><true/></array>", &error, limits).isValid());
    EXPECT_TRUE(error.contains(u"more than 3")) << error.toStdString();
    EXPECT_TRUE(
        PropertyList::fromBinary(file({array({1, 2}), integer(1), integer(2)}), &error, limits)
            .isValid());
    // A declared object counts even when nothing refers to it.
    EXPECT_FALSE(PropertyList::fromBinary(file({array({1, 2}), integer(1), integer(2), integer(3)}),
                                          &error, limits)
                     .isValid());
    EXPECT_TRUE(error.contains(u"limit of 3")) << error.toStdString();
}

TEST(PropertyListLimits, InputSizeIsCheckedFirst) {
    for (const QByteArray& data : {file({ascii("x")}), QByteArray("<string>x</string>")}) {
        QString error;
        EXPECT_TRUE(
            PropertyList::fromData(data, &error, withLimit(&Limits::maxInputBytes, data.size()))
                .isValid());
        EXPECT_FALSE(
            PropertyList::fromData(data, &error, withLimit(&Limits::maxInputBytes, data.size() - 1))
                .isValid());
        EXPECT_TRUE(error.contains(u"above the limit")) << error.toStdString();
    }
}

TEST(PropertyListLimits, SharedReferencesAreDecodedOnce) {
    // Forty levels, each an array of two references to the level below: 2^40 leaves if copied.
    constexpr int kLevels = 40;
    std::vector<QByteArray> levels;
    for (int level = 0; level < kLevels; ++level)
        levels.push_back(array({level + 1, level + 1}));
    levels.push_back(ascii("lol"));
    QVariant at = PropertyList::fromBinary(file(levels));
    for (int level = 0; level < kLevels; ++level) {
        const QVariantList pair = at.toList();
        ASSERT_EQ(pair.size(), 2) << level;
        if (level + 1 < kLevels) {
            EXPECT_EQ(pair[0].toList().constData(), pair[1].toList().constData()) << level;
        }
        at = pair[0];
    }
    EXPECT_TRUE(sameValue(at, QStringLiteral("lol")));
}

} // namespace
