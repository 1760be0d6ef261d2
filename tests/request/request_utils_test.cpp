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

// Random text from query syntax, ASCII, the rest of the BMP and astral characters; with
// unpairedSurrogates, lone halves of pairs too.
QString randomText(QRandomGenerator& rng, int maxLength, bool unpairedSurrogates = false) {
    static const QString syntax = u("&=+#?%[] ;/");
    QString text;
    const int length = rng.bounded(maxLength);
    for (int i = 0; i < length; ++i) {
        switch (rng.bounded(5)) {
        case 0:
            text += syntax.at(rng.bounded(int(syntax.size())));
            break;
        case 1:
            text += QChar(char16_t(rng.bounded(0x20, 0x7F)));
            break;
        case 2:
            text += QChar(char16_t(rng.bounded(0xA0, unpairedSurrogates ? 0x10000 : 0xD800)));
            break;
        default:
            const char32_t c = char32_t(rng.bounded(0x10000, 0x110000));
            text += QString::fromUcs4(&c, 1);
        }
    }
    return text;
}

TEST(PercentCodec, DecodesOrRefuses) {
    const struct {
        const char* name;
        QString input;
        bool decodePlus;
        QString expected; // null: the decoder refuses the input
    } rows[] = {
        {"plus_is_space", u("a+b%20c"), true, u("a b c")},
        {"plus_kept", u("a+b%20c"), false, u("a+b c")},
        {"euro", u("%E2%82%AC"), false, u("€")},
        {"lower_case_hex", u("%c3%bc"), false, u("ü")},
        {"escaped_plus_stays", u("%2B+"), true, u("+ ")},
        {"unescaped_unicode", u("ü%20"), false, u("ü ")},
        {"bad_percent_2", u("%ZZ"), false, QString()},
        {"bad_percent_1", u("%4"), false, QString()},
        {"lone_percent", u("a%"), false, QString()},
        {"truncated_utf8", u("%C3"), false, QString()},
        {"encoded_surrogate", u("%ED%A0%80"), false, QString()},
        {"overlong_nul", u("%C0%80"), false, QString()},
        {"null_text", QString(), true, QString()},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const QString decoded = URLDecodedString(row.input, row.decodePlus);
        EXPECT_EQ(decoded.isNull(), row.expected.isNull());
        EXPECT_EQ(decoded, row.expected);
    }
}

// Against Qt's encoder with the same unreserved set, unpaired surrogates included; and every
// well-formed text decodes back from its encoding. Empty stays empty, null stays null.
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
    EXPECT_EQ(URLEncodedString(QChar(0xFEFF) + u("a")), u("%EF%BB%BFa"));
    EXPECT_FALSE(URLEncodedString(u("")).isNull());
    EXPECT_FALSE(URLDecodedString(u(""), false).isNull());
    EXPECT_TRUE(URLEncodedString(QString()).isNull());
}

TEST(QueryLocation, FindsTheQueryBeforeTheFragment) {
    struct Row {
        const char* name;
        QString text;
        std::optional<QueryRange> range;
        QString query;
    };
    const Row rows[] = {
        {"with_fragment", u("x://h/p?a=1&b=2#frag"), QueryRange{7, 8}, u("a=1&b=2")},
        {"bare_query", u("k=v"), QueryRange{0, 3}, u("k=v")},
        {"empty_query", u("x://h?"), QueryRange{5, 1}, u("")},
        {"no_query", u("x://h/path"), std::nullopt, QString()},
        {"equals_only_in_fragment", u("x://h/p#a=1"), std::nullopt, QString()},
        {"hash_before_question", u("a#b?c"), std::nullopt, QString()},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(rangeOfURLQuery(row.text), row.range);
        EXPECT_EQ(URLQuery(row.text), row.query);
        EXPECT_EQ(URLQuery(row.text).isNull(), row.query.isNull());
    }
}

