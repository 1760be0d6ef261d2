// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "share/ShareInput.h"

#include "platform/ExtensionItem.h"
#include "platform/ItemProviders.h"
#include "platform/RichText.h"

#include <QBuffer>
#include <QImageReader>
#include <QTextDocument>

#include <algorithm>

namespace velmora {

RichText ShareInput::richText(const QString& text) {
    return Qt::mightBeRichText(text) ? RichText::fromHtml(text) : RichText::fromPlainText(text);
}

bool ShareInput::decodesAsImage(const QByteArray& bytes, QString* error) {
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    // Only the header when it already says "no image": most text is turned down there. The
    // reader's allocation limit turns down a small file that declares a huge image.
    const bool decodes = reader.canRead() && !reader.read().isNull();
    if (!decodes && error)
        *error = reader.errorString();
    return decodes;
}

namespace {

// Valid UTF-8 without control characters other than white space: text, whatever its first
// bytes happen to spell ("GIF89a was ...", "P1 is ...").
bool looksLikeText(const QByteArray& bytes) {
    if (!bytes.isValidUtf8())
        return false;
    return std::none_of(bytes.cbegin(), bytes.cend(), [](char c) {
        const auto byte = uchar(c);
        return (byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r' && byte != '\f') ||
               byte == 0x7f;
    });
}

} // namespace

std::optional<QString> ShareInput::undecodableImage(const QByteArray& bytes) {
    if (looksLikeText(bytes))
        return std::nullopt;
    // The format whose signature the first bytes carry, as the image plugins recognise it.
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    const QByteArray format = QImageReader::imageFormat(&buffer);
    QString error;
    if (format.isEmpty() || decodesAsImage(bytes, &error))
        return std::nullopt;
    return QStringLiteral("%1 image data that cannot be decoded (%2)")
        .arg(QString::fromLatin1(format), error);
}

ExtensionContext::Items ShareInput::inputItems(const ShareOptions& options,
                                               const QByteArray& standardInput,
                                               const QList<QByteArray>& images) {
    auto item = std::make_shared<ExtensionItem>();
    if (!options.title.isNull())
        item->setAttributedTitle(RichText::fromPlainText(options.title));
    if (!options.text.isNull())
        item->setAttributedContentText(richText(options.text));

    ExtensionItem::Attachments attachments;
    std::shared_ptr<ExtensionItem> standardInputText;
    for (const SharedItem& shared : options.items) {
        switch (shared.kind) {
        case SharedItem::Kind::File:
            attachments.append(ItemProviders::file(shared.url.toLocalFile()));
            break;
        case SharedItem::Kind::Link:
            attachments.append(ItemProviders::link(shared.url));
            break;
        case SharedItem::Kind::StandardInput:
            if (decodesAsImage(standardInput)) {
                attachments.append(ItemProviders::imageData(standardInput));
            } else {
                standardInputText = std::make_shared<ExtensionItem>();
                standardInputText->setAttributedContentText(
                    richText(QString::fromUtf8(standardInput)));
            }
            break;
        }
    }
    for (const QByteArray& image : images)
        attachments.append(ItemProviders::imageData(image));
    item->setAttachments(attachments);

    ExtensionContext::Items items{item};
    if (standardInputText)
        items.append(standardInputText);
    return items;
}

} // namespace velmora
