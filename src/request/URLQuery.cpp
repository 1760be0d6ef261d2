// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "request/RequestUtils.h"

namespace velmora::RequestUtils {

std::optional<QueryRange> rangeOfURLQuery(QStringView text) {
    const qsizetype hash = text.indexOf(u'#');
    const QStringView head = hash < 0 ? text : text.left(hash);
    const qsizetype question = head.indexOf(u'?');
    if (question >= 0)
        return QueryRange{question, head.size() - question};
    if (head.contains(u'='))
        return QueryRange{0, head.size()};
    return std::nullopt;
}

QString URLQuery(QStringView text) {
    const std::optional<QueryRange> range = rangeOfURLQuery(text);
    if (!range)
        return {};
    QStringView query = text.mid(range->location, range->length);
    if (query.startsWith(u'?'))
        query = query.mid(1);
    // An empty query ("x://h?") is there, so it is the empty text, not null.
    return query.isEmpty() ? QStringLiteral("") : query.toString();
}

namespace {

// The pairs of a query before they are joined, so that the result is allocated once.
class QueryWriter {
public:
    void add(const QString& encodedKey, bool arraySyntax, const QString& value) {
        m_pairs.append({encodedKey, arraySyntax, URLEncodedString(value)});
        m_length +=
            encodedKey.size() + (arraySyntax ? 2 : 0) + 1 + m_pairs.constLast().value.size();
    }

    QString join() const {
        QString out;
        out.reserve(m_length + m_pairs.size());
        for (const Pair& pair : m_pairs) {
            if (!out.isEmpty())
                out += u'&';
            out += pair.key;
            if (pair.arraySyntax)
                out += u"[]";
            out += u'=';
            out += pair.value;
        }
        // No parameters give the empty text, never null.
        return out.isNull() ? QStringLiteral("") : out;
    }

private:
    struct Pair {
        QString key;
        bool arraySyntax;
        QString value;
    };
    QList<Pair> m_pairs;
    qsizetype m_length = 0;
};

} // namespace

QString URLQueryWithParameters(const QueryParameters& parameters, QueryOptions options) {
    QueryOptions mode = options & QueryModeMask;
    if (mode == QueryModeDefault)
        mode = QueryModeArrays;
    const bool arraySyntax = (options & QueryArraySyntax) != 0;

    QueryWriter writer;
    for (auto it = parameters.constBegin(); it != parameters.constEnd(); ++it) {
        const QString key = URLEncodedString(it.key());
        if (const auto* list = std::get_if<QStringList>(&it.value())) {
            if (mode == QueryModeKeepFirst && !list->isEmpty()) {
                writer.add(key, false, list->constFirst());
            } else if (mode == QueryModeKeepLast && !list->isEmpty()) {
                writer.add(key, false, list->constLast());
            } else {
                for (const QString& element : *list)
                    writer.add(key, arraySyntax, element);
            }
        } else {
            writer.add(key, arraySyntax && mode == QueryModeAlwaysArrays,
                       std::get<QString>(it.value()));
        }
    }
    return writer.join();
}

QueryParameters URLQueryParametersWithOptions(QStringView text, QueryOptions options) {
    QueryOptions mode = options & QueryModeMask;
    if (mode == QueryModeDefault)
        mode = QueryModeKeepLast;

    QueryParameters result;
    const QString query = URLQuery(text);
    if (query.isNull())
        return result;

    for (const QStringView piece : QStringView(query).tokenize(u'&')) {
        const qsizetype firstEquals = piece.indexOf(u'=');
        if (firstEquals < 0)
            continue;
        QString key = URLDecodedString(piece.left(firstEquals), true);
        // Whatever follows a second "=" is dropped: "a=b=c" reads as a = b.
        const QStringView rest = piece.mid(firstEquals + 1);
        const QString single = URLDecodedString(rest.left(rest.indexOf(u'=')), true);
        // A piece that does not decode cannot be stored; it is left out.
        if (key.isNull() || single.isNull())
            continue;
        bool usedArraySyntax = false;
        if (key.endsWith(u"[]")) {
            key.chop(2);
            usedArraySyntax = true;
        }

        // Changed in place, so that a key repeated n times costs n appends, not n list copies.
        const auto existing = result.find(key);
        if (existing == result.end()) {
            if ((usedArraySyntax && mode == QueryModeArrays) || mode == QueryModeAlwaysArrays)
                result.insert(key, QStringList{single});
            else
                result.insert(key, single);
        } else if (auto* list = std::get_if<QStringList>(&*existing)) {
            list->append(single);
        } else if (mode == QueryModeKeepLast) {
            *existing = single;
        } else if (mode != QueryModeKeepFirst) {
            *existing = QStringList{std::get<QString>(*existing), single};
        }
    }
    return result;
}

QueryParameters URLQueryParameters(QStringView text) {
    return URLQueryParametersWithOptions(text, QueryModeDefault);
}

} // namespace velmora::RequestUtils
