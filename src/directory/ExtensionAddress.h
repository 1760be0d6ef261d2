// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/AtomicProperty.h"
#include "platform/PropertyList.h"

#include <QList>
#include <QMutex>
#include <QMutexLocker>
#include <QString>
#include <QVariant>

#include <memory>
#include <span>
#include <utility>

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

    // The fields together, as one read sees them.
    struct Fields {
        QString mail;
        QString firstName;
        QString lastName;
        QString company;
        QString nickname;
        qint64 rank = 0;
    };
    // Every field under one lock, for code that reads them all.
    Fields fields() const {
        const QMutexLocker lock(&m_mutex);
        return m_fields;
    }
    // Calls read with the fields under the record's lock, without copying them: the suggestion
    // index reads a large book twice this way, where copies would cost a reference count per
    // string or, kept, the fields' size once more.
    template <typename Read> decltype(auto) readFields(Read&& read) const {
        const QMutexLocker lock(&m_mutex);
        return std::forward<Read>(read)(std::as_const(m_fields));
    }

    QString mail() const { return get(&Fields::mail); }
    void setMail(QString v) { set(&Fields::mail, std::move(v)); }
    QString firstName() const { return get(&Fields::firstName); }
    void setFirstName(QString v) { set(&Fields::firstName, std::move(v)); }
    QString lastName() const { return get(&Fields::lastName); }
    void setLastName(QString v) { set(&Fields::lastName, std::move(v)); }
    QString company() const { return get(&Fields::company); }
    void setCompany(QString v) { set(&Fields::company, std::move(v)); }
    QString nickname() const { return get(&Fields::nickname); }
    void setNickname(QString v) { set(&Fields::nickname, std::move(v)); }
    qint64 rank() const { return get(&Fields::rank); }
    void setRank(qint64 v) { set(&Fields::rank, v); }

    // "first last" without surrounding white space: "Ada" for a first name alone.
    QString fullName() const;
    // The text shown for the address: "Ada Lovelace <ada@x.test>", "Acme <info@acme.test>",
    // or "<x@y.test>" when neither a name nor a company is known.
    QString prettyprint() const;
    QString description() const;

private:
    static std::shared_ptr<ExtensionAddress> read(const DictionaryReader& dict);

    template <typename T> T get(T Fields::*field) const {
        const QMutexLocker lock(&m_mutex);
        return m_fields.*field;
    }
    template <typename T> void set(T Fields::*field, T value) {
        const QMutexLocker lock(&m_mutex);
        // The old value, now in the parameter, is released after the lock is.
        std::swap(m_fields.*field, value);
    }

    // One lock for the record: each read or write of a field is indivisible, and fields() reads
    // all of them with one lock instead of six.
    mutable QMutex m_mutex;
    Fields m_fields;
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
