// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace velmora {

// What the host system tells this program about itself: its bundle identifier and the
// application-group container it shares with the main application.
class HostEnvironment {
public:
    // $VELMORA_BUNDLE_ID when set and not empty, else the build's default identifier.
    static QString bundleIdentifier();
    static QString defaultBundleIdentifier();

    // The root of the application-group container: $VELMORA_GROUP_CONTAINER when set, else
    // $XDG_DATA_HOME/velmora/<group identifier>. Created when missing; null when it cannot be.
    static QString containerPathForGroupIdentifier(const QString& groupIdentifier);
};

} // namespace velmora
