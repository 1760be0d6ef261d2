#include "platform/RichText.h"

#include <QTextDocument>

namespace velmora {

RichText RichText::fromHtml(const QString& html) {
    // Parsing and exporting never lay the text out, so images the markup names stay references
    // and nothing is fetched.
    QTextDocument document;
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
