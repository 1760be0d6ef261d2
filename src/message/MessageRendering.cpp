#include "message/ExtensionMessage.h"
#include "message/LinkDetector.h"

namespace velmora {

namespace {

// An attachment as the image tag shows it: a path as it is, a URL in its full (encoded) form,
// which for a file URL gives "file://file:///..." in the tag, kept as the main application
// renders it.
QString attachmentText(const QVariant& element) {
    if (element.typeId() == QMetaType::QUrl)
        return element.toUrl().toString(QUrl::FullyEncoded);
    return element.toString();
}

} // namespace

QString ExtensionMessage::renderHtml() {
    const QString html = htmlBody();
    QString plain = plainBody();
    if (!html.isNull() && (!html.isEmpty() || plain.isEmpty())) {
        QString out = html;
        withLock([&] {
            if (const auto list = attachments()) {
                for (const QVariant& element : *list)
                    out += QStringLiteral("<img src=\"file://") + attachmentText(element) +
                           QStringLiteral("\"/><br/>");
            }
        });
        // Stored back, so every call appends the images again.
        setHtmlBody(out);
        return out;
    }
    if (plain.isEmpty())
        return QStringLiteral("");

    plain.replace(u'\n', QStringLiteral("<br>"));
    setPlainBody(plain);
    // A plain global replacement per link, in order, with no guard against the anchors written
    // before: a link found twice is wrapped twice, and a link inside another is wrapped inside it.
    for (const QString& link : searchUrlsDetector(plain)) {
        plain.replace(link, QStringLiteral("<a href='") + link + QStringLiteral("'>") + link +
                                QStringLiteral("</a>"));
        setPlainBody(plain);
    }
    return plain;
}

QStringList ExtensionMessage::searchUrlsDetector(const QString& text) const {
    QStringList urls;
    for (const DetectedLink& link : detectLinks(text))
        urls.append(link.url);
    return urls;
}

} // namespace velmora
