// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/InertTextDocument.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QTextFormat>
#include <QTextObjectInterface>

namespace velmora {

namespace {

// Lays out and paints the document's images in place of Qt's own handler, which loads any name
// that is a plain path with QImage::load.
class ImagePlaceholders final : public QObject, public QTextObjectInterface {
    Q_OBJECT
    Q_INTERFACES(QTextObjectInterface)
public:
    using QObject::QObject;

    QSizeF intrinsicSize(QTextDocument* doc, int, const QTextFormat& format) override {
        const QTextImageFormat image = format.toImageFormat();
        const QImage decoded = imageFor(doc, image);
        const QSizeF natural =
            decoded.isNull() ? QSizeF(InertTextDocument::kDefaultImageSize) : decoded.size();
        const qreal declaredWidth = image.hasProperty(QTextFormat::ImageWidth) ? image.width() : 0;
        const qreal declaredHeight =
            image.hasProperty(QTextFormat::ImageHeight) ? image.height() : 0;
        QSizeF size = natural;
        if (declaredWidth > 0 && declaredHeight > 0)
            size = QSizeF(declaredWidth, declaredHeight);
        else if (declaredWidth > 0)
            size = QSizeF(declaredWidth, declaredWidth * natural.height() / natural.width());
        else if (declaredHeight > 0)
            size = QSizeF(declaredHeight * natural.width() / natural.height(), declaredHeight);
        const qreal side = InertTextDocument::kMaxImageSide;
        if (size.width() > side || size.height() > side)
            size.scale(side, side, Qt::KeepAspectRatio);
        return size;
    }

    void drawObject(QPainter* painter, const QRectF& rect, QTextDocument* doc, int,
                    const QTextFormat& format) override {
        const QImage decoded = imageFor(doc, format.toImageFormat());
        if (!decoded.isNull()) {
            // Scaled here, to the pixel size it is drawn at, so that the painter only copies it:
            // Qt spreads large scaled draws over its own thread pool.
            const QRect target = rect.toAlignedRect();
            painter->drawImage(
                target.topLeft(),
                decoded.scaled(target.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                    .convertToFormat(QImage::Format_ARGB32_Premultiplied));
            return;
        }
        // A thin mid-grey outline, which reads on light and dark backgrounds alike. No fill: a
        // large fill would only cost time.
        // Four one-pixel fills rather than a stroked rectangle: stroking goes through Qt's
        // rasteriser, which may spread its work over Qt's thread pool.
        const QRect edge = rect.toAlignedRect();
        const QColor grey(128, 128, 128);
        painter->fillRect(QRect(edge.left(), edge.top(), edge.width(), 1), grey);
        painter->fillRect(QRect(edge.left(), edge.bottom(), edge.width(), 1), grey);
        painter->fillRect(QRect(edge.left(), edge.top(), 1, edge.height()), grey);
        painter->fillRect(QRect(edge.right(), edge.top(), 1, edge.height()), grey);
    }

private:
    static QImage imageFor(QTextDocument* doc, const QTextImageFormat& image) {
        const QUrl name(image.name());
        if (name.scheme() != QLatin1String("data"))
            return {};
        return doc->resource(QTextDocument::ImageResource, name).value<QImage>();
    }
};

} // namespace

InertTextDocument::InertTextDocument(QObject* parent)
    : QTextDocument(parent) {
    QAbstractTextDocumentLayout* layout = documentLayout();
    // Replaces the handler that the layout registered for images; the layout owns it.
    layout->registerHandler(QTextFormat::ImageObject, new ImagePlaceholders(layout));
}

QImage InertTextDocument::decodeDataImage(const QUrl& name) {
    if (name.scheme() != QLatin1String("data"))
        return {};
    const QString encoded = name.path(QUrl::FullyEncoded);
    if (encoded.size() > kMaxDataUrlLength)
        return {};
    const QByteArray text = QByteArray::fromPercentEncoding(encoded.toLatin1());
    const qsizetype comma = text.indexOf(',');
    if (comma < 0)
        return {};
    const QByteArray header = text.left(comma);
    const QByteArray payload = text.mid(comma + 1);
    const QByteArray bytes = header.endsWith(";base64") ? QByteArray::fromBase64(payload) : payload;

    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    // Only an image that says how large it is, and is small, is decoded at all.
    const QSize declared = reader.size();
    if (!declared.isValid() || declared.width() > kMaxImageSide ||
        declared.height() > kMaxImageSide)
        return {};
    return reader.read();
}

QVariant InertTextDocument::loadResource(int type, const QUrl& name) {
    if (type == ImageResource) {
        const QImage image = decodeDataImage(name);
        if (!image.isNull()) {
            // Kept, so that painting does not decode it again.
            addResource(type, name, image);
            return image;
        }
    }
    // An empty value: no image, no style sheet.
    return QByteArray();
}

} // namespace velmora

#include "InertTextDocument.moc"
