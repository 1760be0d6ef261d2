// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/ThumbnailCache.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QUrl>

#include <algorithm>

namespace velmora {

namespace {

struct Flavour {
    const char* folder;
    int edge; // the longest side of the entries it holds
};

constexpr Flavour kFlavours[] = {
    {"normal", 128},
    {"large", 256},
    {"x-large", 512},
    {"xx-large", 1024},
};

QString cacheHome() {
    const QString xdg = qEnvironmentVariable("XDG_CACHE_HOME");
    // A relative XDG path is invalid and is ignored, as the base directory rules say.
    if (!xdg.isEmpty() && QDir::isAbsolutePath(xdg))
        return xdg;
    return QDir::homePath() + QStringLiteral("/.cache");
}

} // namespace

QByteArray ThumbnailCache::fileUri(const QString& absolutePath) {
    // GLib leaves the unreserved characters and these path characters as they are.
    return QByteArrayLiteral("file://") +
           QUrl::toPercentEncoding(QFile::encodeName(absolutePath), "!$&'()*+,/:=@");
}

QStringList ThumbnailCache::entryPaths(const QString& absolutePath, const QSize& size) {
    const QString name =
        QString::fromLatin1(
            QCryptographicHash::hash(fileUri(absolutePath), QCryptographicHash::Md5).toHex()) +
        QStringLiteral(".png");
    const int wanted = std::max(size.width(), size.height());
    // First the smallest folder whose entries are big enough, then larger ones, then the
    // smaller ones, best first.
    std::vector<Flavour> order(std::begin(kFlavours), std::end(kFlavours));
    std::stable_sort(order.begin(), order.end(), [wanted](const Flavour& a, const Flavour& b) {
        const bool aFits = a.edge >= wanted;
        const bool bFits = b.edge >= wanted;
        if (aFits != bFits)
            return aFits;
        return aFits ? a.edge < b.edge : a.edge > b.edge;
    });
    const QString root = cacheHome() + QStringLiteral("/thumbnails/");
    QStringList paths;
    for (const Flavour& flavour : order)
        paths.append(root + QLatin1String(flavour.folder) + QLatin1Char('/') + name);
    return paths;
}

QImage ThumbnailCache::cachedThumbnail(const QString& path, const QSize& size) {
    const QFileInfo file(path);
    if (!file.exists())
        return {};
    const QString mtime = QString::number(file.lastModified().toSecsSinceEpoch());
    for (const QString& entry : entryPaths(file.absoluteFilePath(), size)) {
        if (!QFileInfo::exists(entry))
            continue;
        QImageReader reader(entry, "png");
        QImage image = reader.read();
        // A stale entry (the file changed since) is no entry.
        if (image.isNull() || image.text(QStringLiteral("Thumb::MTime")) != mtime)
            continue;
        if (image.width() > size.width() || image.height() > size.height())
            image = image.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        return image;
    }
    return {};
}

} // namespace velmora
