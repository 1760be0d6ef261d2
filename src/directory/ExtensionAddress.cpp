#include "directory/ExtensionAddress.h"

#include "directory/RecordReading.h"
#include "platform/LocalizedString.h"
#include "platform/Log.h"

namespace velmora {

using RecordReading::stringOr;
using RecordReading::valueFor;

std::shared_ptr<ExtensionAddress> ExtensionAddress::initWithDictonary(const QVariant& d)
{
    auto address = std::make_shared<ExtensionAddress>();
    try {
        const QString empty = QStringLiteral("");
        // "No Mail" here is a plain text, not a translation.
        address->setMail(stringOr(valueFor(d, QStringLiteral("mail")), QStringLiteral("No Mail")));
        address->setFirstName(stringOr(valueFor(d, QStringLiteral("firstName")), empty));
        address->setLastName(stringOr(valueFor(d, QStringLiteral("lastName")), empty));
        address->setCompany(stringOr(valueFor(d, QStringLiteral("company")), empty));
        address->setNickname(stringOr(valueFor(d, QStringLiteral("nickname")), empty));
        const QVariant rank = valueFor(d, QStringLiteral("rank"));
        if (rank.isValid())
            address->setRank(Values::integerValue(rank));
    } catch (const std::exception& e) {
        Log::write(u"ExtensionAddress initWithDictonary %@", {RecordReading::describe(e)});
    }
    return address;
}

QString ExtensionAddress::fullName() const
{
    return (firstName() + u' ' + lastName()).trimmed();
}

QString ExtensionAddress::prettyprint() const
{
    QString out = fullName();
    if (out.isEmpty())
        out = company();
    const QString m = mail();
    if (!m.isEmpty())
        out += QStringLiteral(" <") + m + u'>';
    return out.trimmed();
}

QString ExtensionAddress::description() const
{
    return QStringLiteral("ExtensionAddress ") + mail();
}

std::shared_ptr<ExtensionGroup> ExtensionGroup::initWithDictonary(const QVariant& d)
{
    auto group = std::make_shared<ExtensionGroup>();
    try {
        group->setIdx(stringOr(valueFor(d, QStringLiteral("idx")), QStringLiteral("")));
        group->setName(stringOr(valueFor(d, QStringLiteral("name")), LocalizedString("No Name")));
        QList<std::shared_ptr<ExtensionAddress>> members;
        for (const QVariant& element :
             RecordReading::elementsOf(valueFor(d, QStringLiteral("addresses")), "addresses")) {
            members.append(ExtensionAddress::initWithDictonary(element));
        }
        group->setAddresses(std::move(members));
    } catch (const std::exception& e) {
        Log::write(u"ExtensionGroup initWithDictonary %@", {RecordReading::describe(e)});
    }
    return group;
}

QString ExtensionGroup::prettyprint() const
{
    const QString n = name();
    const qsizetype count = addresses().size();
    return count == 0 ? n : QStringLiteral("%1 (%2)").arg(n, QString::number(count));
}

QString ExtensionGroup::description() const
{
    return QStringLiteral("ExtensionGroup ") + name();
}

} // namespace velmora
