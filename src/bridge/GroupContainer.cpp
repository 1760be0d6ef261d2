// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "bridge/ConstVars.h"
#include "bridge/ExtensionUtilities.h"
#include "platform/HostEnvironment.h"

namespace velmora {

QString ExtensionUtilities::GroupFolderName() {
    // A plain, case-sensitive prefix test on this program's own identifier.
    return HostEnvironment::bundleIdentifier().startsWith(ConstVars::betaBundlePrefix)
               ? QString(ConstVars::betaDataFolder)
               : QString(ConstVars::releaseDataFolder);
}

QString ExtensionUtilities::GroupPath() {
    return HostEnvironment::containerPathForGroupIdentifier(ConstVars::applicationGroupIdentifier);
}

QString ExtensionUtilities::GroupDataPath() {
    const QString root = GroupPath();
    if (root.isNull())
        return {};
    return root + u'/' + GroupFolderName();
}

} // namespace velmora
