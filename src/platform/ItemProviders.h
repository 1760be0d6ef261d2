// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ItemProvider.h"

#include <QByteArray>
#include <QImage>
#include <QString>
#include <QUrl>

#include <memory>

namespace velmora {

// The item providers of what this program can be given to share. Each delivers its item on a
// thread of the default global queue.
namespace ItemProviders {

// A local file or folder, delivered as its file URL (public.url, public.file-url). A relative
// path is taken from the current directory.
std::shared_ptr<ItemProvider> file(const QString& path);
// A link, delivered as the URL itself (public.url).
std::shared_ptr<ItemProvider> link(const QUrl& url);
// Image bytes in any format Qt reads, delivered unchanged (public.image).
std::shared_ptr<ItemProvider> imageData(const QByteArray& bytes);
// An image in memory, delivered as the QImage (public.image).
std::shared_ptr<ItemProvider> image(const QImage& image);
// Plain text (public.plain-text): neither a URL nor an image.
std::shared_ptr<ItemProvider> plainText(const QString& text);

} // namespace ItemProviders
} // namespace velmora
