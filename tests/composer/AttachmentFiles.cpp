// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "AttachmentFiles.h"

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
    QImage clear(image.size(), QImage::Format_ARGB32_Premultiplied);
    clear.fill(Qt::transparent);
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied) == clear;
}

QColor averageColor(const QImage& image, const QRect& rect) {
    // A smooth scale to one pixel averages the rectangle's pixels.
    const QImage part = image.copy(rect).convertToFormat(QImage::Format_RGB32);
    return part.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).pixelColor(0, 0);
}

bool near(const QColor& a, const QColor& b, int tolerance) {
    return std::abs(a.red() - b.red()) <= tolerance &&
           std::abs(a.green() - b.green()) <= tolerance &&
           std::abs(a.blue() - b.blue()) <= tolerance;
}

} // namespace velmora::test
