// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/AttachmentAccessibility.h"

#include "composer/ExtensionAttachmentCollectionView.h"
#include "composer/ExtensionAttachmentController.h"
#include "composer/ExtensionAttachmentView.h"
#include "composer/StagingStatusView.h"

#include <QAccessibleWidget>

#include <mutex>

namespace velmora {

namespace {

class AttachmentAccessible : public QAccessibleWidget {
public:
    explicit AttachmentAccessible(ExtensionAttachmentView* view)
        : QAccessibleWidget(view, QAccessible::ListItem) {}

    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Name && widget()->accessibleName().isEmpty())
            return attachment()->filename();
        return QAccessibleWidget::text(kind);
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.selectable = true;
        state.selected = attachment()->isSelected();
        return state;
    }
    // The thumbnail inside is part of the item, not a child of its own.
    int childCount() const override { return 0; }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }

private:
    ExtensionAttachmentView* attachment() const {
        return static_cast<ExtensionAttachmentView*>(widget());
    }
};

class StagingCardsAccessible : public QAccessibleWidget {
public:
    explicit StagingCardsAccessible(StagingStatusView* view)
        : QAccessibleWidget(view, QAccessible::StaticText) {}

    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Name) {
            QStringList cards = static_cast<StagingStatusView*>(widget())->cardTexts();
            for (QString& card : cards)
                card.replace(u'\n', QStringLiteral(", "));
            return cards.join(QStringLiteral("; "));
        }
        return QAccessibleWidget::text(kind);
    }
};

QAccessibleInterface* attachmentFactory(const QString& key, QObject* object) {
    if (key == QLatin1String(ExtensionAttachmentView::staticMetaObject.className()))
        return new AttachmentAccessible(static_cast<ExtensionAttachmentView*>(object));
    if (key == QLatin1String(ExtensionAttachmentCollectionView::staticMetaObject.className()))
        return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::List);
    if (key == QLatin1String(StagingStatusView::staticMetaObject.className()))
        return new StagingCardsAccessible(static_cast<StagingStatusView*>(object));
    return nullptr;
}

} // namespace

void installAttachmentAccessibility() {
    static std::once_flag installed;
    std::call_once(installed, [] { QAccessible::installFactory(&attachmentFactory); });
}

} // namespace velmora
