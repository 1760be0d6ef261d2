// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QPointer>
#include <QVariant>

namespace velmora {

class ExtensionAttachmentView;

// One attachment in the strip: the element it stands for and the view that shows it.
class ExtensionAttachmentCollectionViewItem : public QObject {
    Q_OBJECT
public:
    explicit ExtensionAttachmentCollectionViewItem(QObject* parent = nullptr);
    // Deletes the view too, wherever it is shown.
    ~ExtensionAttachmentCollectionViewItem() override;

    // The item's view, a 128 x 168 attachment view made on first use.
    ExtensionAttachmentView* view();

    QVariant representedObject() const { return m_representedObject; }
    // Shows the attachment (a path, or a file URL's path) in the view.
    void setRepresentedObject(const QVariant& attachment);

    bool isSelected() const { return m_selected; }
    void setSelected(bool selected);

private:
    QPointer<ExtensionAttachmentView> m_view;
    QVariant m_representedObject;
    bool m_selected = false;
};

} // namespace velmora
