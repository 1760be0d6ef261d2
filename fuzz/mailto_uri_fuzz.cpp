// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// The mailto: reader on any text: it never crashes, and what it reads holds together: a text
// that reads is a mailto: URI, addresses are trimmed and never empty, a body has no "\r", and
// an attachment's path is absolute when there is one.
#include "FuzzText.h"
#include "message/MailtoUri.h"

using namespace velmora;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString input = fuzz::text(data, size);
    for (const QString& uri : {input, QStringLiteral("mailto:") + input}) {
        const MailtoParse parsed = MailtoUri::parse(uri);
        fuzz::check(parsed.mailto.has_value() == parsed.error.isNull());
        if (!parsed.mailto) {
            fuzz::check(!parsed.error.isEmpty());
            continue;
        }
        fuzz::check(MailtoUri::isMailto(uri));
        const Mailto& mailto = *parsed.mailto;
        for (const QStringList* list : {&mailto.to, &mailto.cc, &mailto.bcc}) {
            for (const QString& address : *list)
                fuzz::check(!address.isEmpty() && address == address.trimmed());
        }
        fuzz::check(!mailto.body.contains(u'\r'));
        fuzz::check(!mailto.subject.contains(u'\n') && !mailto.subject.contains(u'\r'));
        for (const MailtoAttachment& attachment : mailto.attachments) {
            fuzz::check(!attachment.given.isEmpty());
            fuzz::check(attachment.path.isNull() || attachment.path.startsWith(u'/'));
        }
        Mailto twice = mailto;
        twice.merge(mailto);
        fuzz::check(twice.to.size() == 2 * mailto.to.size());
    }
    return 0;
}
