// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Where the composer's views go: one column anchored at the top, following the panel's width.

#include "composer/ComposerMetrics.h"
#include "composer/ExtensionAttachmentCollectionView.h"
#include "composer/ExtensionComposerController.h"
#include "composer/ExtensionCopyRecipientsView.h"
#include "recipients/ExtensionTokenField.h"
#include "views/FlippedView.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>

namespace velmora {

using namespace composer_metrics;

void ExtensionComposerController::layoutSubviews() {
    const FlippedView* root = loadedView();
    if (!root)
        return;
    const int width = root->width();
    const int fieldWidth = std::max(1, width - 2 * kSideMargin);

    m_fxLight->setGeometry(root->rect());

    const int sendX = width - kSideMargin - kButtonWidth;
    const int cancelX = sendX - kButtonGap - kButtonWidth;
    m_sendBtn->setGeometry(sendX, kTopMargin, kButtonWidth, kButtonHeight);
    m_cancelBtn->setGeometry(cancelX, kTopMargin, kButtonWidth, kButtonHeight);
    // The label, then the pop-up up to the standard space before Cancel.
    const int labelWidth = m_fromLabel->sizeHint().width();
    m_fromLabel->setGeometry(kSideMargin, kTopMargin, labelWidth, kPopUpHeight);
    const int popUpX = kSideMargin + labelWidth + kLabelGap;
    m_popUpview->setGeometry(popUpX, kTopMargin, std::max(1, cancelX - kStandardSpacing - popUpX),
                             kPopUpHeight);

    int y = kTopMargin + kPopUpHeight;
    const auto separator = [&](int number) {
        y += kGap;
        m_horizontalSeparators[number]->setGeometry(0, y, std::max(1, width), kSeparator);
        y += kSeparator + kGap;
    };
    const auto column = [&](QWidget* widget, int height) {
        widget->setGeometry(kSideMargin, y, fieldWidth, height);
        y += height;
    };
    separator(0);
    column(m_toField, kFieldHeight);
    // The Cc/Bcc row sits under To and takes its room from the body.
    int bodyHeight = kBodyHeight;
    m_copyRecipientsView->setVisible(!m_copyRecipientsView->isEmpty());
    if (m_copyRecipientsView->isVisible()) {
        y += kGap;
        const int rowHeight = m_copyRecipientsView->heightForWidth(fieldWidth);
        column(m_copyRecipientsView, rowHeight);
        bodyHeight = std::max(kMinBodyHeight, kBodyHeight - rowHeight - kGap);
    }
    separator(1);
    column(m_subjectField, kFieldHeight);
    separator(2);
    column(m_contentTextView, bodyHeight);
    separator(3);
    // The scroll bar goes below the items, never over their names: the strip grows by the bar's
    // height while there are more items than fit.
    const bool scrolls = m_collectionView->sizeHint().width() > fieldWidth;
    QScrollBar* bar = m_collectionScrollview->horizontalScrollBar();
    m_collectionScrollview->setHorizontalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn
                                                                 : Qt::ScrollBarAlwaysOff);
    const int barHeight =
        scrolls ? bar->style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, bar) : 0;
    column(m_collectionScrollview, kStripHeight + barHeight);
}

} // namespace velmora
