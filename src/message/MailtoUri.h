// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

namespace velmora {

// A file a mailto: URI asks to attach: the value as written (decoded once, as the URI carries
// it), and the local path it names; the path is null when the value names no local file (another
// scheme, a remote host, a relative path).
struct MailtoAttachment {
    QString given;
    QString path;

    friend bool operator==(const MailtoAttachment&, const MailtoAttachment&) = default;
};

// What a mailto: URI asks for. Null subject and body mean "not given"; "" is given and empty.
struct Mailto {
    QStringList to;
    QStringList cc;
    QStringList bcc;
    QString subject;
    QString body; // line breaks as "\n"
    QList<MailtoAttachment> attachments;
    QStringList ignoredHeaders; // lower-cased header names, each once, in order of appearance

    // Adds another URI's fields: recipients and attachments are appended, a second subject
    // follows the first after a space, a second body after a line break.
    void merge(const Mailto& other);

    friend bool operator==(const Mailto&, const Mailto&) = default;
};

// The outcome of reading one URI: the message it asks for, or what makes it malformed.
struct MailtoParse {
    std::optional<Mailto> mailto;
    QString error;
};

// Reads mailto: URIs as RFC 6068 (and the older RFC 2368) write them: addresses in the path
// and in "to", "cc", "bcc" (comma-separated), "subject", "body", and "attach" / "attachment"
// (repeatable). Header names are case-insensitive and repeated headers add up; "+" is a plus,
// never a space. Pure: no file is looked at.
class MailtoUri {
public:
    // Whether text starts with the scheme "mailto:" (in any letter case).
    static bool isMailto(QStringView text);
    static MailtoParse parse(QStringView uri);
    // The local path an attachment value names: a file: URI on no host or "localhost" (its
    // escapes decoded), or an absolute path as it is; null for anything else.
    static QString localPath(const QString& value);
};

} // namespace velmora
