#include "directory/ExtensionAccount.h"

#include "directory/RecordReading.h"
#include "platform/LocalizedString.h"
#include "platform/Log.h"

namespace velmora {

using RecordReading::stringOr;
using RecordReading::valueFor;

std::shared_ptr<ExtensionAlias> ExtensionAlias::initWithDictonary(const QVariant& d)
{
    auto alias = std::make_shared<ExtensionAlias>();
    try {
        alias->setMail(stringOr(valueFor(d, QStringLiteral("mail")), LocalizedString("No Mail")));
        alias->setName(stringOr(valueFor(d, QStringLiteral("name")), QStringLiteral("")));
        alias->setAccount(stringOr(valueFor(d, QStringLiteral("account")), QStringLiteral("")));
    } catch (const std::exception& e) {
        Log::write(u"ExtensionAlias initWithDictonary %@", {RecordReading::describe(e)});
    }
    return alias;
}

QString ExtensionAlias::description() const
{
    return QStringLiteral("ExtensionAlias ") + mail();
}

std::shared_ptr<ExtensionAccount> ExtensionAccount::initWithDictonary(const QVariant& d)
{
    auto account = std::make_shared<ExtensionAccount>();
    try {
        account->setMail(stringOr(valueFor(d, QStringLiteral("mail")), LocalizedString("No Mail")));
        // The empty key's translation is the empty text.
        account->setName(stringOr(valueFor(d, QStringLiteral("name")), QStringLiteral("")));
        account->setType(Values::integerValue(valueFor(d, QStringLiteral("type"))));
        account->setEnabled(Values::boolValue(valueFor(d, QStringLiteral("enabled"))));
        // The list is in place before its elements are read, so an account whose "aliases"
        // cannot be read still has an (empty) list.
        account->setAliases({});
        QList<std::shared_ptr<ExtensionAlias>> aliases;
        for (const QVariant& element :
             RecordReading::elementsOf(valueFor(d, QStringLiteral("aliases")), "aliases")) {
            aliases.append(ExtensionAlias::initWithDictonary(element));
        }
        account->setAliases(std::move(aliases));
    } catch (const std::exception& e) {
        Log::write(u"ExtensionAccount initWithDictonary %@", {RecordReading::describe(e)});
    }
    return account;
}

QString ExtensionAccount::description() const
{
    return QStringLiteral("ExtensionAccount ") + mail();
}

} // namespace velmora
