#include "share/ShareInput.h"

#include "platform/ExtensionItem.h"
#include "platform/ItemProviders.h"
#include "platform/RichText.h"

#include <QBuffer>
#include <QImageReader>
#include <QTextDocument>

namespace velmora {

RichText ShareInput::richText(const QString& text) {
    return Qt::mightBeRichText(text) ? RichText::fromHtml(text) : RichText::fromPlainText(text);
}

bool ShareInput::decodesAsImage(const QByteArray& bytes) {
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    // Only the header when it already says "no image": most text is turned down there.
    if (!reader.canRead())
        return false;
    return !reader.read().isNull();
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
