// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

namespace velmora {

// A query parameter's value: one string, or an ordered list of strings.
using QueryValue = std::variant<QString, QStringList>;
// Query parameters by name. Building walks the map in its own (sorted) order; no format built
// on these helpers gives the order of pairs a meaning.
using QueryParameters = QMap<QString, QueryValue>;

// Options of the query helpers: a collection mode in the low three bits, plus a flag.
using QueryOptions = unsigned int;
inline constexpr QueryOptions QueryModeDefault = 0; // building: as Arrays; parsing: as KeepLast
inline constexpr QueryOptions QueryModeKeepLast = 1;
inline constexpr QueryOptions QueryModeKeepFirst = 2;
inline constexpr QueryOptions QueryModeArrays = 3;
inline constexpr QueryOptions QueryModeAlwaysArrays = 4;
inline constexpr QueryOptions QueryModeMask = 7;
// Building only: list elements (and, in AlwaysArrays, single values) are written as "key[]=v".
inline constexpr QueryOptions QueryArraySyntax = 8;

// Where a query sits in a URL text: from its "?" (when it has one) to the fragment or the end.
struct QueryRange {
    qsizetype location = 0;
    qsizetype length = 0;
    bool operator==(const QueryRange&) const = default;
};

// Percent-encoding and URL query building and parsing. Stateless; safe from any thread.
namespace RequestUtils {

// UTF-8 with every byte outside A-Z a-z 0-9 - . _ ~ written as %XX (upper-case hex): a space is
// "%20", "+" is "%2B", and no query syntax ("&", "=", "?", "#", "%") survives unescaped.
// A null text gives null. An unpaired surrogate counts as "?", as QString::toUtf8 has it.
QString URLEncodedString(QStringView text);

// Undoes %XX escapes (either case), and "+" as a space when decodePlus is set. Null for a null
// text, for a "%" without two hex digits after it, and for bytes that are not valid UTF-8.
QString URLDecodedString(QStringView text, bool decodePlus);

// The query's range, its "?" included: from the first "?" before any "#" to that "#" or the
// end. A text without "?" that holds "=" before any "#" is taken as a bare query (from 0).
std::optional<QueryRange> rangeOfURLQuery(QStringView text);

// The query's text without its "?", or null when there is none.
QString URLQuery(QStringView text);

// "k=v&k2=v2", keys and values encoded with URLEncodedString, no leading "?". A list value
// writes every element in modes 0, 3 and 4, its first in mode 2 and its last in mode 1.
QString URLQueryWithParameters(const QueryParameters& parameters, QueryOptions options = 0);

// The parameters of the text's query. Mode 0 and 1: a repeated key keeps its last value;
// 2: its first; 3: repeats (and "k[]") collect into a list; 4: every value is a list.
// A "[]" after a key is always stripped; "a=b=c" reads as a = b; a piece without "=" or one
// whose key or value does not decode is skipped.
QueryParameters URLQueryParametersWithOptions(QStringView text, QueryOptions options);
QueryParameters URLQueryParameters(QStringView text);

} // namespace RequestUtils
} // namespace velmora
