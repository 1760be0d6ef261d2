// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/AtomicProperty.h"

#include <QList>
#include <QString>
#include <QVariant>

#include <memory>

namespace velmora {

// A sending alias of an account: another address the user may send from.
class ExtensionAlias {
public:
    // Reads an alias dictionary ("mail", "name", "account"); a malformed one is logged and the
    // fields read before the fault are kept.
    static std::shared_ptr<ExtensionAlias> initWithDictonary(const QVariant& d);

    QString mail() const { return m_mail.get(); }
    void setMail(QString v) { m_mail.set(std::move(v)); }
    QString name() const { return m_name.get(); }
    void setName(QString v) { m_name.set(std::move(v)); }
    // The owning account as the main application identifies it.
    QString account() const { return m_account.get(); }
    void setAccount(QString v) { m_account.set(std::move(v)); }

    QString description() const;

private:
    AtomicProperty<QString> m_mail;
    AtomicProperty<QString> m_name;
    AtomicProperty<QString> m_account;
};

// A mail account of the user, with its aliases, as the From menu offers it.
class ExtensionAccount {
public:
    // Reads an account dictionary ("mail", "name", "type", "enabled", "aliases"); a malformed
    // one is logged and the fields read before the fault are kept.
    static std::shared_ptr<ExtensionAccount> initWithDictonary(const QVariant& d);

    QString mail() const { return m_mail.get(); }
    void setMail(QString v) { m_mail.set(std::move(v)); }
    // The display name used as sender name.
    QString name() const { return m_name.get(); }
    void setName(QString v) { m_name.set(std::move(v)); }
    QList<std::shared_ptr<ExtensionAlias>> aliases() const { return m_aliases.get(); }
    void setAliases(QList<std::shared_ptr<ExtensionAlias>> v) { m_aliases.set(std::move(v)); }
    // The main application's kind of account; the composer leaves out type 3.
    qint64 type() const { return m_type.get(); }
    void setType(qint64 v) { m_type.set(v); }
    bool enabled() const { return m_enabled.get(); }
    void setEnabled(bool v) { m_enabled.set(v); }

    QString description() const;

private:
    AtomicProperty<QString> m_mail;
    AtomicProperty<QString> m_name;
    AtomicProperty<QList<std::shared_ptr<ExtensionAlias>>> m_aliases;
    AtomicProperty<qint64> m_type;
    AtomicProperty<bool> m_enabled;
};

} // namespace velmora
