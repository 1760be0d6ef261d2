// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "views/FlippedView.h"

#include <QEvent>
#include <QPaintEvent>
#include <QResizeEvent>

namespace velmora {

FlippedView::FlippedView(const QRect& frame, QWidget* parent)
    : FlippedView(frame, DrawingBlock(), parent) {}

FlippedView::FlippedView(const QRect& frame, DrawingBlock drawingBlock, QWidget* parent)
    : QWidget(parent)
    , m_drawingBlock(std::move(drawingBlock)) {
    setGeometry(frame);
    followParent();
}

FlippedView::~FlippedView() {
    if (m_followed)
        m_followed->removeEventFilter(this);
}

void FlippedView::paintEvent(QPaintEvent* event) {
    const DrawingBlock block = drawingBlock();
    if (!block)
        return;
    // A copy: the callback may replace the view's callback while it runs.
    block(this, event->rect());
}

bool FlippedView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_followed && event->type() == QEvent::Resize) {
        // Width- and height-sizable: the view grows and shrinks with its parent by the same
        // amount, so its margins stay as they were.
        // Against the size last seen rather than the event's old size: a hidden parent's
        // resizes arrive as one event, without an old size, when it is shown.
        const QSize now = static_cast<QResizeEvent*>(event)->size();
        const QSize delta = now - m_parentSize;
        m_parentSize = now;
        if (!delta.isNull())
            resize(QSize(qMax(0, width() + delta.width()), qMax(0, height() + delta.height())));
    }
    return QWidget::eventFilter(watched, event);
}

void FlippedView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ParentChange)
        followParent();
    QWidget::changeEvent(event);
}

void FlippedView::followParent() {
    if (m_followed == parentWidget())
        return;
    if (m_followed)
        m_followed->removeEventFilter(this);
    m_followed = parentWidget();
    if (m_followed) {
        m_parentSize = m_followed->size();
        m_followed->installEventFilter(this);
    }
}

} // namespace velmora
