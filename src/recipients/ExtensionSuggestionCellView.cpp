// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "recipients/ExtensionSuggestionCellView.h"

#include "recipients/ExtensionSuggestionRowView.h"

#include <QApplication>
#include <QPainter>

namespace velmora {

QString ExtensionSuggestionCellView::textForObject(const Recipient& object) {
    if (const auto* address = std::get_if<std::shared_ptr<ExtensionAddress>>(&object)) {
        QString text = (*address)->prettyprint();
        // Glued to the text, without a blank: that is the look.
        if ((*address)->rank() > 0)
            text += QStringLiteral("(%1)").arg((*address)->rank());
        return text;
    }
    return std::get<std::shared_ptr<ExtensionGroup>>(object)->prettyprint();
}

QFont ExtensionSuggestionCellView::cellFont() {
    QFont font = QApplication::font();
    font.setPixelSize(13);
    return font;
}

void ExtensionSuggestionCellView::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                        const QModelIndex& index) const {
    ExtensionSuggestionRowView::paint(painter, option);
    const QFont font = cellFont();
    const QRect box(option.rect.left() + 5, option.rect.top() - 2, 900, kRowHeight);
    const QString text = QFontMetrics(font).elidedText(index.data(Qt::DisplayRole).toString(),
                                                       Qt::ElideRight, box.width());
    painter->save();
    painter->setClipRect(option.rect);
    painter->setFont(font);
    painter->setPen(Qt::black);
    painter->drawText(box, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
    painter->restore();
}

QSize ExtensionSuggestionCellView::sizeHint(const QStyleOptionViewItem& option,
                                            const QModelIndex&) const {
    return {option.rect.width(), kRowHeight};
}

} // namespace velmora
