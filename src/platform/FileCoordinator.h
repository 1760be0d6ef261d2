// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Error.h"

#include <QString>

#include <functional>
#include <optional>

namespace velmora {

// Serialises access to a file or folder of the shared container between threads and
// processes, this program's and the main application's alike: an exclusive flock(2) on a lock
// file beside the item, named ".<item name>.lock", held for exactly one operation.
class FileCoordinator {
public:
    // Runs accessor with the item's path while holding the item's lock. When the lock cannot
    // be had, returns the error and the accessor does not run. The lock is released on every
    // path out, exceptions included.
    static std::optional<Error>
    coordinateWritingItemAtPath(const QString& itemPath,
                                const std::function<void(const QString& path)>& accessor);

    // The lock file that guards itemPath.
    static QString lockPathFor(const QString& itemPath);
};

} // namespace velmora
