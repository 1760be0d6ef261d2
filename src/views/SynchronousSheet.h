// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

class QMessageBox;
class QWidget;

namespace velmora {

// The answer of a sheet that ended without any of its buttons (its window was closed).
inline constexpr int kSheetAbortedReturn = -1001;

// Shows the alert as a sheet on window (window-modal, attached to it) and waits until one of its
// buttons is pressed; returns 1000 + that button's index in the order the buttons were added
// (1000 for the first). The alert is hidden and the window accepts input again when it returns.
// On the main thread it runs a local event loop meanwhile; on another thread it waits while the
// alert is shown and hidden on the main thread, which must then be free to run. The alert must
// outlive the call.
int runModalSheetForWindow(QMessageBox& alert, QWidget* window);

// runModalSheetForWindow on the application's active window (none: the alert is shown as an
// application-modal window of its own).
int runModalSheet(QMessageBox& alert);

} // namespace velmora
