// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>
#include <QSize>
#include <QString>

namespace velmora {

// The preview of a file within size, made in this order: a valid entry of the desktop's
// thumbnail cache; an image file decoded at about that size; a PDF's first page; the icon of
// the file's type from the icon theme; a built-in document icon. asIcon frames a content
// preview like a document icon (a white page with a border). Null only for an empty path or
// size. Uses the icon theme, so call it on the main thread; contentPreview is the part that
// runs anywhere.
QImage imageWithPreviewOfFileAtPath(const QString& path, const QSizeF& size, bool asIcon);

// The file's content within size (cache entry, image, PDF page), or null when its content
// gives none. Safe on any thread; the slow part of a preview.
QImage contentPreview(const QString& path, const QSize& size);

// Loads the image format plugins that contentPreview asks. Qt loads them on first use, under
// locks of its own that the thread sanitizer cannot see, so two workers loading them at once
// look like a race; called on the main thread before workers start making previews, it leaves
// the workers only reading the loaded plugins. Main thread only; does its work once.
void loadPreviewPlugins();

// The rest of imageWithPreviewOfFileAtPath once contentPreview has given content (null or
// not): the icon when there is no content, the frame when asIcon. Main thread only.
QImage finishPreview(const QString& path, const QImage& content, const QSize& size, bool asIcon);

// The icon of the file's type at size: the theme's icon for its MIME type, then the type's
// generic icon, then a built-in document icon, so never null for a non-empty size. The type
// comes from the file's content, or from its name when it cannot be read. Main thread only.
QImage fileTypeIcon(const QString& path, const QSize& size);

} // namespace velmora
