// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "message/ExtensionMessage.h"

#include "directory/RecordReading.h"
#include "message/ExtensionDate.h"
#include "message/PrintedText.h"
#include "platform/LocalizedString.h"
#include "platform/Log.h"
#include "platform/Values.h"

#include <QByteArray>

#include <cmath>

namespace velmora {

namespace {

bool isMissing(const QVariant& value) {
    return !value.isValid() || value.isNull();
}

// The dictionary's time stamp goes through single precision on purpose, as the main
// application's reader does: 1700000065 becomes 1700000128. Seconds too large for a date give
// none.
QDateTime dateFromSeconds(float seconds) {
    const double wide = seconds;
    // About 290,000 years either side of 1970: the milliseconds still fit in 64 bits.
    if (!std::isfinite(wide) || std::fabs(wide) > 9.0e12)
        return {};
    return QDateTime::fromMSecsSinceEpoch(std::llround(wide * 1000.0), Qt::UTC);
}

// Base64 that skips every character outside the alphabet (line breaks, blanks); empty when what
// is left is still no base64.
QByteArray lenientBase64(const QString& text) {
    QByteArray kept;
    kept.reserve(text.size());
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        if ((u >= u'A' && u <= u'Z') || (u >= u'a' && u <= u'z') || (u >= u'0' && u <= u'9') ||
            u == u'+' || u == u'/' || u == u'=') {
            kept.append(char(u));
        }
    }
    auto decoded = QByteArray::fromBase64Encoding(kept, QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? decoded.decoded : QByteArray();
}

} // namespace

std::shared_ptr<ExtensionMessage> ExtensionMessage::init() {
    auto message = std::make_shared<ExtensionMessage>();
    message->setHtmlBody(QStringLiteral(""));
    message->setPlainBody(QStringLiteral(""));
    message->setTo(std::make_shared<AddressList>());
    message->setCc(std::make_shared<AddressList>());
    message->setBcc(std::make_shared<AddressList>());
    message->setAttachments(std::make_shared<AttachmentList>());
    return message;
}

std::shared_ptr<ExtensionMessage> ExtensionMessage::initWithDictonary(const QVariant& d) {
    // The plain record: bodies and lists stay null, and so does every field the reader does not
    // reach when it stops at a fault.
    auto message = std::make_shared<ExtensionMessage>();
    const DictionaryReader dict(d);
    try {
        const QString empty = QStringLiteral("");
        message->setSubject(
            dict.string(QStringLiteral("subject"), LocalizedString("No subject")));
        message->setMessageId(dict.string(QStringLiteral("messageId"), empty));
        message->setFrom(dict.string(QStringLiteral("from"), empty));
        message->setAccount(dict.string(QStringLiteral("account"), empty));
        message->setFolderPath(dict.string(QStringLiteral("folder"), empty));
        const QVariant folderStid = dict.value(QStringLiteral("folderStid"));
        message->setFolderStandardId(isMissing(folderStid) ? QVariant(0) : folderStid);
        const QVariant isUnread = dict.value(QStringLiteral("isUnread"));
        message->setUnread(isMissing(isUnread) ? QVariant(0) : isUnread);

        QDateTime date = dateFromSeconds(Values::floatValue(dict.value(QStringLiteral("date"))));
        if (!date.isValid())
            date = QDateTime::currentDateTimeUtc();
        message->setDate(date);
        const QString shown = ExtensionDate::shared().centralDate(date);
        message->setDateString(shown.isNull() ? empty : shown);

        const QVariant avatar = dict.value(QStringLiteral("avatar"));
        if (!isMissing(avatar)) {
            const QByteArray bytes = lenientBase64(Values::stringValue(avatar));
            if (!bytes.isEmpty())
                message->setImage(QImage::fromData(bytes));
        }
    } catch (const std::exception& e) {
        Log::write(u"ExtensionMessage initWithDictonary %@", {DictionaryReader::describe(e)});
    }
    return message;
}

void ExtensionMessage::appendAttachment(const QVariant& item) {
    withLock([&] {
        if (const auto list = attachments())
            list->append(item);
    });
}

bool ExtensionMessage::isEqual(const ExtensionMessage* other) const {
    if (other == this)
        return true;
    return other && isEqualToModel(*other);
}

bool ExtensionMessage::isEqualToModel(const ExtensionMessage& other) const {
    if (&other == this)
        return true;
    const QString id = messageId();
    const QString otherId = other.messageId();
    const QString inAccount = account();
    const QString otherAccount = other.account();
    if (id.isNull() || otherId.isNull() || inAccount.isNull() || otherAccount.isNull())
        return false;
    return id == otherId && inAccount == otherAccount;
}

QString ExtensionMessage::description() const {
    return QStringLiteral("ExtensionMessage ") + printedText(subject());
}

} // namespace velmora
