// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/PngConversion.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>

#include <mutex>

namespace velmora {

namespace {

// The Cocoa code of data that cannot be read as what it claims to be.
constexpr qint64 kCorruptDataErrorCode = 259;

Error conversionError(const QString& description) {
    return {QString::fromLatin1(kCocoaErrorDomain), kCorruptDataErrorCode, description};
}

} // namespace

PngConversion::Result PngConversion::fromData(const QByteArray& bytes) {
    // Qt's own limit is process-wide; it also covers formats that declare no size up front.
    static std::once_flag limitSet;
    std::call_once(limitSet, [] { QImageReader::setAllocationLimit(kAllocationLimitMegabytes); });

    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    const QSize declared = reader.size();
    constexpr qint64 kBytesPerPixel = 4;
    if (declared.isValid() && qint64(declared.width()) * declared.height() * kBytesPerPixel >
                                  qint64(kAllocationLimitMegabytes) * 1024 * 1024) {
        return conversionError(QStringLiteral("image of %1 x %2 pixels exceeds the limit of %3 MB")
                                   .arg(declared.width())
                                   .arg(declared.height())
                                   .arg(kAllocationLimitMegabytes));
    }
    const QImage image = reader.read();
    if (image.isNull())
        return conversionError(QStringLiteral("cannot decode image: ") + reader.errorString());
    return fromImage(image);
}

PngConversion::Result PngConversion::fromImage(const QImage& image) {
    if (image.isNull())
        return conversionError(QStringLiteral("cannot encode an empty image"));
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "png");
    if (!writer.write(image))
        return conversionError(QStringLiteral("cannot encode PNG: ") + writer.errorString());
    return png;
}

PngConversion::Result PngConversion::fromItem(const QVariant& item) {
    if (item.typeId() == QMetaType::QByteArray)
        return fromData(item.toByteArray());
    if (item.typeId() == QMetaType::QImage)
        return fromImage(item.value<QImage>());
    return conversionError(
        QStringLiteral("not an image: ") +
        QString::fromLatin1(item.metaType().name() ? item.metaType().name() : "null"));
}

} // namespace velmora
