// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QLoggingCategory>

namespace velmora {

// The logging category of the widget library ("velmora.ui"): misuse of widgets, rendering
// fall-backs and other user-interface events worth a line.
Q_DECLARE_LOGGING_CATEGORY(lcUi)

} // namespace velmora
