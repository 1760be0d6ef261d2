// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "message/MailtoUri.h"

#include "platform/LocalizedString.h"
#include "request/RequestUtils.h"

#include <QUrl>

namespace velmora {

namespace {

constexpr QStringView kScheme = u"mailto:";

void appendText(QString& into, const QString& added, QStringView separator) {
    if (added.isNull())
        return;
    if (into.isNull())
        into = added;
    else
        into += separator.toString() + added;
}

// One percent-decoded piece; null when an escape is malformed or the bytes are not UTF-8.
QString decoded(QStringView piece) {
    return RequestUtils::URLDecodedString(piece, false);
}

// Addresses separated by commas, each decoded on its own so that an escaped comma stays inside
// its address; blanks around them and empty pieces are dropped.
bool appendAddresses(QStringList& into, QStringView text, QString* bad) {
    for (const QStringView piece : text.split(u',')) {
        const QString address = decoded(piece);
        if (address.isNull()) {
            *bad = piece.toString();
            return false;
        }
        const QString trimmed = address.trimmed();
        if (!trimmed.isEmpty())
            into.append(trimmed);
    }
    return true;
}

QString normalisedLineBreaks(QString text) {
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(u'\r', u'\n');
    return text;
}

} // namespace

void Mailto::merge(const Mailto& other) {
    to += other.to;
    cc += other.cc;
    bcc += other.bcc;
    appendText(subject, other.subject, u" ");
    appendText(body, other.body, u"\n");
    attachments += other.attachments;
    for (const QString& name : other.ignoredHeaders) {
        if (!ignoredHeaders.contains(name))
            ignoredHeaders.append(name);
    }
}

bool MailtoUri::isMailto(QStringView text) {
    return text.startsWith(kScheme, Qt::CaseInsensitive);
}

QString MailtoUri::localPath(const QString& value) {
    if (value.startsWith(u'/'))
        return value;
    if (!value.startsWith(u"file:", Qt::CaseInsensitive))
        return {};
    // Tolerant: a file URI written without its escapes ("file:///tmp/a b.pdf") still reads.
    const QUrl url(value, QUrl::TolerantMode);
    const QString host = url.host();
    if (!url.isValid() || !url.isLocalFile() ||
        !(host.isEmpty() || host.compare(u"localhost", Qt::CaseInsensitive) == 0))
        return {};
    const QString path = url.toLocalFile();
    return path.startsWith(u'/') ? path : QString();
}

MailtoParse MailtoUri::parse(QStringView uri) {
    if (!isMailto(uri))
        return {std::nullopt, LocalizedString("not a mailto: URI: %1").arg(uri)};
    const auto malformed = [&](const QString& what) {
        return MailtoParse{std::nullopt,
                           LocalizedString("malformed mailto: URI (%1): %2").arg(what, uri)};
    };

    QStringView rest = uri.mid(kScheme.size());
    // Some programs write "mailto://address", as if the address were a host.
    if (rest.startsWith(u"//"))
        rest = rest.mid(2);
    const qsizetype question = rest.indexOf(u'?');
    const QStringView path = question < 0 ? rest : rest.first(question);
    const QStringView query = question < 0 ? QStringView() : rest.mid(question + 1);

    Mailto mailto;
    QString bad;
    if (!appendAddresses(mailto.to, path, &bad))
        return malformed(LocalizedString("bad escape or not UTF-8 in \"%1\"").arg(bad));

    for (const QStringView field : query.split(u'&')) {
        if (field.isEmpty())
            continue;
        const qsizetype equals = field.indexOf(u'=');
        const QStringView rawName = equals < 0 ? field : field.first(equals);
        const QStringView rawValue = equals < 0 ? QStringView() : field.mid(equals + 1);
        const QString name = decoded(rawName).toLower();
        if (name.isNull() && !rawName.isEmpty())
            return malformed(LocalizedString("bad escape or not UTF-8 in \"%1\"").arg(rawName));

        bool ok = true;
        if (name == u"to") {
            ok = appendAddresses(mailto.to, rawValue, &bad);
        } else if (name == u"cc") {
            ok = appendAddresses(mailto.cc, rawValue, &bad);
        } else if (name == u"bcc") {
            ok = appendAddresses(mailto.bcc, rawValue, &bad);
        } else {
            const QString value = rawValue.isNull() ? QStringLiteral("") : decoded(rawValue);
            if (value.isNull()) {
                ok = false;
                bad = rawValue.toString();
            } else if (name == u"subject") {
                appendText(mailto.subject, normalisedLineBreaks(value).replace(u'\n', u' '), u" ");
            } else if (name == u"body") {
                appendText(mailto.body, normalisedLineBreaks(value), u"\n");
            } else if (name == u"attach" || name == u"attachment") {
                if (!value.isEmpty())
                    mailto.attachments.append({value, localPath(value)});
            } else if (!mailto.ignoredHeaders.contains(name)) {
                mailto.ignoredHeaders.append(name);
            }
        }
        if (!ok)
            return malformed(LocalizedString("bad escape or not UTF-8 in \"%1\"").arg(bad));
    }
    return {mailto, {}};
}

} // namespace velmora
