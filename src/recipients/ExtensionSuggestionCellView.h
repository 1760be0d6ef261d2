// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "recipients/Recipient.h"

#include <QStyledItemDelegate>

namespace velmora {

// Paints one suggestion: the row's background as the style draws a selected or plain item, then
// the text, black, in the system font at 13 pixels, from x 5 and y -2 in a 900-wide box, clipped
// to the cell and elided at its end.
class ExtensionSuggestionCellView : public QStyledItemDelegate {
    Q_OBJECT
public:
    static constexpr int kRowHeight = 22;

    using QStyledItemDelegate::QStyledItemDelegate;

    // An address's prettyprint, followed without a blank by "(rank)" when its rank is above 0;
    // a group's prettyprint.
    static QString textForObject(const Recipient& object);
    // The font of the cells: the system font at 13 pixels.
    static QFont cellFont();

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace velmora
