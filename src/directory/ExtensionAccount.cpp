// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "directory/ExtensionAccount.h"

#include "directory/RecordReading.h"
#include "platform/LocalizedString.h"
#include "platform/Log.h"

namespace velmora {

std::shared_ptr<ExtensionAlias> ExtensionAlias::initWithDictonary(const QVariant& d) {
    auto alias = std::make_shared<ExtensionAlias>();
    const DictionaryReader dict(d);
    try {
        alias->setMail(dict.string(QStringLiteral("mail"), LocalizedString("No Mail")));
        alias->setName(dict.string(QStringLiteral("name"), QStringLiteral("")));
        alias->setAccount(dict.string(QStringLiteral("account"), QStringLiteral("")));
    } catch (const std::exception& e) {
        Log::write(u"ExtensionAlias initWithDictonary %@", {DictionaryReader::describe(e)});
    }
    return alias;
}

QString ExtensionAlias::description() const {
    return QStringLiteral("ExtensionAlias ") + mail();
}

std::shared_ptr<ExtensionAccount> ExtensionAccount::initWithDictonary(const QVariant& d) {
    auto account = std::make_shared<ExtensionAccount>();
    const DictionaryReader dict(d);
    try {
        account->setMail(dict.string(QStringLiteral("mail"), LocalizedString("No Mail")));
        // The empty key's translation is the empty text.
        account->setName(dict.string(QStringLiteral("name"), QStringLiteral("")));
        account->setType(dict.integer(QStringLiteral("type")));
        account->setEnabled(dict.boolean(QStringLiteral("enabled")));
        // The list is in place before its elements are read, so an account whose "aliases"
        // cannot be read still has an (empty) list.
        account->setAliases({});
        QList<std::shared_ptr<ExtensionAlias>> aliases;
        for (const QVariant& element : dict.elements(QStringLiteral("aliases"))) {
            aliases.append(ExtensionAlias::initWithDictonary(element));
        }
        account->setAliases(std::move(aliases));
    } catch (const std::exception& e) {
        Log::write(u"ExtensionAccount initWithDictonary %@", {DictionaryReader::describe(e)});
    }
    return account;
}

QString ExtensionAccount::description() const {
    return QStringLiteral("ExtensionAccount ") + mail();
}

} // namespace velmora
