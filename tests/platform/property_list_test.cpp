#include "PlistTestSupport.h"
#include "TestSupport.h"
#include "platform/Log.h"
#include "platform/PropertyList.h"

#include <QDateTime>
#include <QTemporaryDir>

#include <cmath>
#include <functional>
#include <limits>

using velmora::PropertyList;
using velmora::test::BinaryPlist;
using velmora::test::sameValue;

namespace {

using Limits = PropertyList::Limits;

Limits limit(qint64 Limits::*field, qint64 value) {
    Limits limits;
    limits.*field = value;
    return limits;
}

Limits depthLimit(int depth) {
    Limits limits;
    limits.maxDepth = depth;
    return limits;
}

QByteArray xmlPlist(const QByteArray& body) {
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">)" +
           body + "</plist>\n";
}

QDateTime utc(int y, int mo, int d, int h, int mi, int s, int ms = 0) {
    return QDateTime(QDate(y, mo, d), QTime(h, mi, s, ms), Qt::UTC);
}

QVariant big(quint64 v) {
    return QVariant(v);
}

QVariant i64(qint64 v) {
    return QVariant(v);
}

// ---- Every kind of value, in each format ----

struct ValueRow {
    const char* name;
    QByteArray input; // an XML body, or one encoded binary object
    QVariant expected;
};

void PrintTo(const ValueRow& row, std::ostream* os) {
    *os << row.name;
}

std::string rowName(const ::testing::TestParamInfo<ValueRow>& info) {
    return info.param.name;
}

class XmlValue : public ::testing::TestWithParam<ValueRow> {};

TEST_P(XmlValue, ReadsAsExpected) {
    QString error;
    const QVariant value = PropertyList::fromXml(xmlPlist(GetParam().input), &error);
    EXPECT_TRUE(error.isEmpty()) << error.toStdString();
    EXPECT_TRUE(sameValue(value, GetParam().expected));
}

const QString kNonBmp = QStringLiteral("Zo\u00eb \u65e5\u672c \U0001D11E \U0001F600");

INSTANTIATE_TEST_SUITE_P(
    PropertyList, XmlValue,
    ::testing::Values(
        ValueRow{"string", "<string>hello</string>", QStringLiteral("hello")},
        ValueRow{"string_empty_element", "<string/>", QStringLiteral("")},
        ValueRow{"string_empty_pair", "<string></string>", QStringLiteral("")},
        ValueRow{"string_blank", "<string>  \n</string>", QStringLiteral("  \n")},
        ValueRow{"string_unicode", kNonBmp.toUtf8().prepend("<string>").append("</string>"),
                 kNonBmp},
        ValueRow{"string_references", "<string>&lt;a&gt; &amp; &#x1F600;&#233;</string>",
                 QStringLiteral("<a> & \U0001F600\u00e9")},
        ValueRow{"string_cdata_and_comment", "<string>a<![CDATA[<b>]]><!-- c -->d</string>",
                 QStringLiteral("a<b>d")},
        ValueRow{"integer", "<integer>42</integer>", i64(42)},
        ValueRow{"integer_signs",
                 "<array><integer>-42</integer><integer>+7</integer>"
                 "<integer> -0 </integer></array>",
                 QVariantList{i64(-42), i64(7), i64(0)}},
        ValueRow{"integer_hex", "<array><integer>0x1F</integer><integer>-0X10</integer></array>",
                 QVariantList{i64(31), i64(-16)}},
        ValueRow{"integer_limits",
                 "<array><integer>9223372036854775807</integer>"
                 "<integer>-9223372036854775808</integer><integer>9223372036854775808</integer>"
                 "<integer>18446744073709551615</integer></array>",
                 QVariantList{i64(std::numeric_limits<qint64>::max()),
                              i64(std::numeric_limits<qint64>::min()), big(quint64(1) << 63),
                              big(std::numeric_limits<quint64>::max())}},
        ValueRow{"real", "<array><real>1.5</real><real>-2.5e-3</real><real>.5</real></array>",
                 QVariantList{1.5, -0.0025, 0.5}},
        ValueRow{"real_special",
                 "<array><real>nan</real><real>INF</real><real>+infinity</real><real>-inf</real>"
                 "</array>",
                 QVariantList{std::nan(""), HUGE_VAL, HUGE_VAL, -HUGE_VAL}},
        ValueRow{"booleans", "<array><true/><false/><true></true></array>",
                 QVariantList{true, false, true}},
        ValueRow{"date", "<date>2024-02-29T23:59:58Z</date>", utc(2024, 2, 29, 23, 59, 58)},
        ValueRow{"data_with_line_breaks", "<data>\n\tSGVs\n\tbG8=\n</data>", QByteArray("Hello")},
        ValueRow{"data_empty", "<data></data>", QByteArray("")},
        ValueRow{"dictionary",
                 "<dict><key>b</key><integer>2</integer><key>a</key><string>x</string>"
                 "<key></key><dict/></dict>",
                 QVariantMap{{"a", "x"}, {"b", i64(2)}, {"", QVariantMap{}}}},
        ValueRow{"duplicate_key_later_wins",
                 "<dict><key>k</key><integer>1</integer><key>k</key><integer>2</integer></dict>",
                 QVariantMap{{"k", i64(2)}}},
        ValueRow{"nested",
                 "<array><dict><key>list</key><array><array/><string/></array></dict></array>",
                 QVariantList{QVariantMap{{"list", QVariantList{QVariantList{}, QString("")}}}}},
        ValueRow{"undeclared_entity_stays_literal", "<string>&lol9;</string>",
                 QStringLiteral("&lol9;")}),
    rowName);

class BinaryValue : public ::testing::TestWithParam<ValueRow> {};

TEST_P(BinaryValue, ReadsAsExpected) {
    BinaryPlist file;
    file.add(GetParam().input);
    QString error;
    const QVariant value = PropertyList::fromBinary(file.build(), &error);
    EXPECT_TRUE(error.isEmpty()) << error.toStdString();
    EXPECT_TRUE(sameValue(value, GetParam().expected));
}

QByteArray bytes(std::initializer_list<int> values) {
    QByteArray b;
    for (int v : values)
        b += char(v);
    return b;
}

INSTANTIATE_TEST_SUITE_P(
    PropertyList, BinaryValue,
    ::testing::Values(
        ValueRow{"false", bytes({0x08}), false}, ValueRow{"true", bytes({0x09}), true},
        ValueRow{"int_1_byte_is_unsigned", bytes({0x10, 0xFF}), i64(255)},
        ValueRow{"int_2_bytes", bytes({0x11, 0xFF, 0xFE}), i64(65534)},
        ValueRow{"int_4_bytes_is_unsigned", bytes({0x12, 0xFF, 0xFF, 0xFF, 0xFF}), i64(4294967295)},
        ValueRow{"int_8_bytes_is_signed", BinaryPlist::integer(-3), i64(-3)},
        ValueRow{"int_16_bytes_above_signed",
                 bytes({0x14}) + QByteArray(8, 0) + QByteArray(8, '\xFF'),
                 big(std::numeric_limits<quint64>::max())},
        ValueRow{"int_16_bytes_small", bytes({0x14}) + QByteArray(15, 0) + '\x05', i64(5)},
        ValueRow{"int_16_bytes_negative", bytes({0x14}) + QByteArray(15, '\xFF') + '\xFE', i64(-2)},
        ValueRow{"float", bytes({0x22, 0x3F, 0xC0, 0, 0}), 1.5},
        ValueRow{"double", BinaryPlist::real(-0.1), -0.1},
        ValueRow{"date_epoch", BinaryPlist::date(0), utc(2001, 1, 1, 0, 0, 0)},
        ValueRow{"date_milliseconds", BinaryPlist::date(-1.25), utc(2000, 12, 31, 23, 59, 58, 750)},
        ValueRow{"data", bytes({0x43, 0, 1, 0xFF}), QByteArray("\x00\x01\xFF", 3)},
        ValueRow{"data_empty", bytes({0x40}), QByteArray("")},
        ValueRow{"ascii", BinaryPlist::ascii("plain"), QStringLiteral("plain")},
        ValueRow{"ascii_empty", bytes({0x50}), QStringLiteral("")},
        ValueRow{"ascii_long_count", BinaryPlist::ascii(QByteArray(300, 'x')), QString(300, u'x')},
        ValueRow{"utf16_non_bmp", BinaryPlist::utf16(kNonBmp), kNonBmp},
        ValueRow{"utf16_lone_surrogate", bytes({0x62, 0xD8, 0x3D, 0x00, 0x41}),
                 QString(QChar(0xD83D)) + u'A'},
        ValueRow{"uid", bytes({0x81, 0x01, 0x02}), QVariantMap{{"CF$UID", i64(258)}}},
        ValueRow{"uid_8_bytes", bytes({0x87, 0, 0, 1, 0, 0, 0, 0, 0}),
                 QVariantMap{{"CF$UID", i64(qint64(1) << 40)}}},
        ValueRow{"empty_array", bytes({0xA0}), QVariantList{}},
        ValueRow{"empty_dict", bytes({0xD0}), QVariantMap{}}),
    rowName);

// ---- Structure ----

TEST(PropertyListBinary, ReadsNestedContainersAndSets) {
    BinaryPlist f;
    const int root = f.add(BinaryPlist::dict({1, 2, 3}, {4, 5, 2}));
    f.add(BinaryPlist::ascii("list"));
    f.add(BinaryPlist::utf16(QStringLiteral("k\u00e9")));
    f.add(BinaryPlist::ascii("set"));
    f.add(BinaryPlist::array({6, 7}));
    f.add(BinaryPlist::array({7}, 0xC));
    f.add(BinaryPlist::dict({}, {}));
    f.add(BinaryPlist::integer(9));
    const QVariantMap expected{{"list", QVariantList{QVariantMap{}, i64(9)}},
                               {QStringLiteral("k\u00e9"), QVariantList{i64(9)}},
                               {"set", QStringLiteral("k\u00e9")}};
    EXPECT_TRUE(sameValue(PropertyList::fromBinary(f.build(root)), expected));
}

TEST(PropertyListBinary, LaterDuplicateKeyWins) {
    BinaryPlist f;
    f.add(BinaryPlist::dict({1, 1}, {2, 3}));
    f.add(BinaryPlist::ascii("k"));
    f.add(BinaryPlist::integer(1));
    f.add(BinaryPlist::integer(2));
    EXPECT_TRUE(sameValue(PropertyList::fromBinary(f.build()), QVariantMap{{"k", i64(2)}}));
}

TEST(PropertyList, FromDataPicksTheFormatAndNullIsNotEmpty) {
    BinaryPlist f;
    f.add(BinaryPlist::ascii(""));
    const QVariant binary = PropertyList::fromData(f.build());
    EXPECT_TRUE(sameValue(binary, QStringLiteral("")));
    EXPECT_FALSE(binary.toString().isNull());
    const QVariant xml = PropertyList::fromData("\xEF\xBB\xBF  <array><string/></array>");
    EXPECT_TRUE(sameValue(xml, QVariantList{QStringLiteral("")}));
    QString error = QStringLiteral("stale");
    EXPECT_TRUE(PropertyList::fromData("bplist00", &error).isNull());
    EXPECT_FALSE(error.isEmpty());
    EXPECT_TRUE(PropertyList::fromData("<array/>", &error).isValid());
    EXPECT_TRUE(error.isEmpty()) << "success clears the error";
}

// ---- Malformed input ----

struct BadRow {
    const char* name;
    std::function<QByteArray()> input;
    const char* mentions; // a fragment the error text must contain
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

BadRow xmlBad(const char* name, const char* body, const char* mentions) {
    return {name, [body] { return xmlPlist(body); }, mentions};
}

QByteArray binaryFile(std::initializer_list<QByteArray> objects, BinaryPlist::Trailer t = {}) {
    BinaryPlist f;
    for (const QByteArray& object : objects)
        f.add(object);
    return f.build(t);
}

// A trailer change applied to a well-formed file: an array holding a string.
BadRow trailerBad(const char* name, std::function<void(BinaryPlist::Trailer&)> change,
                  const char* mentions) {
    return {name,
            [change] {
                BinaryPlist::Trailer t;
                change(t);
                return binaryFile({BinaryPlist::array({1}), BinaryPlist::ascii("x")}, t);
            },
            mentions};
}

BadRow objectsBad(const char* name, std::initializer_list<QByteArray> objects,
                  const char* mentions) {
    std::vector<QByteArray> copy(objects);
    return {name,
            [copy] {
                BinaryPlist f;
                for (const QByteArray& object : copy)
                    f.add(object);
                return f.build();
            },
            mentions};
}

std::string badName(const ::testing::TestParamInfo<BadRow>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Xml, Malformed,
    ::testing::Values(
        BadRow{"unclosed", [] { return QByteArray("<plist><array><string>a</string>"); }, "byte"},
        BadRow{"empty", [] { return QByteArray(); }, "document element"},
        BadRow{"two_roots", [] { return QByteArray("<array/><array/>"); }, "after the root"},
        xmlBad("plist_two_values", "<string/><string/>", "exactly one"),
        xmlBad("plist_no_value", "", "no value"), xmlBad("unknown_element", "<set/>", "<set>"),
        xmlBad("key_without_value", "<dict><key>a</key></dict>", "no value"),
        xmlBad("key_then_key", "<dict><key>a</key><key>b</key><true/></dict>", "no value"),
        xmlBad("value_where_key_expected", "<dict><string>a</string><true/></dict>", "<key>"),
        xmlBad("key_outside_dict", "<array><key>a</key></array>", "outside"),
        xmlBad("text_in_array", "<array>loose<true/></array>", "loose"),
        xmlBad("element_in_string", "<string>a<b/></string>", "inside"),
        xmlBad("content_in_true", "<true>yes</true>", "content"),
        xmlBad("integer_text", "<integer>12a</integer>", "12a"),
        xmlBad("integer_empty", "<integer/>", "not an integer"),
        xmlBad("integer_double_sign", "<integer>--1</integer>", "not an integer"),
        xmlBad("integer_too_big", "<integer>18446744073709551616</integer>", "not an integer"),
        xmlBad("integer_too_small", "<integer>-9223372036854775809</integer>", "below"),
        xmlBad("real_text", "<real>1.5x</real>", "not a real"),
        xmlBad("real_out_of_range", "<real>1e999</real>", "not a real"),
        xmlBad("date_no_zone", "<date>2024-01-01T00:00:00</date>", "not a date"),
        xmlBad("date_impossible", "<date>2023-02-29T00:00:00Z</date>", "not a date"),
        xmlBad("base64_bad_character", "<data>SGVs*G8=</data>", "base64"),
        xmlBad("base64_lone_character", "<data>SGVsb</data>", "base64")),
    badName);

INSTANTIATE_TEST_SUITE_P(
    Binary, Malformed,
    ::testing::Values(
        BadRow{"magic_only", [] { return QByteArray("bplist00"); }, "not a bplist00"},
        BadRow{"truncated",
               [] {
                   BinaryPlist f;
                   f.add(BinaryPlist::ascii("x"));
                   return f.build().chopped(1);
               },
               "trailer"},
        trailerBad(
            "offset_size_3", [](auto& t) { t.offsetSize = 3; }, "offset size"),
        trailerBad(
            "ref_size_0", [](auto& t) { t.refSize = 0; }, "reference size"),
        trailerBad(
            "no_objects", [](auto& t) { t.objectCount = 0; }, "top object"),
        trailerBad(
            "top_out_of_range", [](auto& t) { t.topObject = 2; }, "top object"),
        trailerBad(
            "table_past_trailer", [](auto& t) { t.objectCount = 30; }, "does not fit"),
        trailerBad(
            "table_in_header", [](auto& t) { t.tableOffset = 4; }, "does not fit"),
        trailerBad(
            "table_offset_huge", [](auto& t) { t.tableOffset = ~quint64(0); }, "does not fit"),
        trailerBad(
            "count_overflows_table", [](auto& t) { t.objectCount = quint64(1) << 62; },
            "does not fit"),
        BadRow{"offset_in_header",
               [] {
                   QByteArray f = binaryFile({BinaryPlist::ascii("x")});
                   f[11] = 2; // the only offset, two bytes after the object at byte 8
                   return f;
               },
               "outside the object area"},
        BadRow{"offset_in_table",
               [] {
                   QByteArray f = binaryFile({BinaryPlist::ascii("x")});
                   f[11] = 10;
                   return f;
               },
               "outside the object area"},
        objectsBad("ref_out_of_range", {BinaryPlist::array({7})}, "does not exist"),
        objectsBad("self_reference", {BinaryPlist::array({0})}, "contains itself"),
        objectsBad("indirect_cycle",
                   {BinaryPlist::array({1}), BinaryPlist::dict({2}, {0}), BinaryPlist::ascii("k")},
                   "contains itself"),
        objectsBad("key_not_string", {BinaryPlist::dict({1}, {1}), BinaryPlist::integer(1)},
                   "not a string"),
        objectsBad("string_past_area", {BinaryPlist::head(0x5, 9) + "abc"}, "runs past"),
        objectsBad("array_past_area", {BinaryPlist::head(0xA, 10) + '\0'}, "runs past"),
        objectsBad("count_not_integer", {"\x5F\x23" + QByteArray(8, 0)}, "count"),
        objectsBad("count_beyond_file", {BinaryPlist::head(0x4, quint64(1) << 40)}, "impossible"),
        objectsBad("null_marker", {bytes({0x00})}, "0x00"),
        objectsBad("fill_marker", {bytes({0x0F})}, "0x0f"),
        objectsBad("utf8_marker", {bytes({0x71, 'a'})}, "0x71"),
        objectsBad("int_32_bytes", {bytes({0x15}) + QByteArray(32, 0)}, "2^5"),
        objectsBad("int_16_bytes_too_big", {bytes({0x14, 1}) + QByteArray(15, 0)}, "64-bit"),
        objectsBad("int_16_bytes_too_small",
                   {bytes({0x14}) + QByteArray(8, '\xFF') + QByteArray(8, 0)}, "64-bit"),
        objectsBad("uid_too_wide", {bytes({0x88}) + QByteArray(9, 1)}, "UID"),
        objectsBad("date_not_finite", {BinaryPlist::date(std::nan(""))}, "date"),
        objectsBad("real_of_one_byte", {bytes({0x20, 0})}, "0x20")),
    badName);

// ---- Limits ----

QByteArray nestedXmlArrays(int levels) {
    return QByteArray("<array>").repeated(levels) + QByteArray("</array>").repeated(levels);
}

// levels arrays, each holding the next; references take four bytes so any length fits.
QByteArray nestedBinaryArrays(int levels) {
    BinaryPlist f;
    for (int i = 0; i < levels; ++i)
        f.add(i + 1 < levels ? BinaryPlist::head(0xA, 1) + BinaryPlist::bigEndian(i + 1, 4)
                             : BinaryPlist::head(0xA, 0));
    BinaryPlist::Trailer t;
    t.offsetSize = 4;
    t.refSize = 4;
    return f.build(t);
}

TEST(PropertyListLimits, DepthIsCountedInBothFormats) {
    const Limits limits = depthLimit(10);
    QString error;
    EXPECT_TRUE(PropertyList::fromXml(nestedXmlArrays(10), &error, limits).isValid())
        << error.toStdString();
    EXPECT_FALSE(PropertyList::fromXml(nestedXmlArrays(11), &error, limits).isValid());
    EXPECT_TRUE(error.contains(u"deeper than 10")) << error.toStdString();
    EXPECT_TRUE(PropertyList::fromBinary(nestedBinaryArrays(10), &error, limits).isValid())
        << error.toStdString();
    EXPECT_FALSE(PropertyList::fromBinary(nestedBinaryArrays(11), &error, limits).isValid());
    EXPECT_TRUE(error.contains(u"deeper than 10")) << error.toStdString();
}

TEST(PropertyListLimits, DepthBombsFailWithoutExhaustingTheStack) {
    EXPECT_FALSE(PropertyList::fromXml(nestedXmlArrays(200000)).isValid());
    EXPECT_FALSE(PropertyList::fromBinary(nestedBinaryArrays(200000)).isValid());
}

TEST(PropertyListLimits, SharedObjectCountsItsHeightWhereverItIsReferenced) {
    // Object 1 starts a chain of five arrays. The root holds it directly (depth 2 to 6) and
    // again inside a wrapper (depth 3 to 7): the second place alone passes a limit of 6.
    BinaryPlist f;
    f.add(BinaryPlist::array({1, 6}));
    for (int i = 1; i < 5; ++i)
        f.add(BinaryPlist::array({i + 1}));
    f.add(BinaryPlist::array({}));
    f.add(BinaryPlist::array({1}));
    QString error;
    EXPECT_TRUE(PropertyList::fromBinary(f.build(), &error, depthLimit(7)).isValid());
    EXPECT_FALSE(PropertyList::fromBinary(f.build(), &error, depthLimit(6)).isValid());
    EXPECT_TRUE(error.contains(u"deeper than 6")) << error.toStdString();
}

TEST(PropertyListLimits, ObjectCount) {
    const Limits limits = limit(&Limits::maxObjects, 3);
    QString error;
    EXPECT_TRUE(PropertyList::fromXml("<array><true/><true/></array>", &error, limits).isValid());
    EXPECT_FALSE(
        PropertyList::fromXml("<array><true/><true/><true/></array>", &error, limits).isValid());
    EXPECT_TRUE(error.contains(u"more than 3")) << error.toStdString();

    BinaryPlist f;
    f.add(BinaryPlist::array({1, 2}));
    f.add(BinaryPlist::integer(1));
    f.add(BinaryPlist::integer(2));
    EXPECT_TRUE(PropertyList::fromBinary(f.build(), &error, limits).isValid());
    f.add(BinaryPlist::integer(3)); // never referenced, still declared
    EXPECT_FALSE(PropertyList::fromBinary(f.build(), &error, limits).isValid());
    EXPECT_TRUE(error.contains(u"limit of 3")) << error.toStdString();
}

TEST(PropertyListLimits, InputSizeIsCheckedFirst) {
    BinaryPlist f;
    f.add(BinaryPlist::ascii("x"));
    const QByteArray binary = f.build();
    const QByteArray xml = "<string>x</string>";
    for (const QByteArray& data : {binary, xml}) {
        QString error;
        EXPECT_TRUE(PropertyList::fromData(data, &error, limit(&Limits::maxInputBytes, data.size()))
                        .isValid());
        EXPECT_FALSE(
            PropertyList::fromData(data, &error, limit(&Limits::maxInputBytes, data.size() - 1))
                .isValid());
        EXPECT_TRUE(error.contains(u"above the limit")) << error.toStdString();
    }
}

TEST(PropertyListLimits, SharedReferencesAreDecodedOnce) {
    // Forty levels, each an array of two references to the level below: 2^40 leaves if copied.
    constexpr int kLevels = 40;
    BinaryPlist f;
    for (int level = 0; level < kLevels; ++level)
        f.add(BinaryPlist::array({level + 1, level + 1}));
    f.add(BinaryPlist::ascii("lol"));
    const QVariant root = PropertyList::fromBinary(f.build());
    ASSERT_TRUE(root.isValid());
    QVariant at = root;
    for (int level = 0; level < kLevels; ++level) {
        const QVariantList pair = at.toList();
        ASSERT_EQ(pair.size(), 2);
        if (level + 1 < kLevels) {
            EXPECT_EQ(pair[0].toList().constData(), pair[1].toList().constData()) << level;
        }
        at = pair[0];
    }
    EXPECT_TRUE(sameValue(at, QStringLiteral("lol")));
}

// ---- Reading a file ----

TEST(PropertyListFile, ArrayWithContentsOfFile) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("Addresses.plist"));
    const velmora::LogCapture log;
    BinaryPlist f;
    f.add(BinaryPlist::array({1}));
    f.add(BinaryPlist::ascii("a@example.org"));

