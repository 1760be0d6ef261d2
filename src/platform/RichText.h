// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QTextDocument;

namespace velmora {

// Styled text as a shared item carries it: its HTML export and its plain string, taken from a
// QTextDocument once, so the text travels between threads as a plain value.
class RichText {
public:
    RichText() = default;
    static RichText fromHtml(const QString& html);
    static RichText fromPlainText(const QString& text);
    static RichText fromDocument(const QTextDocument& document);

    // The characters without styling.
    const QString& string() const { return m_string; }
    // Length of the plain string in UTF-16 units, as the platform counts a text's length.
    qsizetype length() const { return m_string.size(); }

    // The whole text as a complete HTML document, as QTextDocument::toHtml writes it.
    const QString& toHtml() const { return m_html; }

private:
    RichText(QString html, QString string)
        : m_html(std::move(html))
        , m_string(std::move(string)) {}

    QString m_html;
    QString m_string;
};

} // namespace velmora
