// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "recipients/TokenSplitting.h"

namespace velmora {

namespace {

QString separatorFor(const QString& text) {
    // "\r" comes before "\r\n", so a Windows line end splits at the "\r" and the "\n" left in
    // the pieces is trimmed away.
    static const QString kSeparators[] = {QStringLiteral(","),  QStringLiteral(";"),
                                          QStringLiteral("\r"), QStringLiteral("\n"),
                                          QStringLiteral("\t"), QStringLiteral("\r\n")};
    for (const QString& separator : kSeparators) {
        if (text.contains(separator))
            return separator;
    }
    return kSeparators[0];
}

} // namespace

QList<Token> recipientsForAddedObjects(const QList<Token>& objects,
                                       const AddressLookup& addressForMail) {
    QList<Token> out;
    for (const Token& object : objects) {
        if (const auto recipient = recipientOf(object)) {
            out.append(toToken(*recipient));
            continue;
        }
        const auto* text = std::get_if<QString>(&object);
        if (!text)
            continue; // a null record
        for (const QString& part : text->split(separatorFor(*text))) {
            const QString piece = part.trimmed();
            if (piece.isEmpty() || (addressForMail && addressForMail(piece)))
                continue;
            auto address = std::make_shared<ExtensionAddress>();
            address->setMail(piece);
            address->setFirstName(QStringLiteral(""));
            address->setLastName(QStringLiteral(""));
            out.append(address);
        }
    }
    return out;
}

} // namespace velmora
