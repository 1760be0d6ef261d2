// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// What libplist's round trip cannot reach: hand-written syntax, other encodings, faults, limits.

#include "PlistTestSupport.h"
#include "platform/PropertyList.h"

#include <cmath>
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

constexpr qint64 kMin = std::numeric_limits<qint64>::min();
constexpr qint64 kMax = std::numeric_limits<qint64>::max();

TEST(PropertyList, ReadsTheSameValueInBothFormats) {
    const struct {
        const char* name;
        QByteArray xml;                 // the body of a <plist>; empty when the row is binary only
        std::vector<QByteArray> binary; // objects, the first is the root; none when XML only
        QVariant expected;
    } rows[] = {
        {"string_undeclared_entity_stays_literal",
         "<string>&lol9;</string>",
         {},
         QStringLiteral("&lol9;")},
        {"integer_signs_and_hex",
         "<array><integer>-42</integer><integer>+7</integer><integer> -0 </integer>"
         "<integer>0x1F</integer><integer>-0X10</integer></array>",
         {},
         QVariantList{qint64(-42), qint64(7), qint64(0), qint64(31), qint64(-16)}},
        // Above the signed range an integer is unsigned; binary integers of 16 bytes are signed.
        {"integer_limits",
         "<array><integer>9223372036854775807</integer><integer>-9223372036854775808</integer>"
         "<integer>9223372036854775808</integer><integer>18446744073709551615</integer></array>",
         {array({1, 2, 3, 4}), integer(kMax), integer(kMin),
          bytes({0x14}) + bigEndian(0, 8) + bigEndian(quint64(1) << 63, 8),
          bytes({0x14}) + bigEndian(0, 8) + QByteArray(8, '\xFF')},
         QVariantList{kMax, kMin, quint64(1) << 63, ~quint64(0)}},
        {"integer_16_bytes_small_and_negative",
         {},
         {array({1, 2}), bytes({0x14}) + bigEndian(5, 16),
          bytes({0x14}) + QByteArray(15, '\xFF') + '\xFE'},
         QVariantList{qint64(5), qint64(-2)}},
        // Past the shared short texts' length, and past a count that fits the marker.
        {"string_long",
         "<string>" + QByteArray(300, 'x') + "</string>",
         {ascii(QByteArray(300, 'x'))},
         QString(300, u'x')},
        {"reals_not_finite",
         "<array><real>nan</real><real>INF</real><real>+infinity</real><real>-inf</real></array>",
         {array({1, 2, 2, 3}), real(std::nan("")), real(HUGE_VAL), real(-HUGE_VAL)},
         QVariantList{std::nan(""), HUGE_VAL, HUGE_VAL, -HUGE_VAL}},
    };
    // A success clears an earlier error.
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        QString error = QStringLiteral("stale");
        if (!row.xml.isEmpty()) {
            EXPECT_TRUE(sameValue(PropertyList::fromXml(xmlPlist(row.xml), &error), row.expected))
                << "XML";
            EXPECT_TRUE(error.isEmpty()) << error.toStdString();
        }
        error = QStringLiteral("stale");
        if (!row.binary.empty()) {
            EXPECT_TRUE(sameValue(PropertyList::fromBinary(file(row.binary), &error), row.expected))
                << "binary";
            EXPECT_TRUE(error.isEmpty()) << error.toStdString();
        }
    }
    // A bare value is a root too, after a byte order mark and white space.
    EXPECT_TRUE(sameValue(PropertyList::fromData("\xEF\xBB\xBF <array><true/></array>"),
                          QVariantList{true}));
}

// A well-formed file, an array holding a string, with a different trailer.
QByteArray withTrailer(const Trailer& trailer) {
    return file({array({1}), ascii("x")}, trailer);
}

