// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// The composer's names for screen readers; the roles of its own widgets come from the
// accessibility factories of the recipient field and the attachment strip.

#include "composer/ExtensionAttachmentCollectionView.h"
#include "composer/ExtensionComposerController.h"
#include "composer/ExtensionCopyRecipientsView.h"
#include "platform/LocalizedString.h"
#include "recipients/ExtensionSuggestionController.h"
#include "recipients/ExtensionSuggestionTableView.h"
#include "recipients/ExtensionTokenField.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>

namespace velmora {

void ExtensionComposerController::nameForAccessibility() {
    // On Linux a combo box is named by the label whose buddy it is (From's, "From:"); this
    // name serves where the label is not asked.
    m_popUpview->setAccessibleName(LocalizedString("From"));
    m_toField->setAccessibleName(LocalizedString("To"));
    m_subjectField->setAccessibleName(LocalizedString("Subject"));
    m_contentTextView->setAccessibleName(LocalizedString("Message"));
    m_collectionScrollview->setAccessibleName(LocalizedString("Attachments"));
    m_collectionView->setAccessibleName(LocalizedString("Attachments"));
    m_copyRecipientsView->setAccessibleName(LocalizedString("Cc and Bcc"));
    // The buttons' own texts name them; their names follow the texts (Send becomes "Waiting...").
}

} // namespace velmora
