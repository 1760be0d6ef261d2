// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/PdfPreview.h"

#include "views/UiLogging.h"

#include <algorithm>
#include <mutex>
#include <poppler-qt6.h>

namespace velmora {

namespace {

// Poppler reports damaged files on stderr; a file that yields no preview is no error of ours.
void routePopplerMessages() {
    static std::once_flag once;
    std::call_once(once, [] {
        Poppler::setDebugErrorFunction(
            [](const QString& message, const QVariant&) { qCDebug(lcUi) << "poppler:" << message; },
            QVariant());
    });
}

} // namespace

QImage firstPageOfPdf(const QString& path, const QSize& size) {
    if (size.isEmpty())
        return {};
    routePopplerMessages();
    const std::unique_ptr<Poppler::Document> document = Poppler::Document::load(path);
    if (!document || document->isLocked() || document->numPages() < 1)
        return {};
    document->setRenderHint(Poppler::Document::Antialiasing);
    document->setRenderHint(Poppler::Document::TextAntialiasing);
    const std::unique_ptr<Poppler::Page> page = document->page(0);
    if (!page)
        return {};
    const QSizeF points = page->pageSizeF();
    if (points.isEmpty())
        return {};
    // Pages are measured in points (1/72 inch): a resolution of 72 dpi draws one pixel per point.
    const double scale = std::min(size.width() / points.width(), size.height() / points.height());
    QImage image = page->renderToImage(72.0 * scale, 72.0 * scale);
    if (image.width() > size.width() || image.height() > size.height())
        image = image.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return image;
}

} // namespace velmora
