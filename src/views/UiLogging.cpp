// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "views/UiLogging.h"

namespace velmora {

Q_LOGGING_CATEGORY(lcUi, "velmora.ui", QtInfoMsg)

} // namespace velmora
