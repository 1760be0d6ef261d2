// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Reading a command URL, as text and through QUrl; the message read, written as a command URL
// again, reads back with the same fields.
#include "FuzzText.h"
#include "message/ExtensionMessage.h"

#include <algorithm>

using namespace velmora;

namespace {

QStringList sortedAttachments(const ExtensionMessage& message) {
    QStringList paths;
    for (const QVariant& element : *message.attachments())
        paths.append(element.toString());
    std::sort(paths.begin(), paths.end());
    return paths;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString input = fuzz::text(data, size);
    ExtensionMessage::ExtensionMessageWithUrl(QUrl(input));
    const auto read = ExtensionMessage::ExtensionMessageWithUrl(UrlText::fromString(input));
    const UrlText written = read->queryUrl(QStringLiteral("send"));
    fuzz::check(!written.isNull());
    const auto again = ExtensionMessage::ExtensionMessageWithUrl(written);
    // QString's == takes null and empty as equal, as the writer leaves empty fields out.
    fuzz::check(again->subject() == read->subject());
    fuzz::check(again->from() == read->from());
    fuzz::check(again->account() == read->account());
    fuzz::check(again->htmlBody() == read->htmlBody());
    fuzz::check(again->plainBody() == read->plainBody());
    fuzz::check(sortedAttachments(*again) == sortedAttachments(*read));
    return 0;
}
