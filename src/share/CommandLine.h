// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "message/MailtoUri.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>

namespace velmora {

// One ITEM of the command line, as the share will carry it.
struct SharedItem {
    enum class Kind {
        File,          // an existing file or folder, shared as its file URL
        Link,          // an absolute URL with a scheme other than file:
        StandardInput, // "-": image data when it decodes as an image, rich text otherwise
    };
    Kind kind = Kind::File;
    QUrl url;      // the file URL or the link; empty for standard input
    QString given; // the argument as typed, for messages

    friend bool operator==(const SharedItem&, const SharedItem&) = default;
};

// Everything the command line asks for.
struct ShareOptions {
    QList<SharedItem> items;
    QString title;      // --title: null when not given
    QString text;       // --text: null when not given
    QStringList images; // --image, absolute paths, in order
    QString container;  // --container: null when not given
    QString bundleId;   // --bundle-id: null when not given
    bool headless = false;
    QString from;                   // --from (headless)
    QStringList to;                 // --to, in order (headless)
    QStringList cc;                 // --cc, in order (headless)
    QStringList bcc;                // --bcc, in order (headless)
    std::optional<QString> subject; // --subject (headless); "" is a subject too
    std::optional<QString> body;    // --body (headless)
    bool cancel = false;            // --cancel (headless)
    bool printUrl = false;
    QString screenshot; // --screenshot: null when not given
    // What the mailto: ITEMs ask for, merged in order; none when there was no such item.
    std::optional<Mailto> mailto;
    QStringList mailtoLeftOut; // its attachments that were left out, as they were asked for
    bool help = false;
    bool version = false;
};

// The outcome of reading the command line: options, or a usage error that names what is wrong.
struct CommandLineResult {
    std::optional<ShareOptions> options;
    QString error;
};

// Reads and checks velmora-share's command line before anything is staged: every item must be
// an existing file or folder, a well-formed absolute URL, or "-" (once); --image files must
// exist; the options that drive a headless run need --headless.
class CommandLine {
public:
    static CommandLineResult parse(const QStringList& arguments);
    static QString helpText();
};

} // namespace velmora
