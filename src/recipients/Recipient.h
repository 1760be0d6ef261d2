// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "directory/ExtensionAddress.h"

#include <QList>
#include <QString>

#include <memory>
#include <optional>
#include <variant>

namespace velmora {

// A recipient: a contact address or a contact group, shared with the list it came from.
using Recipient = std::variant<std::shared_ptr<ExtensionAddress>, std::shared_ptr<ExtensionGroup>>;

// One entry of the recipient field's value: a committed recipient, or a run of text the user is
// still typing. A null record stands for "nothing" and shows as an empty text.
using Token =
    std::variant<std::shared_ptr<ExtensionAddress>, std::shared_ptr<ExtensionGroup>, QString>;

Token toToken(const Recipient& recipient);
// The recipient a token holds; none for a text or a null record.
std::optional<Recipient> recipientOf(const Token& token);
// Committed tokens take one character of the field's text, whatever they show.
bool isCommitted(const Token& token);
// The typed text of a text token; null for a committed one.
QString textOf(const Token& token);

// The text shown for a token: a record's prettyprint, a text as it is, "" for nothing.
QString displayString(const Token& token);

} // namespace velmora
