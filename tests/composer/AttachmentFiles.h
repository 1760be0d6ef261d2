// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "TestSupport.h"

#include <QColor>
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

    // A path in the folder of the test's own files.
    QString file(const char* name) const {
        return m_dir.path() + QStringLiteral("/files/") + QLatin1String(name);
    }

private:
    QTemporaryDir m_dir;
    ScopedEnv m_cache;
    QStringList m_oldSearchPaths;
    QString m_oldTheme;
};

// Writes an image of one colour (format by the name's suffix); returns its path.
QString writeImage(const QString& path, const QSize& size, const QColor& color);
QString writeBytes(const QString& path, const QByteArray& bytes);

} // namespace velmora::test
