// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/FilePreview.h"

#include "composer/PdfPreview.h"
#include "composer/ThumbnailCache.h"
#include "views/UiLogging.h"

#include <QIcon>
#include <QImageReader>
#include <QMimeDatabase>
#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <map>
#include <mutex>
#include <utility>

namespace velmora {

namespace {

// Images whose full decode would take more are not previewed unless their format can decode
// them at a smaller size directly (JPEG can, PNG cannot).
constexpr qint64 kMaxFullDecodeBytes = 128LL * 1024 * 1024;

QSize fitWithin(const QSize& image, const QSize& box) {
    if (image.width() <= box.width() && image.height() <= box.height())
        return image;
    return image.scaled(box, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
}

QImage decodedImage(const QString& path, const QSize& size) {
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    if (!reader.canRead())
        return {};
    const QSize stored = reader.size();
    if (stored.isValid()) {
        const bool scalesWhileDecoding = reader.supportsOption(QImageIOHandler::ScaledSize);
        if (!scalesWhileDecoding &&
            qint64(stored.width()) * stored.height() * 4 > kMaxFullDecodeBytes) {
            qCInfo(lcUi) << "not decoding" << path << "of" << stored << "for a preview";
            return {};
        }
        // The size to decode at is in the file's own orientation, before the turn its EXIF
        // orientation asks for.
        const bool turns = reader.transformation() & QImageIOHandler::TransformationRotate90;
        const QSize shown = turns ? stored.transposed() : stored;
        const QSize fitted = fitWithin(shown, size);
        reader.setScaledSize(turns ? fitted.transposed() : fitted);
    }
    QImage image = reader.read();
    if (image.isNull())
        return {};
    // Formats without a size in the header are scaled once decoded.
    if (image.width() > size.width() || image.height() > size.height())
        image = image.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return image;
}

// A sheet of paper with a folded corner and a few lines of text, for files whose type has no
// icon in the theme.
QImage builtInDocumentIcon(const QSize& size) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal side = std::min(size.width(), size.height());
    const qreal w = side * 0.7;
    const qreal h = side * 0.9;
    const QRectF page((size.width() - w) / 2, (size.height() - h) / 2, w, h);
    const qreal fold = w * 0.28;
    QPainterPath outline;
    outline.moveTo(page.topLeft());
    outline.lineTo(page.right() - fold, page.top());
    outline.lineTo(page.right(), page.top() + fold);
    outline.lineTo(page.bottomRight());
    outline.lineTo(page.bottomLeft());
    outline.closeSubpath();
    const qreal pen = std::max<qreal>(1.0, side / 64);
    p.setPen(QPen(QColor(0x8a, 0x8a, 0x8a), pen));
    p.setBrush(Qt::white);
    p.drawPath(outline);
    QPainterPath corner;
    corner.moveTo(page.right() - fold, page.top());
    corner.lineTo(page.right() - fold, page.top() + fold);
    corner.lineTo(page.right(), page.top() + fold);
    p.setBrush(QColor(0xdd, 0xdd, 0xdd));
    p.drawPath(corner);
    p.setPen(QPen(QColor(0xb8, 0xb8, 0xb8), pen));
    for (qreal y = page.top() + fold * 1.6; y < page.bottom() - fold * 0.5; y += h / 9)
        p.drawLine(QPointF(page.left() + w * 0.15, y), QPointF(page.right() - w * 0.15, y));
    return image;
}

// The built-in icon, drawn once per size and shared after: a thousand files of unknown type need
// one. The copies handed out share the cached pixels, and a change to one copies them first.
QImage sharedDocumentIcon(const QSize& size) {
    static std::mutex mutex;
    static std::map<std::pair<int, int>, QImage> drawn;
    const std::pair key(size.width(), size.height());
    {
        const std::lock_guard lock(mutex);
        if (const auto found = drawn.find(key); found != drawn.end())
            return found->second;
    }
    QImage icon = builtInDocumentIcon(size);
    const std::lock_guard lock(mutex);
    return drawn.try_emplace(key, std::move(icon)).first->second;
}

QImage themeIcon(const QMimeType& type, const QSize& size) {
    QIcon icon = QIcon::fromTheme(type.iconName());
    if (icon.isNull())
        icon = QIcon::fromTheme(type.genericIconName());
    if (icon.isNull())
        return {};
    const QPixmap pixmap = icon.pixmap(size);
    return pixmap.isNull() ? QImage() : pixmap.toImage();
}

// The content on a white page with a thin border, centred in size.
QImage framed(const QImage& content, const QSize& size) {
    const QImage inner =
        content.scaled(size - QSize(2, 2), Qt::KeepAspectRatio, Qt::SmoothTransformation);
    // Filled by QImage::fill and framed in an opaque grey: Qt spreads painted fills and
    // translucent blends this tall over its global thread pool, which buys nothing for one small
    // picture and hides the hand-overs from the thread sanitizer.
    QImage page(inner.size() + QSize(2, 2), QImage::Format_ARGB32_Premultiplied);
    page.fill(Qt::white);
    QPainter p(&page);
    p.drawImage(QPoint(1, 1), inner);
    p.setPen(QColor(0xc4, 0xc4, 0xc4));
    p.drawRect(page.rect().adjusted(0, 0, -1, -1));
    p.end();
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QRect where(QPoint(), page.size());
    where.moveCenter(QRect(QPoint(), size).center());
    p.begin(&image);
    p.drawImage(where.topLeft(), page);
    return image;
}

} // namespace

QImage contentPreview(const QString& path, const QSize& size) {
    if (path.isEmpty() || size.isEmpty())
        return {};
    QImage image = ThumbnailCache::cachedThumbnail(path, size);
    if (image.isNull())
        image = decodedImage(path, size);
    if (image.isNull() &&
        QMimeDatabase().mimeTypeForFile(path).inherits(QStringLiteral("application/pdf")))
        image = firstPageOfPdf(path, size);
    return image;
}

void loadPreviewPlugins() {
    // Asking which formats can be read makes Qt load every image format plugin.
    static const bool loaded = !QImageReader::supportedImageFormats().isEmpty();
    Q_UNUSED(loaded);
}

QImage fileTypeIcon(const QString& path, const QSize& size) {
    if (size.isEmpty())
        return {};
    QImage icon = themeIcon(QMimeDatabase().mimeTypeForFile(path), size);
    return icon.isNull() ? sharedDocumentIcon(size) : icon;
}

QImage finishPreview(const QString& path, const QImage& content, const QSize& size, bool asIcon) {
    if (path.isEmpty() || size.isEmpty())
        return {};
    if (content.isNull())
        return fileTypeIcon(path, size);
    return asIcon ? framed(content, size) : content;
}

QImage imageWithPreviewOfFileAtPath(const QString& path, const QSizeF& size, bool asIcon) {
    const QSize pixels(int(std::ceil(size.width())), int(std::ceil(size.height())));
    return finishPreview(path, contentPreview(path, pixels), pixels, asIcon);
}

} // namespace velmora
