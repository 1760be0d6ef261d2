// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "request/UrlText.h"

namespace velmora {

UrlText UrlText::fromString(const QString& text) {
    if (text.isNull() || !QUrl(text, QUrl::StrictMode).isValid())
        return {};
    return UrlText(text);
}

namespace {

bool isHexDigit(char16_t c) {
    return (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'F') || (c >= u'a' && c <= u'f');
}

// Whether every character of query is one that the strict check allows anywhere in a query.
bool isPlainEncodedQuery(QStringView query) {
    const char16_t* c = query.utf16();
    const qsizetype n = query.size();
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t u = c[i];
        if ((u >= u'a' && u <= u'z') || (u >= u'A' && u <= u'Z') || (u >= u'0' && u <= u'9') ||
            u == u'-' || u == u'.' || u == u'_' || u == u'~' || u == u'&' || u == u'=')
            continue;
        if (u == u'%' && i + 2 < n && isHexDigit(c[i + 1]) && isHexDigit(c[i + 2])) {
            i += 2;
            continue;
        }
        return false;
    }
    return true;
}

} // namespace

UrlText UrlText::fromHeadAndQuery(QStringView head, QStringView query) {
    QString text;
    text.reserve(head.size() + query.size());
    text.append(head);
    text.append(query);
    if (!isPlainEncodedQuery(query))
        return fromString(text);
    if (!QUrl(head.toString(), QUrl::StrictMode).isValid())
        return {};
    return UrlText(std::move(text));
}

} // namespace velmora
