// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/HostEnvironment.h"

#include "platform/Log.h"

#include <QDir>
#include <QStandardPaths>

namespace velmora {

QString HostEnvironment::defaultBundleIdentifier() {
    return QStringLiteral(VELMORA_DEFAULT_BUNDLE_ID);
}

QString HostEnvironment::bundleIdentifier() {
    const QString fromEnvironment = qEnvironmentVariable("VELMORA_BUNDLE_ID");
    return fromEnvironment.isEmpty() ? defaultBundleIdentifier() : fromEnvironment;
}

QString HostEnvironment::containerPathForGroupIdentifier(const QString& groupIdentifier) {
    QString root = qEnvironmentVariable("VELMORA_GROUP_CONTAINER");
    if (root.isEmpty()) {
        // GenericDataLocation honours XDG_DATA_HOME and falls back to ~/.local/share.
        const QString dataHome =
            QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
        if (dataHome.isEmpty())
            return {};
        root = dataHome + QStringLiteral("/velmora/") + groupIdentifier;
    }
    root = QDir::cleanPath(QDir(root).absolutePath());
    if (!QDir().mkpath(root)) {
        qCWarning(lcCore).noquote() << "cannot create the shared container" << root;
        return {};
    }
    return root;
}

} // namespace velmora
