// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "message/ExtensionMessage.h"
#include "message/PrintedText.h"
#include "request/RequestUtils.h"

#include <algorithm>

namespace velmora {

namespace {

// "a@x;b@y;": every address followed by ";", the last one too; names are not carried.
QString recipientText(const std::shared_ptr<AddressList>& list) {
    QString text;
    if (!list)
        return text;
    for (const auto& address : *list)
        text += printedText(address ? address->mail() : QString()) + u';';
    return text;
}

void addIfNotEmpty(QueryParameters& parameters, const QString& key, const QString& value) {
    if (!value.isEmpty())
        parameters.insert(key, value);
}

} // namespace

UrlText ExtensionMessage::queryUrl(const QString& command) const {
    QueryParameters parameters;
    addIfNotEmpty(parameters, QStringLiteral("plainBody"), plainBody());
    addIfNotEmpty(parameters, QStringLiteral("htmlBody"), htmlBody());
    addIfNotEmpty(parameters, QStringLiteral("subject"), subject());
    addIfNotEmpty(parameters, QStringLiteral("from"), from());
    addIfNotEmpty(parameters, QStringLiteral("account"), account());
    addIfNotEmpty(parameters, QStringLiteral("bcc"), recipientText(bcc()));
    addIfNotEmpty(parameters, QStringLiteral("cc"), recipientText(cc()));
    addIfNotEmpty(parameters, QStringLiteral("to"), recipientText(to()));

    withLock([&] {
        const auto list = attachments();
        if (!list)
            return;
        // Elements that are neither a path nor a URL are skipped but keep their number.
        for (qsizetype i = 0; i < list->size(); ++i) {
            const QVariant& element = list->at(i);
            const QString name = QStringLiteral("attachment_") + QString::number(i);
            if (element.typeId() == QMetaType::QString)
                parameters.insert(name, element.toString());
            else if (element.typeId() == QMetaType::QUrl)
                parameters.insert(name, element.toUrl().path(QUrl::FullyDecoded));
        }
    });

    return UrlText::fromHeadAndQuery(QStringLiteral("velmora://") + command + u'?',
                                     RequestUtils::URLQueryWithParameters(parameters));
}

namespace {

// The parameters the reader takes, each into its field; recipients only as their texts.
struct ReadField {
    QStringView key;
    void (ExtensionMessage::*set)(QString);
};
constexpr ReadField kReadFields[] = {
    {u"from", &ExtensionMessage::setFrom},           {u"account", &ExtensionMessage::setAccount},
    {u"subject", &ExtensionMessage::setSubject},     {u"htmlBody", &ExtensionMessage::setHtmlBody},
    {u"plainBody", &ExtensionMessage::setPlainBody}, {u"to", &ExtensionMessage::setToString},
    {u"cc", &ExtensionMessage::setCcString},         {u"bcc", &ExtensionMessage::setBccString},
};

// Reads the command URL's absolute text.
std::shared_ptr<ExtensionMessage> messageFromUrlText(const QString& text) {
    auto message = ExtensionMessage::init();
    const QueryParameters parameters = RequestUtils::URLQueryParameters(text);
    for (auto it = parameters.constBegin(); it != parameters.constEnd(); ++it) {
        // With the default options every value is one string.
        const QString* value = std::get_if<QString>(&it.value());
        if (!value)
            continue;
        const QString& key = it.key();
        const auto field = std::find_if(std::begin(kReadFields), std::end(kReadFields),
                                        [&key](const ReadField& f) { return key == f.key; });
        if (field != std::end(kReadFields))
            (message.get()->*field->set)(*value);
        else if (key.startsWith(u"attachment_"))
            message->appendAttachment(*value);
    }
    return message;
}

} // namespace

std::shared_ptr<ExtensionMessage> ExtensionMessage::ExtensionMessageWithUrl(const UrlText& url) {
    return messageFromUrlText(url.toString());
}

std::shared_ptr<ExtensionMessage> ExtensionMessage::ExtensionMessageWithUrl(const QUrl& url) {
    // The encoded form, so that escapes reach the query decoder as they were written.
    return messageFromUrlText(url.toString(QUrl::FullyEncoded));
}

} // namespace velmora
