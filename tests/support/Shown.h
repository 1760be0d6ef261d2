// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

namespace velmora::test {

// A text as a test compares it: quoted, and a null text told apart from an empty one.
inline QString shown(const QString& text) {
    return text.isNull() ? QStringLiteral("<null>") : u'"' + text + u'"';
}

// Each text shown: one comparison checks every field and its nullness.
inline QStringList shown(std::initializer_list<QString> texts) {
    QStringList out;
    for (const QString& text : texts)
        out.append(shown(text));
    return out;
}

} // namespace velmora::test
