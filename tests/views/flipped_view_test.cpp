// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "views/FlippedView.h"

#include <QImage>
#include <QPainter>

using namespace velmora;

namespace {

QImage render(QWidget& w) {
    QImage image(w.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    w.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

// One panel paints a band along its top edge; one below it has no callback and stays
// transparent.
TEST(FlippedView, PaintsThroughItsCallbackFromTheTopLeft) {
    QWidget root;
    root.resize(200, 150);
    auto* panel = new FlippedView(QRect(0, 0, 200, 100), &root);
    QRect dirtySeen;
    panel->setDrawingBlock([&](FlippedView* view, const QRect& dirty) {
        dirtySeen = dirty;
        QPainter p(view);
        p.fillRect(QRect(0, 0, view->width(), 10), Qt::blue);
    });
    new FlippedView(QRect(0, 100, 200, 50), &root);
    QImage expected(root.size(), QImage::Format_ARGB32_Premultiplied);
    expected.fill(Qt::transparent);
    QPainter(&expected).fillRect(QRect(0, 0, 200, 10), Qt::blue);
    EXPECT_EQ(render(root), expected);
    EXPECT_EQ(dirtySeen, QRect(0, 0, 200, 100));

    const auto* child = new FlippedView(QRect(10, 0, 50, 20), panel);
    EXPECT_EQ(child->mapTo(&root, QPoint(0, 0)), QPoint(10, 0));
}

TEST(FlippedView, FollowsItsParentsSizeKeepingItsMargins) {
    QWidget root;
    root.resize(600, 400);
    QWidget other;
    // Owned by their parents, as in the program.
    auto* plain = new FlippedView(QRect(15, 10, 570, 380), &root);
    auto* withBlock = new FlippedView(
        QRect(0, 0, 600, 400), [](FlippedView*, const QRect&) {}, &root);
    root.show();
    root.resize(700, 300);
    EXPECT_EQ(plain->geometry(), QRect(15, 10, 670, 280));
    EXPECT_EQ(withBlock->geometry(), QRect(0, 0, 700, 300));

    // A view given a new parent follows the new one only.
    other.resize(100, 100);
    other.show();
    plain->setParent(&other);
    other.resize(120, 90);
    EXPECT_EQ(plain->size(), QSize(690, 270));
    root.resize(800, 400);
    EXPECT_EQ(plain->size(), QSize(690, 270));

    // Resized while hidden: the size is caught up when the window is shown.
    QWidget hidden;
    hidden.resize(600, 400);
    auto* inHidden = new FlippedView(QRect(15, 10, 570, 380), &hidden);
    hidden.resize(650, 420);
    hidden.show();
    EXPECT_EQ(inHidden->geometry(), QRect(15, 10, 620, 400));
}

} // namespace
