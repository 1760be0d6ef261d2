// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/RichText.h"

#include "platform/InertTextDocument.h"

namespace velmora {

RichText RichText::fromHtml(const QString& html) {
    // Shared HTML names whatever it likes as images, backgrounds and style sheets: none of them
    // is read, they stay references in the exported HTML.
    InertTextDocument document;
    document.setHtml(html);
    return fromDocument(document);
}

RichText RichText::fromPlainText(const QString& text) {
    QTextDocument document;
    document.setPlainText(text);
    return fromDocument(document);
}

RichText RichText::fromDocument(const QTextDocument& document) {
    return RichText(document.toHtml(), document.toPlainText());
}

} // namespace velmora