TEST(PropertyList, MalformedInputGivesNullAndSaysWhy) {
    const struct {
        const char* name;
        QByteArray data;
        const char* mentions; // a fragment the reason must contain
    } rows[] = {
        {"plist_no_value", xmlPlist(""), "no value"},
        {"unknown_element", xmlPlist("<set/>"), "<set>"},
        {"key_then_key", xmlPlist("<dict><key>a</key><key>b</key><true/></dict>"), "no value"},
        {"value_where_key_expected", xmlPlist("<dict><string>a</string><true/></dict>"), "<key>"},
        {"key_outside_dict", xmlPlist("<array><key>a</key></array>"), "outside"},
        {"text_in_array", xmlPlist("<array>loose<true/></array>"), "loose"},
        {"element_in_string", xmlPlist("<string>a<b/></string>"), "inside"},
        {"content_in_true", xmlPlist("<true>yes</true>"), "content"},
        {"integer_text", xmlPlist("<integer>12a</integer>"), "\"12a\""},
        {"integer_empty", xmlPlist("<integer/>"), "not an integer"},
        {"integer_below_64_bits", xmlPlist("<integer>-9223372036854775809</integer>"), "below"},
        {"real_text", xmlPlist("<real>1.5x</real>"), "not a real"},
        {"real_out_of_range", xmlPlist("<real>1e999</real>"), "not a real"},
        {"date_without_zone", xmlPlist("<date>2024-01-01T00:00:00</date>"), "not a date"},
        {"date_impossible", xmlPlist("<date>2023-02-29T00:00:00Z</date>"), "not a date"},
        {"base64_bad_character", xmlPlist("<data>SGVs*G8=</data>"), "base64"},
        {"base64_lone_character", xmlPlist("<data>SGVsb</data>"), "base64"},

        {"magic_only", "bplist00", "not a bplist00"},
        {"offset_size_3", withTrailer({.offsetSize = 3}), "offset size"},
        {"ref_size_0", withTrailer({.refSize = 0}), "reference size"},
        {"no_objects", withTrailer({.objectCount = 0}), "top object"},
        {"top_out_of_range", withTrailer({.topObject = 2}), "top object"},
        {"table_in_header", withTrailer({.tableOffset = 4}), "does not fit"},
        {"table_offset_huge", withTrailer({.tableOffset = ~quint64(0)}), "does not fit"},
        {"count_overflows_table", withTrailer({.objectCount = quint64(1) << 62}), "does not fit"},
        // The one object is at byte 8; its two-byte offset at bytes 10 and 11.
        {"offset_in_header", file({ascii("x")}).replace(11, 1, "\x02"), "outside the object area"},
        {"offset_in_table", file({ascii("x")}).replace(11, 1, "\x0A"), "outside the object area"},
        {"ref_out_of_range", file({array({7})}), "does not exist"},
        {"indirect_cycle", file({array({1}), dict({2}, {0}), ascii("k")}), "contains itself"},
        {"key_not_string", file({dict({1}, {1}), integer(1)}), "not a string"},
        {"array_past_area", file({head(0xA, 10) + '\0'}), "runs past"},
        {"count_not_integer", file({bytes({0x5F, 0x23}) + QByteArray(8, 0)}), "count"},
        {"count_beyond_file", file({head(0x4, quint64(1) << 40)}), "impossible"},
        {"null_marker", file({bytes({0x00})}), "0x00"},
        {"utf8_marker", file({bytes({0x71, 'a'})}), "0x71"},
        {"real_of_one_byte", file({bytes({0x20, 0})}), "0x20"},
        {"integer_of_32_bytes", file({bytes({0x15}) + QByteArray(32, 0)}), "2^5"},
        {"integer_16_bytes_above_64_bits", file({bytes({0x14, 1}) + QByteArray(15, 0)}), "64-bit"},
        {"integer_16_bytes_below_64_bits",
         file({bytes({0x14}) + QByteArray(8, '\xFF') + QByteArray(8, 0)}), "64-bit"},
        {"uid_of_9_bytes", file({bytes({0x88}) + QByteArray(9, 1)}), "UID"},
        {"date_not_finite", file({date(std::nan(""))}), "date"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        QString error;
        EXPECT_FALSE(PropertyList::fromData(row.data, &error).isValid());
        EXPECT_TRUE(error.contains(QLatin1String(row.mentions))) << error.toStdString();
    }
}

QByteArray nestedXmlArrays(int levels) {
    return QByteArray("<array>").repeated(levels) + QByteArray("</array>").repeated(levels);
}

// levels arrays, each holding the next; references take four bytes so any length fits.
QByteArray nestedBinaryArrays(int levels) {
    std::vector<QByteArray> chain;
    for (int i = 0; i < levels; ++i)
        chain.push_back(i + 1 < levels ? head(0xA, 1) + bigEndian(i + 1, 4) : head(0xA, 0));
    return file(chain, {.offsetSize = 4, .refSize = 4});
}

TEST(PropertyList, LimitsHoldInBothFormats) {
    const QByteArray smallBinary = file({ascii("x")});
    const struct {
        const char* name;
        Limits limits;
        QByteArray fits;    // reads at the limit
        QByteArray exceeds; // one step past it
        const char* mentions;
    } rows[] = {
        {"depth_xml", {.maxDepth = 10}, nestedXmlArrays(10), nestedXmlArrays(11), "deeper than 10"},
        // Object 1 heads a chain of five arrays. The root holds it directly (levels 2 to 6) and
        // inside a wrapper (levels 3 to 7): a shared object counts its height at either place.
        {"depth_of_a_shared_object",
         {.maxDepth = 6},
         file({array({1}), array({2}), array({3}), array({4}), array({5}), array({})}),
         file({array({1, 6}), array({2}), array({3}), array({4}), array({5}), array({}),
               array({1})}),
         "deeper than 6"},
        {"objects_xml",
         {.maxObjects = 3},
         "<array><true/><true/></array>",
         "<array><true/><true/><true/></array>",
         "more than 3"},
        // A declared object counts even when nothing refers to it.
        {"objects_binary",
         {.maxObjects = 3},
         file({array({1, 2}), integer(1), integer(2)}),
         file({array({1, 2}), integer(1), integer(2), integer(3)}),
         "limit of 3"},
        {"input_size_binary",
         {.maxInputBytes = smallBinary.size()},
         smallBinary,
         file({ascii("xy")}),
         "above the limit"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        QString error;
        EXPECT_TRUE(PropertyList::fromData(row.fits, &error, row.limits).isValid())
            << error.toStdString();
        EXPECT_FALSE(PropertyList::fromData(row.exceeds, &error, row.limits).isValid());
        EXPECT_TRUE(error.contains(QLatin1String(row.mentions))) << error.toStdString();
    }
    // Far past the default depth: refused without exhausting the stack.
    EXPECT_FALSE(PropertyList::fromData(nestedXmlArrays(200000)).isValid());
    EXPECT_FALSE(PropertyList::fromData(nestedBinaryArrays(200000)).isValid());
}

// Forty levels, each two references to the level below: 2^40 leaves if each were decoded anew.
TEST(PropertyList, SharedReferencesAreDecodedOnce) {
    std::vector<QByteArray> levels;
    for (int level = 0; level < 40; ++level)
        levels.push_back(array({level + 1, level + 1}));
    levels.push_back(ascii("lol"));
    QVariant at = PropertyList::fromBinary(file(levels));
    for (int level = 0; level < 40; ++level) {
        const QVariantList pair = at.toList();
        ASSERT_EQ(pair.size(), 2) << level;
        if (level < 39) {
            EXPECT_EQ(pair[0].toList().constData(), pair[1].toList().constData()) << level;
        }
        at = pair[0];
    }
    EXPECT_TRUE(sameValue(at, QStringLiteral("lol")));
}

} // namespace
