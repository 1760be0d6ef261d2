// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "request/RequestUtils.h"

#include <QRandomGenerator>

using namespace velmora;
using namespace velmora::RequestUtils;

void PrintTo(const QueryParameters& map, std::ostream* os) {
    *os << '{';
    for (auto it = map.constBegin(); it != map.constEnd(); ++it) {
        *os << '"' << it.key().toStdString() << "\": ";
        if (const auto* list = std::get_if<QStringList>(&it.value()))
            *os << '[' << list->join(u", ").toStdString() << "] ";
        else
            *os << '"' << std::get<QString>(it.value()).toStdString() << "\" ";
    }
    *os << '}';
}

namespace {

QString u(const char* utf8) {
    return QString::fromUtf8(utf8);
}

// Query syntax, ASCII, the rest of the BMP and astral characters; lone surrogates if asked.
QString randomText(QRandomGenerator& rng, int maxLength, bool unpairedSurrogates = false) {
    static const QString syntax = u("&=+#?%[] ;/");
    QString text;
    for (int n = rng.bounded(maxLength); n > 0; --n) {
        const int kind = rng.bounded(5);
        const char32_t c = kind == 0   ? syntax.at(rng.bounded(int(syntax.size()))).unicode()
                           : kind == 1 ? rng.bounded(0x20, 0x7F)
                           : kind == 2 ? rng.bounded(0xA0, unpairedSurrogates ? 0x10000 : 0xD800)
                                       : rng.bounded(0x10000, 0x110000);
        text += QChar::fromUcs4(c);
    }
    return text;
}

// Which ways a codec row runs: both, only writing (encoding, building), only reading.
enum Direction { Both, Write, Read };

// Upper-case hex, a leading byte-order mark kept; a bad escape or bad UTF-8 decodes to null.
TEST(PercentCodec, EncodesAndDecodesOrRefuses) {
    const struct {
        const char* name;
        Direction direction;
        QString text; // null: the decoder refuses the input
        QString encoded;
        bool decodePlus;
    } rows[] = {
        {"byte_order_mark", Both, QChar(0xFEFF) + u("a"), u("%EF%BB%BFa"), false},
        {"empty", Both, u(""), u(""), false},
        {"null_text", Both, QString(), QString(), true},
        {"plus_is_space", Read, u("a b c"), u("a+b%20c"), true},
        {"plus_kept", Read, u("a+b c"), u("a+b%20c"), false},
        {"lower_case_hex", Read, u("ü"), u("%c3%bc"), false},
        {"escaped_plus_stays", Read, u("+ "), u("%2B+"), true},
        {"unescaped_unicode", Read, u("ü "), u("ü%20"), false},
        {"bad_percent_2", Read, QString(), u("%ZZ"), false},
        {"lone_percent", Read, QString(), u("a%"), false},
        {"overlong_nul", Read, QString(), u("%C0%80"), false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        if (row.direction != Read) {
            const QString encoded = URLEncodedString(row.text);
            EXPECT_EQ(encoded, row.encoded);
            EXPECT_EQ(encoded.isNull(), row.encoded.isNull());
        }
        const QString decoded = URLDecodedString(row.encoded, row.decodePlus);
        EXPECT_EQ(decoded, row.text);
        EXPECT_EQ(decoded.isNull(), row.text.isNull());
    }
}

// Qt's encoder has the same unreserved set; well-formed text decodes back from its encoding.
TEST(PercentCodec, AgreesWithQtAndDecodesBackOnRandomText) {
    QRandomGenerator rng(7);
    for (int round = 0; round < 300; ++round) {
        const QString text = randomText(rng, 40, true);
        EXPECT_EQ(URLEncodedString(text), QString::fromLatin1(text.toUtf8().toPercentEncoding()))
            << text.toStdString();
        const QString wellFormed = randomText(rng, 40);
        EXPECT_EQ(URLDecodedString(URLEncodedString(wellFormed), true), wellFormed)
            << wellFormed.toStdString();
    }
}

// Rows that hold both ways build the query from the map and read the map back, same options.
TEST(QueryCodec, BuildsAndReadsEveryMode) {
    using L = QStringList;
    const QueryParameters list{{u("to"), L{u("x"), u("y")}}};
    const QueryParameters single{{u("s"), u("v")}};
    struct Row {
        const char* name;
        Direction direction;
        QString query; // what is built; read after a "?" in rows of both ways, else as it is
        QueryOptions options;
        QueryParameters parameters;
    };
    const Row rows[] = {
        {"list_array_syntax", Both, u("to[]=x&to[]=y"), QueryModeArrays | QueryArraySyntax, list},
        {"keys_and_values_encoded",
         Both,
         u("a%20b=c%26d%3D&e="),
         0,
         {{u("a b"), u("c&d=")}, {u("e"), u("")}}},
        {"empty", Both, u(""), 0, {}},
        {"list_default_writes_all", Write, u("to=x&to=y"), 0, list},
        {"list_keep_last", Write, u("to=y"), QueryModeKeepLast, list},
        {"list_keep_first", Write, u("to=x"), QueryModeKeepFirst | QueryArraySyntax, list},
        {"single_always_arrays", Write, u("s[]=v"), QueryModeAlwaysArrays | QueryArraySyntax,
         single},
        {"single_array_syntax_alone", Write, u("s=v"), QueryArraySyntax, single},
        {"only_an_empty_list", Write, u(""), QueryModeKeepLast, {{u("a"), L()}}},
        {"query_before_fragment", Read, u("x://h/p?a=1#b=2"), 0, {{u("a"), u("1")}}},
        {"repeat_default_keeps_last", Read, u("a=1&a=2"), 0, {{u("a"), u("2")}}},
        {"repeat_keep_first", Read, u("a=1&a=2"), QueryModeKeepFirst, {{u("a"), u("1")}}},
        {"repeat_other_mode_collects", Read, u("a=1&a=2"), 5, {{u("a"), L{u("1"), u("2")}}}},
        {"always_arrays",
         Read,
         u("a=1&b[]=2"),
         QueryModeAlwaysArrays,
         {{u("a"), L{u("1")}}, {u("b"), L{u("2")}}}},
        {"key_without_value_dropped", Read, u("x://h/p?flag&b="), 0, {{u("b"), u("")}}},
        {"second_equals_dropped", Read, u("a=b=c"), 0, {{u("a"), u("b")}}},
        {"bad_value_skipped", Read, u("a=%ZZ&b=1"), 0, {{u("b"), u("1")}}},
        {"bad_key_skipped", Read, u("a%E2=1&b=2"), 0, {{u("b"), u("2")}}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        if (row.direction != Read) {
            const QString query = URLQueryWithParameters(row.parameters, row.options);
            EXPECT_EQ(query, row.query);
            EXPECT_FALSE(query.isNull());
        }
        if (row.direction != Write) {
            const QString text = row.direction == Both ? u'?' + row.query : row.query;
            EXPECT_EQ(URLQueryParametersWithOptions(text, row.options & QueryModeMask),
                      row.parameters);
        }
    }
    // An empty value is there: the empty text, not null.
    EXPECT_FALSE(std::get<QString>(URLQueryParameters(u("?b=")).value(u("b"))).isNull());
}

} // namespace
