// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "TestSupport.h"

#include <QColor>
#include <QImage>
#include <QStringList>
#include <QTemporaryDir>

namespace velmora::test {

// A desktop of the test's own: an empty thumbnail cache ($XDG_CACHE_HOME) and an icon theme
// folder in a temporary directory, so that previews never depend on the machine's.
class IsolatedDesktop {
public:
    IsolatedDesktop();
    ~IsolatedDesktop();
    IsolatedDesktop(const IsolatedDesktop&) = delete;
    IsolatedDesktop& operator=(const IsolatedDesktop&) = delete;

    QString files() const { return m_dir.path() + QStringLiteral("/files"); }
    QString cacheHome() const { return m_dir.path() + QStringLiteral("/cache"); }
    // Gives the test theme a 128-pixel icon of one colour under iconName.
    void addThemeIcon(const QString& iconName, const QColor& color);

private:
    QTemporaryDir m_dir;
    ScopedEnv m_cache;
    QStringList m_oldSearchPaths;
    QString m_oldTheme;
};

// Writes an image of one colour (format by the name's suffix); returns its path.
QString writeImage(const QString& path, const QSize& size, const QColor& color);
// Writes a one-page A4 PDF whose upper half is filled with color; returns its path.
QString writePdf(const QString& path, const QColor& color);
QString writeBytes(const QString& path, const QByteArray& bytes);

// Whether every pixel of the image is fully transparent.
bool isTransparent(const QImage& image);
// The average colour of a rectangle of the image.
QColor averageColor(const QImage& image, const QRect& rect);
// Whether two colours differ by at most tolerance in each channel.
bool near(const QColor& a, const QColor& b, int tolerance = 24);

} // namespace velmora::test
