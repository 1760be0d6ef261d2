// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/AtomicProperty.h"

#include <QWidget>

#include <functional>

namespace velmora {

// The plain panel of the user interface: origin at the top left, follows its parent's size
// (keeping its margins, as a width- and height-sizable view does), and paints through a callback
// its owner supplies, so panels need no subclass each. Without a callback it paints nothing and
// stays transparent.
class FlippedView : public QWidget {
    Q_OBJECT
public:
    // Receives the view and the rectangle to repaint; paints with its own QPainter on the view.
    using DrawingBlock = std::function<void(FlippedView* view, const QRect& dirty)>;

    explicit FlippedView(const QRect& frame, QWidget* parent = nullptr);
    FlippedView(const QRect& frame, DrawingBlock drawingBlock, QWidget* parent = nullptr);
    ~FlippedView() override;

    // y grows downwards from the top edge, as everywhere in Qt.
    static constexpr bool isFlipped() { return true; }

    // A free identifier for owners to tell views apart; the view never reads it.
    QString viewId() const { return m_viewId.get(); }
    void setViewId(QString id) { m_viewId.set(std::move(id)); }
    DrawingBlock drawingBlock() const { return m_drawingBlock.get(); }
    // Takes effect at the next repaint, which the owner asks for (update()).
    void setDrawingBlock(DrawingBlock block) { m_drawingBlock.set(std::move(block)); }

    // Kept for owners that call it; repainting is asked for with update().
    void Refresh() {}

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void followParent();

    AtomicProperty<QString> m_viewId;
    AtomicProperty<DrawingBlock> m_drawingBlock;
    QWidget* m_followed = nullptr; // the parent whose resizes this view follows
    QSize m_parentSize;            // its size when last seen
};

} // namespace velmora
