// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace velmora {

// A text as a format's "%@" prints it: itself, or "(null)" for a null text, as the main
// application's platform prints a missing object.
inline QString printedText(const QString& text) {
    return text.isNull() ? QStringLiteral("(null)") : text;
}

} // namespace velmora
