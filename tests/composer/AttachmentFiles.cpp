// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "AttachmentFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QImageWriter>

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

QString writeImage(const QString& path, const QSize& size, const QColor& color) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QImageWriter writer(path);
    EXPECT_TRUE(writer.write(image)) << writer.errorString().toStdString();
    return path;
}

QString writeBytes(const QString& path, const QByteArray& bytes) {
    writeFile(path, bytes);
    return path;
}

} // namespace velmora::test
