// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/LocalizedString.h"

#include <QCoreApplication>

namespace velmora {

QString LocalizedString(const char* key) {
    // One context for every text, as one string table serves the whole program.
    return QCoreApplication::translate("Velmora", key);
}

} // namespace velmora
