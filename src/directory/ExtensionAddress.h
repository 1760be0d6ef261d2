// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/AtomicProperty.h"
#include "platform/PropertyList.h"

#include <QList>
#include <QString>
#include <QVariant>

#include <memory>
#include <span>

namespace velmora {

class DictionaryReader;

// One e-mail address of the user's contacts, with its person's names and a usage rank (higher
// is used more often). Also a recipient token of the To field.
class ExtensionAddress {
public:
    // Reads an address dictionary ("mail", "firstName", "lastName", "company", "nickname",
    // "rank"); a malformed one is logged and the fields read before the fault are kept.
    static std::shared_ptr<ExtensionAddress> initWithDictonary(const QVariant& d);
    // The same for a dictionary the property-list reader hands over entry by entry.
    static std::shared_ptr<ExtensionAddress>
    initWithDictonary(std::span<const PropertyListEntry> entries);

    QString mail() const { return m_mail.get(); }
    void setMail(QString v) { m_mail.set(std::move(v)); }
    QString firstName() const { return m_firstName.get(); }
    void setFirstName(QString v) { m_firstName.set(std::move(v)); }
    QString lastName() const { return m_lastName.get(); }
    void setLastName(QString v) { m_lastName.set(std::move(v)); }
    QString company() const { return m_company.get(); }
    void setCompany(QString v) { m_company.set(std::move(v)); }
    QString nickname() const { return m_nickname.get(); }
    void setNickname(QString v) { m_nickname.set(std::move(v)); }
    qint64 rank() const { return m_rank.get(); }
    void setRank(qint64 v) { m_rank.set(v); }

    // "first last" without surrounding white space: "Ada" for a first name alone.
    QString fullName() const;
    // The text shown for the address: "Ada Lovelace <ada@x.test>", "Acme <info@acme.test>",
    // or "<x@y.test>" when neither a name nor a company is known.
    QString prettyprint() const;
    QString description() const;

private:
    static std::shared_ptr<ExtensionAddress> read(const DictionaryReader& dict);

    AtomicProperty<QString> m_mail;
    AtomicProperty<QString> m_firstName;
    AtomicProperty<QString> m_lastName;
    AtomicProperty<QString> m_company;
    AtomicProperty<QString> m_nickname;
    AtomicProperty<qint64> m_rank;
};

// A named list of addresses of the user's contacts.
class ExtensionGroup {
public:
    // Reads a group dictionary ("idx", "name", "addresses"); a malformed one is logged and the
    // fields read before the fault are kept.
    static std::shared_ptr<ExtensionGroup> initWithDictonary(const QVariant& d);

    // The main application's identifier of the group; carried, not interpreted.
    QString idx() const { return m_idx.get(); }
    void setIdx(QString v) { m_idx.set(std::move(v)); }
    QString name() const { return m_name.get(); }
    void setName(QString v) { m_name.set(std::move(v)); }
    QList<std::shared_ptr<ExtensionAddress>> addresses() const { return m_addresses.get(); }
    void setAddresses(QList<std::shared_ptr<ExtensionAddress>> v) { m_addresses.set(std::move(v)); }

    // The name, followed by the member count in parentheses when there are members: "Team (4)".
    QString prettyprint() const;
    QString description() const;

private:
    AtomicProperty<QString> m_idx;
    AtomicProperty<QString> m_name;
    AtomicProperty<QList<std::shared_ptr<ExtensionAddress>>> m_addresses;
};

} // namespace velmora
