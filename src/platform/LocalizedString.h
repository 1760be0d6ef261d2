// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace velmora {

// Looks a user-visible text up in the program's translations, with the English text as the key;
// a key without a translation comes back as itself.
QString LocalizedString(const char* key);

} // namespace velmora
