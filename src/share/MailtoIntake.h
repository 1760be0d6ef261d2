// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "share/CommandLine.h"

#include <QString>
#include <QStringList>

class QTextStream;

namespace velmora {

class ExtensionComposerController;

// Brings what mailto: ITEMs ask for into a share: their attachments join the shared files once
// they pass AttachmentSafety, and the recipients, subject and body are filled into the composer
// as a user would have entered them. Nothing here sends.
class MailtoIntake {
public:
    // Checks options.mailto's attachments against the shared container's root: those that
    // pass are added to options.items as files; the others are logged, said on err and kept in
    // options.mailtoLeftOut. Headless, where no one would see the notice, a left-out attachment
    // is a usage error instead: the message that names them is returned (null otherwise). Also
    // logs, once each, the headers that were ignored.
    static QString admitAttachments(ShareOptions& options, const QString& container,
                                    QTextStream& err);

    // Fills a composer whose shared message has been taken in: To addresses become tokens
    // (known contacts as contact tokens), Cc and Bcc go to the composer's row, the subject
    // replaces the field's text, the body goes before what the share put there, and the
    // attachments that were left out are named in a notice.
    static void fill(ExtensionComposerController& composer, const ShareOptions& options);
};

} // namespace velmora
