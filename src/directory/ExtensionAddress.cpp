// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "directory/ExtensionAddress.h"

#include "directory/RecordReading.h"
#include "platform/LocalizedString.h"
#include "platform/Log.h"

namespace velmora {

std::shared_ptr<ExtensionAddress> ExtensionAddress::initWithDictonary(const QVariant& d) {
    return read(DictionaryReader(d));
}

std::shared_ptr<ExtensionAddress>
ExtensionAddress::initWithDictonary(std::span<const PropertyListEntry> entries) {
    return read(DictionaryReader(entries));
}

std::shared_ptr<ExtensionAddress> ExtensionAddress::read(const DictionaryReader& dict) {
    auto address = std::make_shared<ExtensionAddress>();
    // The record is not shared until it is returned: its fields are set without their locks.
    try {
        const QString empty = QStringLiteral("");
        Fields& f = address->m_fields;
        // "No Mail" here is a plain text, not a translation.
        f.mail = dict.string(QStringLiteral("mail"), QStringLiteral("No Mail"));
        f.firstName = dict.string(QStringLiteral("firstName"), empty);
        f.lastName = dict.string(QStringLiteral("lastName"), empty);
        f.company = dict.string(QStringLiteral("company"), empty);
        f.nickname = dict.string(QStringLiteral("nickname"), empty);
        if (dict.contains(QStringLiteral("rank")))
            f.rank = dict.integer(QStringLiteral("rank"));
    } catch (const std::exception& e) {
        Log::write(u"ExtensionAddress initWithDictonary %@", {DictionaryReader::describe(e)});
    }
    return address;
}

QString ExtensionAddress::fullName() const {
    const Fields f = fields();
    return (f.firstName + u' ' + f.lastName).trimmed();
}

QString ExtensionAddress::prettyprint() const {
    QString out = fullName();
    if (out.isEmpty())
        out = company();
    const QString m = mail();
    if (!m.isEmpty())
        out += QStringLiteral(" <") + m + u'>';
    return out.trimmed();
}

QString ExtensionAddress::description() const {
    return QStringLiteral("ExtensionAddress ") + mail();
}

std::shared_ptr<ExtensionGroup> ExtensionGroup::initWithDictonary(const QVariant& d) {
    auto group = std::make_shared<ExtensionGroup>();
    const DictionaryReader dict(d);
    try {
        group->setIdx(dict.string(QStringLiteral("idx"), QStringLiteral("")));
        group->setName(dict.string(QStringLiteral("name"), LocalizedString("No Name")));
        QList<std::shared_ptr<ExtensionAddress>> members;
        for (const QVariant& element : dict.elements(QStringLiteral("addresses"))) {
            members.append(ExtensionAddress::initWithDictonary(element));
        }
        group->setAddresses(std::move(members));
    } catch (const std::exception& e) {
        Log::write(u"ExtensionGroup initWithDictonary %@", {DictionaryReader::describe(e)});
    }
    return group;
}

QString ExtensionGroup::prettyprint() const {
    const QString n = name();
    const qsizetype count = addresses().size();
    return count == 0 ? n : QStringLiteral("%1 (%2)").arg(n, QString::number(count));
}

QString ExtensionGroup::description() const {
    return QStringLiteral("ExtensionGroup ") + name();
}

} // namespace velmora
