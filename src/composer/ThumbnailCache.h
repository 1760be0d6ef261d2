// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QStringList>

namespace velmora {

// The desktop's shared thumbnail cache ($XDG_CACHE_HOME/thumbnails), which file managers fill.
class ThumbnailCache {
public:
    // The file's URI as GLib writes it: "file://" and the absolute path's bytes, everything but
    // letters, digits and !$&'()*+,-./:=@_~ percent-encoded in upper-case hex. Entries are named
    // by the MD5 of exactly this text.
    static QByteArray fileUri(const QString& absolutePath);

    // Where entries for the file may lie, the folder whose size best fits size first.
    static QStringList entryPaths(const QString& absolutePath, const QSize& size);

    // The file's entry scaled to fit size, when there is one whose Thumb::MTime is the file's
    // modification time in seconds; null otherwise. Safe on any thread.
    static QImage cachedThumbnail(const QString& path, const QSize& size);
};

} // namespace velmora
