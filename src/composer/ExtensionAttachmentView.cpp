// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/ExtensionAttachmentView.h"

#include "composer/ExtensionAttachmentController.h"
#include "composer/FilePreview.h"
#include "composer/ThumbnailLoader.h"

#include <QLabel>
#include <QPainter>

namespace velmora {

ExtensionAttachmentView::ExtensionAttachmentView(const QRect& frame, QWidget* parent)
    : QWidget(parent)
    , m_imv(new QLabel(this)) {
    setGeometry(frame);
    m_imv->setGeometry(0, 0, kThumbnailSide, kThumbnailSide);
    m_imv->setAlignment(Qt::AlignCenter);
}

void ExtensionAttachmentView::setThumbnailLoader(ThumbnailLoader* loader) {
    m_loader = loader;
}

void ExtensionAttachmentView::prepareAttach(const QString& path) {
    if (path.isNull())
        return;
    setPath(path);
    setFilename(ExtensionAttachmentController::lastPathComponent(path));
    update();
    if (m_loader && m_request)
        m_loader->cancel(m_request);
    m_request = 0;
    const qreal ratio = devicePixelRatioF();
    const QSize pixels = QSize(kThumbnailSide, kThumbnailSide) * ratio;
    if (!m_loader) {
        showThumbnail(imageWithPreviewOfFileAtPath(path, pixels, false));
        return;
    }
    m_request = m_loader->request(path, pixels, this, [this](const QImage& image) {
        m_request = 0;
        showThumbnail(image);
    });
}

void ExtensionAttachmentView::showThumbnail(const QImage& image) {
    if (image.isNull())
        return;
    QPixmap pixmap = QPixmap::fromImage(image);
    pixmap.setDevicePixelRatio(devicePixelRatioF());
    m_imv->setPixmap(pixmap);
}

void ExtensionAttachmentView::drawName(QPainter& painter, const QRect& rect,
                                       const QString& filename, const QColor& color) {
    painter.save();
    // The system font (the painter's: the widget's or the application's) at 13 points.
    QFont font = painter.font();
    font.setPixelSize(kNameFontPixels);
    painter.setFont(font);
    painter.setPen(color);
    const QString shown = QFontMetrics(font).elidedText(filename, Qt::ElideRight, rect.width());
    painter.drawText(rect, Qt::AlignCenter | Qt::TextSingleLine, shown);
    painter.restore();
}

void ExtensionAttachmentView::paintEvent(QPaintEvent*) {
    // The selection is deliberately not drawn.
    QPainter painter(this);
    drawName(painter, QRect(0, height() - kNameHeight, kWidth, kNameHeight), filename(),
             palette().color(QPalette::WindowText));
}

} // namespace velmora
