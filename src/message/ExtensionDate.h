// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "message/DateFormatter.h"
#include "platform/AtomicProperty.h"

#include <QDateTime>
#include <QString>

#include <memory>
#include <mutex>

namespace velmora {

// The process-wide date service: four formatters built once from the user's locale and time zone,
// and the conversions the message records need. Every conversion is safe from any thread.
class ExtensionDate {
public:
    using Formatter = std::shared_ptr<const DateFormatter>;

    // The one service of the process, made on the first call from whichever thread comes first.
    static ExtensionDate& shared();

    // Builds the four formatters from the current locale and time zone; shared() calls it once.
    void Initialize();

    // The day key "yyyyMMdd" in local time as a number (20261116), 0 for a null date.
    qint64 IntDate(const QDateTime& date) const;
    // The text a message list shows: the short time for a date on today's local calendar day,
    // the short date for any other day (the future included), "" for a null date.
    QString centralDate(const QDateTime& date) const;
    // The instant of an exchange-format text, exactly "yyyy-MM-dd'T'HH:mm:ss'Z'" in UTC whatever
    // the user's settings; null for a null text and for any other form. Logs each non-null text.
    QDateTime exchangeDate(const QString& text) const;

    // Short time in the user's locale, local time zone: today's messages.
    Formatter dateCentrale() const { return m_dateCentrale.get(); }
    void setDateCentrale(Formatter f) { m_dateCentrale.set(std::move(f)); }
    // Short date in the user's locale, local time zone: older (and future) messages.
    Formatter dateCentrale2() const { return m_dateCentrale2.get(); }
    void setDateCentrale2(Formatter f) { m_dateCentrale2.set(std::move(f)); }
    // "yyyyMMdd", local time zone: the day key.
    Formatter dataDay() const { return m_dataDay.get(); }
    void setDataDay(Formatter f) { m_dataDay.set(std::move(f)); }
    // "yyyy-MM-dd'T'HH:mm:ss'Z'" in UTC with fixed digits: the exchange format.
    Formatter dateExchange() const { return m_dateExchange.get(); }
    void setDateExchange(Formatter f) { m_dateExchange.set(std::move(f)); }

private:
    ExtensionDate() = default;
    qint64 intDateLocked(const QDateTime& date) const;

    // Serialises the conversions, as the platform's formatters may not be shared between threads;
    // ours are immutable, so the lock costs little and keeps the log lines whole and in order.
    mutable std::mutex m_lock;
    AtomicProperty<Formatter> m_dateCentrale;
    AtomicProperty<Formatter> m_dateCentrale2;
    AtomicProperty<Formatter> m_dataDay;
    AtomicProperty<Formatter> m_dateExchange;
};

} // namespace velmora
