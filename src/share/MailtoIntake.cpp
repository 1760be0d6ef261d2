// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "share/MailtoIntake.h"

#include "bridge/AttachmentSafety.h"
#include "composer/ExtensionComposerController.h"
#include "composer/ExtensionContentTextView.h"
#include "composer/ExtensionCopyRecipientsView.h"
#include "platform/LocalizedString.h"
#include "platform/Log.h"
#include "share/HeadlessDriver.h"

#include <QLineEdit>
#include <QTextCursor>
#include <QTextStream>
#include <QUrl>

namespace velmora {

QString MailtoIntake::admitAttachments(ShareOptions& options, const QString& container,
                                       QTextStream& err) {
    if (!options.mailto)
        return {};
    for (const QString& header : options.mailto->ignoredHeaders)
        Log::write(u"mailto: ignored the header %@", {header});

    QStringList explained;
    for (const MailtoAttachment& attachment : options.mailto->attachments) {
        const AttachmentSafety::Verdict verdict =
            attachment.path.isNull()
                ? AttachmentSafety::Verdict{QString(), LocalizedString("not a local file")}
                : AttachmentSafety::check(attachment.path, container);
        if (!verdict.accepted()) {
            Log::write(u"mailto: left out the attachment %@ (%@)",
                       {attachment.given, verdict.reason});
            options.mailtoLeftOut.append(attachment.given);
            explained.append(QStringLiteral("%1 (%2)").arg(attachment.given, verdict.reason));
            continue;
        }
        options.items.append(SharedItem{SharedItem::Kind::File, QUrl::fromLocalFile(verdict.path),
                                        attachment.given});
    }
    if (explained.isEmpty())
        return {};
    const QString list = explained.join(QStringLiteral(", "));
    if (options.headless)
        return LocalizedString("the mailto: URI asks for attachments that are not attached: %1")
            .arg(list);
    err << "velmora-share: " << LocalizedString("not attached: %1").arg(list) << '\n';
    err.flush();
    return {};
}

void MailtoIntake::fill(ExtensionComposerController& composer, const ShareOptions& options) {
    if (!options.mailto)
        return;
    const Mailto& mailto = *options.mailto;
    for (const QString& recipient : mailto.to)
        HeadlessDriver::addRecipient(composer, recipient);
    for (const QString& recipient : mailto.cc)
        HeadlessDriver::addCopyRecipient(composer, ExtensionCopyRecipientsView::Field::Cc,
                                         recipient);
    for (const QString& recipient : mailto.bcc)
        HeadlessDriver::addCopyRecipient(composer, ExtensionCopyRecipientsView::Field::Bcc,
                                         recipient);
    if (!mailto.subject.isNull())
        composer.subjectField()->setText(mailto.subject);
    if (!mailto.body.isNull()) {
        ExtensionContentTextView* body = composer.contentTextView();
        if (body->document()->isEmpty()) {
            body->setPlainText(mailto.body);
        } else {
            QTextCursor start(body->document());
            start.insertText(mailto.body + u'\n', QTextCharFormat());
        }
    }
    if (!options.mailtoLeftOut.isEmpty())
        composer.copyRecipientsView()->setNotice(
            LocalizedString("Not attached: %1").arg(options.mailtoLeftOut.join(u", ")));
}

} // namespace velmora
