// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "message/ExtensionDate.h"

#include "platform/Log.h"

namespace velmora {

namespace {

// The single instance; made once and kept until the process ends.
ExtensionDate* _sharedDate = nullptr;
std::once_flag sharedDateOnce;

} // namespace

ExtensionDate& ExtensionDate::shared() {
    std::call_once(sharedDateOnce, [] {
        if (!_sharedDate) {
            _sharedDate = new ExtensionDate;
            _sharedDate->Initialize();
        }
    });
    return *_sharedDate;
}

void ExtensionDate::Initialize() {
    // The user's settings as they are now; later changes are not picked up.
    const QLocale user = QLocale::system();
    using Zone = DateFormatter::Zone;
    setDateCentrale(std::make_shared<const DateFormatter>(
        user, user.timeFormat(QLocale::ShortFormat), Zone::Local));
    setDateCentrale2(std::make_shared<const DateFormatter>(
        user, user.dateFormat(QLocale::ShortFormat), Zone::Local));
    setDataDay(
        std::make_shared<const DateFormatter>(user, QStringLiteral("yyyyMMdd"), Zone::Local));
    // The C locale writes and reads ASCII digits, whatever the user's locale would use.
    setDateExchange(std::make_shared<const DateFormatter>(
        QLocale::c(), QStringLiteral("yyyy-MM-dd'T'HH:mm:ss'Z'"), Zone::Utc));
}

qint64 ExtensionDate::intDateLocked(const QDateTime& date) const {
    if (!date.isValid())
        return 0;
    const Formatter formatter = dataDay();
    // Read back in the formatter's own locale, so that a locale with other digits still counts.
    return formatter->locale().toLongLong(formatter->stringFromDate(date));
}

qint64 ExtensionDate::IntDate(const QDateTime& date) const {
    const std::lock_guard lock(m_lock);
    return intDateLocked(date);
}

QString ExtensionDate::centralDate(const QDateTime& date) const {
    if (!date.isValid())
        return QStringLiteral("");
    const std::lock_guard lock(m_lock);
    const bool today = intDateLocked(date) == intDateLocked(QDateTime::currentDateTime());
    return (today ? dateCentrale() : dateCentrale2())->stringFromDate(date);
}

QDateTime ExtensionDate::exchangeDate(const QString& text) const {
    if (text.isNull())
        return {};
    const std::lock_guard lock(m_lock);
    Log::write(u"exchangeDate %@", {text});
    return dateExchange()->dateFromString(text);
}

} // namespace velmora
