// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/ExtensionAttachmentCollectionViewItem.h"

#include "composer/ExtensionAttachmentController.h"
#include "composer/ExtensionAttachmentView.h"

namespace velmora {

ExtensionAttachmentCollectionViewItem::ExtensionAttachmentCollectionViewItem(QObject* parent)
    : QObject(parent) {}

ExtensionAttachmentCollectionViewItem::~ExtensionAttachmentCollectionViewItem() {
    delete m_view.data();
}

ExtensionAttachmentView* ExtensionAttachmentCollectionViewItem::view() {
    if (!m_view)
        m_view = new ExtensionAttachmentView(
            QRect(0, 0, ExtensionAttachmentView::kWidth, ExtensionAttachmentView::kHeight));
    return m_view;
}

void ExtensionAttachmentCollectionViewItem::setRepresentedObject(const QVariant& attachment) {
    m_representedObject = attachment;
    view()->prepareAttach(ExtensionAttachmentController::pathOfAttachment(attachment));
}

void ExtensionAttachmentCollectionViewItem::setSelected(bool selected) {
    m_selected = selected;
    view()->setSelected(selected);
    view()->update();
}

} // namespace velmora
