// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QStyleOptionViewItem>

class QPainter;

namespace velmora {

// The background of one suggestion row: the style's own item panel, which shows the selection
// highlight; nothing of its own is added.
class ExtensionSuggestionRowView {
public:
    ExtensionSuggestionRowView() = delete;

    static void paint(QPainter* painter, const QStyleOptionViewItem& option);
};

} // namespace velmora
