// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "share/HeadlessDriver.h"

#include "composer/ExtensionComposerController.h"
#include "composer/ExtensionContentTextView.h"
#include "directory/ExtensionAddress.h"
#include "platform/LocalizedString.h"
#include "recipients/ExtensionSuggestionController.h"
#include "recipients/ExtensionTokenField.h"
#include "recipients/TokenSplitting.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>

namespace velmora {

namespace {

// What a keyboard sends for text typed in one go (an input method commits whole words too).
void type(QWidget* target, const QString& text) {
    QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, text);
    QApplication::sendEvent(target, &press);
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_unknown, Qt::NoModifier, text);
    QApplication::sendEvent(target, &release);
}

QStringList fromTitles(const QComboBox& popUp) {
    QStringList titles;
    for (int i = 0; i < popUp.count(); ++i)
        titles.append(popUp.itemText(i));
    return titles;
}

} // namespace

QString HeadlessDriver::apply(ExtensionComposerController& composer, const Choices& choices) {
    QComboBox* popUp = composer.popUpview();
    if (!choices.from.isNull()) {
        const int index = popUp->findText(choices.from, Qt::MatchExactly);
        if (index < 0) {
            const QStringList titles = fromTitles(*popUp);
            return titles.isEmpty()
                       ? LocalizedString("no From item titled %1: there are no accounts")
                             .arg(choices.from)
                       : LocalizedString("no From item titled %1 (the items are: %2)")
                             .arg(choices.from, titles.join(QStringLiteral(", ")));
        }
        popUp->setCurrentIndex(index);
    }

    for (const QString& recipient : choices.to)
        addRecipient(composer, recipient);
    for (const QString& recipient : choices.cc)
        addCopyRecipient(composer, ExtensionCopyRecipientsView::Field::Cc, recipient);
    for (const QString& recipient : choices.bcc)
        addCopyRecipient(composer, ExtensionCopyRecipientsView::Field::Bcc, recipient);

    if (choices.subject)
        composer.subjectField()->setText(*choices.subject);
    if (choices.body)
        composer.contentTextView()->setPlainText(*choices.body);
    return {};
}

void HeadlessDriver::addRecipient(ExtensionComposerController& composer, const QString& text) {
    ExtensionTokenField* field = composer.toField();
    ExtensionSuggestionController* suggestions = composer.suggestionController();
    // Asked first, as a user waits for the list: it waits for the contacts, so that the typing
    // below opens the list at once.
    const std::shared_ptr<ExtensionAddress> contact =
        suggestions ? suggestions->addressForMail(text) : nullptr;
    field->setFocus(Qt::OtherFocusReason);
    type(field, text);
    if (contact) {
        // Typing has opened the list with what the text finds; the contact is among its rows,
        // as its mail contains the text.
        const Suggestions& found = suggestions->GetArray();
        for (qsizetype row = 0; row < found.size(); ++row) {
            const Recipient candidate = found.at(row);
            const auto* address = std::get_if<std::shared_ptr<ExtensionAddress>>(&candidate);
            if (address && *address == contact) {
                suggestions->insertObjectFoRow(row);
                return;
            }
        }
    }
    // The comma commits the typed text, which makes an address of it.
    type(field, QStringLiteral(","));
}

void HeadlessDriver::addCopyRecipient(ExtensionComposerController& composer,
                                      ExtensionCopyRecipientsView::Field field,
                                      const QString& text) {
    ExtensionCopyRecipientsView* row = composer.copyRecipientsView();
    const ExtensionSuggestionController* suggestions = composer.suggestionController();
    if (const auto contact = suggestions ? suggestions->addressForMail(text) : nullptr) {
        row->addRecipient(field, contact);
        return;
    }
    for (const Token& token : recipientsForAddedObjects({text}, {})) {
        if (const auto* address = std::get_if<std::shared_ptr<ExtensionAddress>>(&token))
            row->addRecipient(field, *address);
    }
}

} // namespace velmora
