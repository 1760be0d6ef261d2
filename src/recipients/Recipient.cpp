// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "recipients/Recipient.h"

namespace velmora {

Token toToken(const Recipient& recipient) {
    return std::visit([](const auto& record) { return Token(record); }, recipient);
}

std::optional<Recipient> recipientOf(const Token& token) {
    if (const auto* a = std::get_if<std::shared_ptr<ExtensionAddress>>(&token); a && *a)
        return Recipient(*a);
    if (const auto* g = std::get_if<std::shared_ptr<ExtensionGroup>>(&token); g && *g)
        return Recipient(*g);
    return std::nullopt;
}

bool isCommitted(const Token& token) {
    return !std::holds_alternative<QString>(token);
}

QString textOf(const Token& token) {
    const auto* text = std::get_if<QString>(&token);
    return text ? *text : QString();
}

QString displayString(const Token& token) {
    if (const auto* text = std::get_if<QString>(&token))
        return *text;
    if (const auto recipient = recipientOf(token))
        return std::visit([](const auto& record) { return record->prettyprint(); }, *recipient);
    return QStringLiteral("");
}

} // namespace velmora