    velmora::test::writeFile(path, xmlPlist("<array><string>a@example.org</string></array>"));
    EXPECT_TRUE(
        sameValue(PropertyList::arrayWithContentsOfFile(path), QVariantList{"a@example.org"}));
    velmora::test::writeFile(path, f.build());
    EXPECT_TRUE(
        sameValue(PropertyList::arrayWithContentsOfFile(path), QVariantList{"a@example.org"}));
    EXPECT_FALSE(
        PropertyList::arrayWithContentsOfFile(path, limit(&Limits::maxInputBytes, 20)).isValid());

    velmora::test::writeFile(path, xmlPlist("<array/>"));
    EXPECT_TRUE(sameValue(PropertyList::arrayWithContentsOfFile(path), QVariantList{}));
    velmora::test::writeFile(path, xmlPlist("<dict/>"));
    EXPECT_FALSE(PropertyList::arrayWithContentsOfFile(path).isValid());
    velmora::test::writeFile(path, "<array>");
    EXPECT_FALSE(PropertyList::arrayWithContentsOfFile(path).isValid());
    EXPECT_FALSE(
        PropertyList::arrayWithContentsOfFile(dir.filePath(QStringLiteral("none"))).isValid());
    EXPECT_FALSE(PropertyList::arrayWithContentsOfFile(dir.path()).isValid());
    EXPECT_TRUE(log.lines().isEmpty()) << log.lines().join(u'\n').toStdString();
}

} // namespace
