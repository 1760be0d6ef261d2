// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringView>

class QTextEdit;

namespace velmora {

// Performs a Cocoa text command ("insertNewline:", "moveWordLeftAndModifySelection:", ...) on a
// text edit, as a text view does with a command no one else handled. Returns false, doing
// nothing, for a command it does not know. Commands bound to nothing ("noop:") and those that
// only matter to a one-line field ("insertBacktab:", "cancelOperation:") are known and do nothing.
bool performTextCommand(QTextEdit& edit, QStringView selector);

} // namespace velmora
