// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/LinkPalette.h"

#include <QEvent>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextEdit>

namespace velmora {

LinkPalette::LinkPalette(QTextEdit* view)
    : QObject(view)
    , m_view(view)
    , m_link(view->palette().color(QPalette::Link)) {
    view->installEventFilter(this);
}

bool LinkPalette::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_view && event->type() == QEvent::PaletteChange)
        recolour();
    return QObject::eventFilter(watched, event);
}

void LinkPalette::recolour() {
    const QColor link = m_view->palette().color(QPalette::Link);
    if (link == m_link)
        return;
    QTextDocument* document = m_view->document();
    QTextCursor cursor(document);
    bool editing = false;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const QTextCharFormat format = fragment.charFormat();
            if (!format.isAnchor() || format.foreground().color() != m_link)
                continue;
            if (!editing) {
                cursor.beginEditBlock();
                editing = true;
            }
            cursor.setPosition(fragment.position());
            cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
            QTextCharFormat colour;
            colour.setForeground(link);
            cursor.mergeCharFormat(colour);
        }
    }
    if (editing)
        cursor.endEditBlock();
    m_link = link;
}

} // namespace velmora
