// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// The PDF renderer, built as a module of its own and loaded by PdfPreview.cpp the first time a
// PDF is shown: poppler and the libraries it needs are then loaded only by a share that holds a
// PDF, and never before the composer first appears.
#include <QImage>
#include <QLoggingCategory>
#include <QSize>
#include <QString>

#include <algorithm>
#include <memory>
#include <mutex>
#include <poppler-qt6.h>

namespace {

Q_LOGGING_CATEGORY(lcPdf, "velmora.ui")

// Poppler reports damaged files on stderr; a file that yields no preview is no error of ours.
void routePopplerMessages() {
    static std::once_flag once;
    std::call_once(once, [] {
        Poppler::setDebugErrorFunction(
            [](const QString& message, const QVariant&) {
                qCDebug(lcPdf) << "poppler:" << message;
            },
            QVariant());
    });
}

QImage render(const QString& path, const QSize& size) {
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

} // namespace

// The module's one entry, looked up by name: *out gets the first page of the PDF at *path drawn
// to fit *size, or a null image.
extern "C" Q_DECL_EXPORT void velmoraFirstPageOfPdf(const QString* path, const QSize* size,
                                                    QImage* out) {
    *out = render(*path, *size);
}