TEST(QueryBuilding, WritesEveryModeAndTheArraySyntax) {
    const QueryParameters list{{u("to"), QStringList{u("x"), u("y")}}};
    const QueryParameters single{{u("s"), u("v")}};
    struct Row {
        const char* name;
        QueryParameters parameters;
        QueryOptions options;
        QString query;
    };
    const Row rows[] = {
        {"list_default_writes_all", list, 0, u("to=x&to=y")},
        {"list_array_syntax", list, QueryArraySyntax, u("to[]=x&to[]=y")},
        {"list_keep_last", list, QueryModeKeepLast, u("to=y")},
        {"list_keep_first", list, QueryModeKeepFirst | QueryArraySyntax, u("to=x")},
        {"single_always_arrays", single, QueryModeAlwaysArrays | QueryArraySyntax, u("s[]=v")},
        {"single_array_syntax_alone", single, QueryArraySyntax, u("s=v")},
        {"keys_and_values_encoded",
         {{u("a b"), u("c&d=")}, {u("e"), u("")}},
         0,
         u("a%20b=c%26d%3D&e=")},
        {"empty_map", {}, 0, u("")},
        {"only_an_empty_list", {{u("a"), QStringList()}}, QueryModeKeepLast, u("")},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const QString query = URLQueryWithParameters(row.parameters, row.options);
        EXPECT_EQ(query, row.query);
        EXPECT_FALSE(query.isNull());
    }
}

TEST(QueryParsing, ReadsEveryMode) {
    using L = QStringList;
    struct Row {
        const char* name;
        QString text;
        QueryOptions options;
        QueryParameters expected;
    };
    const Row rows[] = {
        {"url_with_fragment", u("x://h/p?a=1&b=2#frag"), 0, {{u("a"), u("1")}, {u("b"), u("2")}}},
        {"repeat_default_keeps_last", u("a=1&a=2"), 0, {{u("a"), u("2")}}},
        {"repeat_keep_first", u("a=1&a=2"), QueryModeKeepFirst, {{u("a"), u("1")}}},
        {"repeat_arrays", u("a=1&a=2&a=3"), QueryModeArrays, {{u("a"), L{u("1"), u("2"), u("3")}}}},
        {"repeat_other_mode_collects", u("a=1&a=2"), 5, {{u("a"), L{u("1"), u("2")}}}},
        {"suffix_arrays", u("a[]=1"), QueryModeArrays, {{u("a"), L{u("1")}}}},
        {"suffix_default_stripped", u("a[]=1"), 0, {{u("a"), u("1")}}},
        {"always_arrays",
         u("a=1&b[]=2"),
         QueryModeAlwaysArrays,
         {{u("a"), L{u("1")}}, {u("b"), L{u("2")}}}},
        {"key_without_value_dropped", u("x://h/p?flag&b="), 0, {{u("b"), u("")}}},
        {"no_query", u("x://h/path"), 0, {}},
        {"bare_query", u("k=v"), 0, {{u("k"), u("v")}}},
        {"equals_in_fragment", u("x://h/p#a=1"), 0, {}},
        {"plus_and_escaped_plus", u("q=a+b%2Bc"), 0, {{u("q"), u("a b+c")}}},
        {"second_equals_dropped", u("a=b=c"), 0, {{u("a"), u("b")}}},
        {"bad_value_skipped", u("a=%ZZ&b=1"), 0, {{u("b"), u("1")}}},
        {"bad_key_skipped", u("a%E2=1&b=2"), 0, {{u("b"), u("2")}}},
        {"empty_pieces", u("?&&a=1&"), 0, {{u("a"), u("1")}}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(URLQueryParametersWithOptions(row.text, row.options), row.expected);
    }
    // An empty value is there: the empty text, not null.
    EXPECT_FALSE(std::get<QString>(URLQueryParameters(u("?b=")).value(u("b"))).isNull());
}

// For any map of strings, reading "?" + the built query with options 0 gives the map back. A key
// ending in "[]" is the one exception: the reader takes that as array syntax.
TEST(QueryCodec, RandomMapsComeBackWhole) {
    QRandomGenerator rng(2024);
    for (int round = 0; round < 500; ++round) {
        QueryParameters map;
        const int size = rng.bounded(6);
        for (int i = 0; i < size; ++i) {
            QString key = randomText(rng, 12);
            if (key.endsWith(u"[]"))
                key += u'x';
            map.insert(key, randomText(rng, 12));
        }
        const QString query = URLQueryWithParameters(map);
        EXPECT_EQ(URLQueryParameters(u'?' + query), map) << query.toStdString();
    }
    EXPECT_EQ(URLQueryParameters(u'?' + URLQueryWithParameters({{u("a[]"), u("1")}})),
              (QueryParameters{{u("a"), u("1")}}));
}

} // namespace
