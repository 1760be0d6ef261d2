// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "recipients/Recipient.h"

#include <functional>

namespace velmora {

using AddressLookup = std::function<std::shared_ptr<ExtensionAddress>(const QString& mail)>;

// The recipients that take the place of objects the field is about to commit. Records stay as
// they are. A text is split at the first of ",", ";", "\r", "\n", "\t", "\r\n" that it holds
// (at commas when it holds none), and at that separator only; each piece, trimmed, becomes a new
// address, unless it is empty or some contact has exactly that mail (a known contact is added
// by choosing it from the suggestions instead). Anything else is dropped.
QList<Token> recipientsForAddedObjects(const QList<Token>& objects,
                                       const AddressLookup& addressForMail);

} // namespace velmora
