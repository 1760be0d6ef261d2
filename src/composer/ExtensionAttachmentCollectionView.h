// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QPointer>
#include <QWidget>

#include <vector>

namespace velmora {

class ExtensionAttachmentCollectionViewItem;
class ExtensionAttachmentController;
class ThumbnailLoader;

// The attachment strip: one item per attachment of its controller, side by side from the left,
// as tall as an item. Draws nothing of its own, so its background stays transparent. A click
// selects the item under it (one at most); Left and Right move the selection.
class ExtensionAttachmentCollectionView : public QWidget {
    Q_OBJECT
public:
    static constexpr int kItemSpacing = 10; // between neighbouring items

    explicit ExtensionAttachmentCollectionView(const QRect& frame, QWidget* parent = nullptr);
    ~ExtensionAttachmentCollectionView() override;

    // Not owned. Items follow its rows and their selection follows its selection.
    ExtensionAttachmentController* attachmentController() const { return m_controller; }
    void setAttachmentController(ExtensionAttachmentController* controller);

    // Thumbnails are made off the user-interface thread unless this is set (for tests and
    // pictures that must be complete at once).
    void setThumbnailsSynchronous(bool synchronous);
    // Makes the strip's thumbnails; idle() tells when none is pending.
    ThumbnailLoader* thumbnailLoader() const { return m_loader; }

    // A view shown after the last item, as wide as its size hint (the cards of items not yet
    // attached); not an item. Call again when its size hint has changed.
    void setTrailingView(QWidget* view);

    int count() const { return int(m_items.size()); }
    ExtensionAttachmentCollectionViewItem* itemAtIndex(int index) const;
    // The row of the item at pos, -1 between or after the items.
    int indexAt(const QPoint& pos) const;
    static QRect itemFrame(int index);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void rebuild();
    void insertItems(int first, int last);
    void removeItems(int first, int last);
    void layoutItems();
    void showSelection();

    QPointer<ExtensionAttachmentController> m_controller;
    std::vector<ExtensionAttachmentCollectionViewItem*> m_items; // owned, children of this
    ThumbnailLoader* m_loader;
    QPointer<QWidget> m_trailing;
    bool m_synchronous = false;
    QList<QMetaObject::Connection> m_connections;
};

} // namespace velmora
