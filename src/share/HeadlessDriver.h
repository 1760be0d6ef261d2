// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "composer/ExtensionCopyRecipientsView.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace velmora {

class ExtensionComposerController;

// Fills a composer as a user at the keyboard would, for runs without a window: picks the From
// item, adds recipients, sets the subject and replaces the body.
class HeadlessDriver {
public:
    struct Choices {
        QString from; // null: keep the first item
        QStringList to;
        std::optional<QString> subject;
        std::optional<QString> body;
        QStringList cc;
        QStringList bcc;
    };

    // Applies the choices to a composer whose message has been taken in. Returns null, or what
    // could not be done (a From address that no item carries), with nothing applied then.
    static QString apply(ExtensionComposerController& composer, const Choices& choices);

    // Adds one recipient: a contact whose mail is exactly text is taken from the suggestion
    // list; any other text is typed and committed with a comma.
    static void addRecipient(ExtensionComposerController& composer, const QString& text);
    // Adds one Cc or Bcc recipient to the composer's row: the contact whose mail is exactly
    // text, else an address made of the text as a typed token would be.
    static void addCopyRecipient(ExtensionComposerController& composer,
                                 ExtensionCopyRecipientsView::Field field, const QString& text);
};

} // namespace velmora
