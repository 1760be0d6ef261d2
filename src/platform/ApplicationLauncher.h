// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

namespace velmora {

// Opens URLs with another desktop application named by its bundle identifier: the desktop
// entry "<identifier>.desktop" of the XDG data directories, launched through GIO.
class ApplicationLauncher {
public:
    enum class Activation {
        // The application comes to the front as a launch usually brings it.
        Activate,
        // No startup-notification or activation token is passed on, so the application is
        // not brought to the front.
        WithoutActivation,
    };

    // One launch of the application with every URL text as one argument of its own, never
    // through a shell. True when GIO started it; false when there is no such entry or it cannot
    // be launched.
    static bool openUrls(const QStringList& urls, const QString& bundleIdentifier,
                         Activation activation);

    // The desktop entry that stands for the application: the first "<identifier>.desktop" in
    // the "applications" folder of $XDG_DATA_HOME, then of each of $XDG_DATA_DIRS. Null when
    // there is none.
    static QString desktopEntryPath(const QString& bundleIdentifier);
};

} // namespace velmora
