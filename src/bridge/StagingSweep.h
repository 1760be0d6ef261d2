// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Error.h"

#include <QList>
#include <QString>

#include <chrono>

namespace velmora {

// Clears a staging folder of what no share needs any more, without ever following a link out of
// it: a subfolder goes when its lock can be taken at once (no running share and no reader holds
// it) and it was last used longer than the grace period ago; any other entry (the loose files
// of older versions) goes when it is older than the grace period.
class StagingSweep {
public:
    // Returns one error per entry that could not be removed; the others are still removed.
    static QList<Error> removeStaleEntries(const QString& stagingFolder,
                                           std::chrono::seconds gracePeriod);
};

} // namespace velmora
