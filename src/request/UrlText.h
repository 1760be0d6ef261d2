// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QUrl>

namespace velmora {

// A URL kept as the exact text it was built from. QUrl would normalise what it parses (it
// lowercases the host, where a command name stands, and rewrites some escapes), so the text
// itself is what gets handed on; QUrl only decides whether the text is a valid URL.
class UrlText {
public:
    // The null URL.
    UrlText() = default;

    // The text as a URL, or the null URL when QUrl in strict mode rejects it.
    static UrlText fromString(const QString& text);
    // head + query, as fromString() would give it. A query made only of unreserved characters,
    // escapes, "&" and "=" is valid after any head that is valid with an empty query, so only the
    // head goes through QUrl then: its strict check of a megabyte-long query costs more than
    // building it.
    static UrlText fromHeadAndQuery(QStringView head, QStringView query);

    bool isNull() const { return m_text.isNull(); }
    // The exact text, character for character as it was given.
    const QString& toString() const { return m_text; }
    // The parsed URL, for interfaces that take a QUrl; it may differ from toString() in case
    // and escapes.
    QUrl toUrl() const { return QUrl(m_text, QUrl::StrictMode); }

    bool operator==(const UrlText&) const = default;

private:
    explicit UrlText(QString text)
        : m_text(std::move(text)) {}

    QString m_text;
};

} // namespace velmora
