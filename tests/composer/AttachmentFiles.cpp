// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "AttachmentFiles.h"

#include "ImageSamples.h"

#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QImageWriter>
#include <QPainter>
#include <QPdfWriter>

namespace velmora::test {

IsolatedDesktop::IsolatedDesktop()
    : m_cache("XDG_CACHE_HOME", QFile::encodeName(m_dir.path() + QStringLiteral("/cache")))
    , m_oldSearchPaths(QIcon::themeSearchPaths())
    , m_oldTheme(QIcon::themeName()) {
    QDir(m_dir.path()).mkpath(QStringLiteral("files"));
    const QString themes = m_dir.path() + QStringLiteral("/icons");
    QDir(themes).mkpath(QStringLiteral("velmora-test/128x128/mimetypes"));
    writeBytes(themes + QStringLiteral("/velmora-test/index.theme"),
               "[Icon Theme]\nName=velmora-test\nDirectories=128x128/mimetypes\n\n"
               "[128x128/mimetypes]\nSize=128\nType=Fixed\n");
    QIcon::setThemeSearchPaths({themes});
    QIcon::setThemeName(QStringLiteral("velmora-test"));
}

IsolatedDesktop::~IsolatedDesktop() {
    QIcon::setThemeSearchPaths(m_oldSearchPaths);
    QIcon::setThemeName(m_oldTheme);
}

void IsolatedDesktop::addThemeIcon(const QString& iconName, const QColor& color) {
    writeImage(m_dir.path() + QStringLiteral("/icons/velmora-test/128x128/mimetypes/") + iconName +
                   QStringLiteral(".png"),
               QSize(128, 128), color);
    // Theme lookups are cached; a new theme name makes QIcon look again.
    QIcon::setThemeName(QString());
    QIcon::setThemeName(QStringLiteral("velmora-test"));
}

QString writeImage(const QString& path, const QSize& size, const QColor& color) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QImageWriter writer(path);
    EXPECT_TRUE(writer.write(image)) << writer.errorString().toStdString();
    return path;
}

QString writeJpegTurnedAQuarter(const QString& path, const QSize& size, const QColor& color) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return writeBytes(path, jpegWithOrientation(image, 6));
}

QString writePdf(const QString& path, const QColor& color) {
    QPdfWriter writer(path);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF());
    QPainter painter(&writer);
    painter.fillRect(QRect(0, 0, writer.width(), writer.height() / 2), color);
    painter.end();
    return path;
}

QString writeBytes(const QString& path, const QByteArray& bytes) {
    writeFile(path, bytes);
    return path;
}

bool isTransparent(const QImage& image) {
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < argb.height(); ++y)
        for (int x = 0; x < argb.width(); ++x)
            if (qAlpha(argb.pixel(x, y)) != 0)
                return false;
    return true;
}

QColor averageColor(const QImage& image, const QRect& rect) {
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    qint64 r = 0, g = 0, b = 0, n = 0;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            const QRgb p = argb.pixel(x, y);
            r += qRed(p);
            g += qGreen(p);
            b += qBlue(p);
            ++n;
        }
    }
    if (n == 0)
        return {};
    return QColor(int(r / n), int(g / n), int(b / n));
}

bool near(const QColor& a, const QColor& b, int tolerance) {
    return std::abs(a.red() - b.red()) <= tolerance &&
           std::abs(a.green() - b.green()) <= tolerance &&
           std::abs(a.blue() - b.blue()) <= tolerance;
}

} // namespace velmora::test
