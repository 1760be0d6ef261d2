// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/ExtensionAttachmentCollectionView.h"

#include "composer/ExtensionAttachmentCollectionViewItem.h"
#include "composer/ExtensionAttachmentController.h"
#include "composer/ExtensionAttachmentView.h"
#include "composer/ThumbnailLoader.h"

#include <QKeyEvent>
#include <QMouseEvent>

namespace velmora {

ExtensionAttachmentCollectionView::ExtensionAttachmentCollectionView(const QRect& frame,
                                                                     QWidget* parent)
    : QWidget(parent)
    , m_loader(new ThumbnailLoader(this)) {
    setGeometry(frame);
    setAutoFillBackground(false);
    setFocusPolicy(Qt::ClickFocus);
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
}

ExtensionAttachmentCollectionView::~ExtensionAttachmentCollectionView() {
    // The items' views are children too; items go first so they find their views alive.
    for (ExtensionAttachmentCollectionViewItem* item : m_items)
        delete item;
}

void ExtensionAttachmentCollectionView::setAttachmentController(
    ExtensionAttachmentController* controller) {
    if (controller == m_controller)
        return;
    for (const QMetaObject::Connection& connection : m_connections)
        disconnect(connection);
    m_connections.clear();
    m_controller = controller;
    if (controller) {
        using C = ExtensionAttachmentController;
        m_connections = {
            connect(controller, &C::rowsInserted, this,
                    [this](const QModelIndex&, int first, int last) { insertItems(first, last); }),
            connect(controller, &C::rowsRemoved, this,
                    [this](const QModelIndex&, int first, int last) { removeItems(first, last); }),
            connect(controller, &C::modelReset, this, [this] { rebuild(); }),
            connect(controller, &C::dataChanged, this, [this] { rebuild(); }),
            connect(controller, &C::rowsMoved, this, [this] { rebuild(); }),
            connect(controller->selectionModel(), &QItemSelectionModel::selectionChanged, this,
                    [this] { showSelection(); }),
        };
    }
    rebuild();
}

void ExtensionAttachmentCollectionView::setThumbnailsSynchronous(bool synchronous) {
    m_synchronous = synchronous;
}

ExtensionAttachmentCollectionViewItem*
ExtensionAttachmentCollectionView::itemAtIndex(int index) const {
    return index >= 0 && index < count() ? m_items[size_t(index)] : nullptr;
}

QRect ExtensionAttachmentCollectionView::itemFrame(int index) {
    return QRect(index * (ExtensionAttachmentView::kWidth + kItemSpacing), 0,
                 ExtensionAttachmentView::kWidth, ExtensionAttachmentView::kHeight);
}

int ExtensionAttachmentCollectionView::indexAt(const QPoint& pos) const {
    for (int i = 0; i < count(); ++i)
        if (itemFrame(i).contains(pos))
            return i;
    return -1;
}

QSize ExtensionAttachmentCollectionView::sizeHint() const {
    const int trailing = m_trailing ? m_trailing->sizeHint().width() : 0;
    const int width = trailing > 0      ? itemFrame(count()).x() + trailing
                      : m_items.empty() ? 0
                                        : itemFrame(count() - 1).right() + 1;
    return {width, ExtensionAttachmentView::kHeight};
}

void ExtensionAttachmentCollectionView::setTrailingView(QWidget* view) {
    if (view && view->parentWidget() != this)
        view->setParent(this);
    m_trailing = view;
    if (view)
        view->show();
    layoutItems();
}

void ExtensionAttachmentCollectionView::rebuild() {
    removeItems(0, count() - 1);
    if (m_controller && m_controller->rowCount() > 0)
        insertItems(0, m_controller->rowCount() - 1);
    else
        layoutItems();
}

void ExtensionAttachmentCollectionView::insertItems(int first, int last) {
    for (int row = first; row <= last; ++row) {
        auto* item = new ExtensionAttachmentCollectionViewItem(this);
        ExtensionAttachmentView* view = item->view();
        view->setParent(this);
        view->setThumbnailLoader(m_synchronous ? nullptr : m_loader);
        item->setRepresentedObject(m_controller->data(
            m_controller->index(row), ExtensionAttachmentController::AttachmentRole));
        m_items.insert(m_items.begin() + row, item);
        view->show();
    }
    layoutItems();
    showSelection();
}

void ExtensionAttachmentCollectionView::removeItems(int first, int last) {
    if (first > last)
        return;
    for (auto it = m_items.begin() + first; it != m_items.begin() + last + 1; ++it)
        delete *it;
    m_items.erase(m_items.begin() + first, m_items.begin() + last + 1);
    layoutItems();
}

void ExtensionAttachmentCollectionView::layoutItems() {
    for (int i = 0; i < count(); ++i)
        m_items[size_t(i)]->view()->setGeometry(itemFrame(i));
    if (m_trailing)
        m_trailing->setGeometry(QRect(itemFrame(count()).topLeft(), m_trailing->sizeHint()));
    // Wide enough for every item, so an enclosing scroll area scrolls to the last one.
    resize(std::max(width(), sizeHint().width()), std::max(height(), sizeHint().height()));
    updateGeometry();
}

void ExtensionAttachmentCollectionView::showSelection() {
    const int selected = m_controller ? m_controller->selectionIndex() : -1;
    for (int i = 0; i < count(); ++i) {
        ExtensionAttachmentCollectionViewItem* item = m_items[size_t(i)];
        if (item->isSelected() != (i == selected))
            item->setSelected(i == selected);
    }
}

void ExtensionAttachmentCollectionView::mousePressEvent(QMouseEvent* event) {
    if (m_controller && event->button() == Qt::LeftButton)
        m_controller->setSelectionIndex(indexAt(event->position().toPoint()));
    QWidget::mousePressEvent(event);
}

void ExtensionAttachmentCollectionView::keyPressEvent(QKeyEvent* event) {
    const int step = event->key() == Qt::Key_Left ? -1 : event->key() == Qt::Key_Right ? 1 : 0;
    if (!m_controller || step == 0 || count() == 0) {
        QWidget::keyPressEvent(event);
        return;
    }
    const int current = m_controller->selectionIndex();
    const int next =
        current < 0 ? (step > 0 ? 0 : count() - 1) : std::clamp(current + step, 0, count() - 1);
    m_controller->setSelectionIndex(next);
}

} // namespace velmora
