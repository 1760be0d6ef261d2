// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "message/ExtensionMessage.h"
#include "message/LinkDetector.h"
#include "platform/Log.h"

#include <algorithm>

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

// How far anchors may make a plain body grow: 16 times its size, and 1 MiB in any case.
// Substituting a link that occurs n times rewrites the anchors written for it before, so the
// occurrences double with every repeat: a few hundred characters of one repeated link would
// otherwise grow past any memory.
qsizetype growthLimit(qsizetype size) {
    return std::max<qsizetype>(qsizetype(1) << 20, 16 * size);
}

// Occurrences as QString::replace counts them: from left to right, without overlaps.
qsizetype occurrences(QStringView text, QStringView link) {
    qsizetype count = 0;
    for (qsizetype at = text.indexOf(link); at >= 0; at = text.indexOf(link, at + link.size()))
        ++count;
    return count;
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
    const qsizetype limit = growthLimit(plain.size());
    for (const QString& link : searchUrlsDetector(plain)) {
        const QString anchor = QStringLiteral("<a href='") + link + QStringLiteral("'>") + link +
                               QStringLiteral("</a>");
        if (plain.size() + occurrences(plain, link) * (anchor.size() - link.size()) > limit) {
            Log::write(u"renderHtml links left out past %@ characters", {QString::number(limit)});
            break;
        }
        plain.replace(link, anchor);
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
