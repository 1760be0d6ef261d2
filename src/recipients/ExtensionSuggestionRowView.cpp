// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "recipients/ExtensionSuggestionRowView.h"

#include <QApplication>
#include <QStyle>

namespace velmora {

void ExtensionSuggestionRowView::paint(QPainter* painter, const QStyleOptionViewItem& option) {
    const QWidget* widget = option.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewRow, &option, painter, widget);
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &option, painter, widget);
}

} // namespace velmora
