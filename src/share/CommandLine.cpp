// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "share/CommandLine.h"

#include "platform/FileNames.h"
#include "platform/LocalizedString.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace velmora {

namespace {

CommandLineResult usage(const QString& error) {
    return {std::nullopt, error};
}

// "scheme:" at the start, as RFC 3986 writes a scheme.
bool looksLikeUrl(const QString& item) {
    static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]*:"));
    return scheme.match(item).hasMatch();
}

// The path a file: URL names. Its percent-encoded bytes need not be UTF-8: they are decoded as a
// file name, losslessly.
QString localFileOf(const QUrl& url) {
    if (!url.host().isEmpty())
        return url.toLocalFile();
    return FileNames::decode(
        QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()));
}

// The absolute form of a path, made by string work alone: QFileInfo::absoluteFilePath goes
// through the path's native bytes and back, which loses a name that is not UTF-8 (FileNames).
QString absolute(const QString& path) {
    return QDir::cleanPath(QDir::current().absoluteFilePath(path));
}

// Paths are checked through FileNames, not QFileInfo: a name that is not UTF-8 can only be found
// by its own bytes.
std::optional<SharedItem> classify(const QString& item, QString* error) {
    if (item == u"-")
        return SharedItem{SharedItem::Kind::StandardInput, QUrl(), item};
    // An existing path wins, even when its name looks like a URL ("notes:draft").
    if (FileNames::exists(item))
        return SharedItem{SharedItem::Kind::File, QUrl::fromLocalFile(absolute(item)), item};
    const QString shown = FileNames::displayable(item);
    if (looksLikeUrl(item)) {
        const QUrl url(item, QUrl::StrictMode);
        if (!url.isValid() || url.scheme().isEmpty()) {
            *error = LocalizedString("not a well-formed URL: %1").arg(shown);
            return std::nullopt;
        }
        if (url.isLocalFile()) {
            const QString local = localFileOf(url);
            if (!FileNames::exists(local)) {
                *error = LocalizedString("no such file or folder: %1").arg(shown);
                return std::nullopt;
            }
            return SharedItem{SharedItem::Kind::File, QUrl::fromLocalFile(absolute(local)), item};
        }
        return SharedItem{SharedItem::Kind::Link, url, item};
    }
    *error = LocalizedString("no such file or folder: %1").arg(shown);
    return std::nullopt;
}

} // namespace

QString CommandLine::helpText() {
    // One option a line, as help2man reads it for the man page (which it makes in English).
    return LocalizedString(
        "Usage: velmora-share [OPTIONS] [ITEM...]\n"
        "Open the Velmora share composer pre-filled with the items; Send hands the message to the\n"
        "Velmora mail application.\n"
        "\n"
        "Items:\n"
        "  FILE              an existing file or folder, attached as a copy\n"
        "  URL               an absolute URL with a scheme, shared as a link (file: URLs are "
        "files)\n"
        "  mailto:...        a mail link, read as a message to compose: recipients, subject, "
        "body,\n"
        "                    and attachments checked as docs/mailto.md describes\n"
        "  -                 standard input: image data when it decodes as an image, else text\n"
        "\n"
        "Options:\n"
        "  --title TEXT      the share's title (a shared web link makes it the subject)\n"
        "  --text TEXT       rich text shared with the items (HTML, or plain text)\n"
        "  --image FILE      share FILE's bytes as image data (staged as PNG); repeatable\n"
        "  --container DIR   the shared container (overrides VELMORA_GROUP_CONTAINER)\n"
        "  --bundle-id ID    this program's bundle identifier (overrides VELMORA_BUNDLE_ID)\n"
        "  --headless        no window: fill the composer from the options below, then send\n"
        "  --from ADDR       choose the From item titled ADDR (headless)\n"
        "  --to ADDR         add a recipient as a user would; repeatable (headless)\n"
        "  --cc ADDR         add a Cc recipient; repeatable (headless)\n"
        "  --bcc ADDR        add a Bcc recipient; repeatable (headless)\n"
        "  --subject TEXT    the subject (headless)\n"
        "  --body TEXT       the body's text, replacing what the share put there (headless)\n"
        "  --cancel          cancel instead of sending (headless)\n"
        "  --print-url       print every command URL on standard output instead of opening it\n"
        "  --screenshot FILE write a PNG of the composer once the shared items are taken in\n"
        "  -h, --help        show this help and exit\n"
        "  --version         show the version and exit\n"
        "\n"
        "Exit status:\n"
        "  0  sent, with every item given attached\n"
        "  1  cancelled (Cancel, --cancel, or the window closed)\n"
        "  2  bad usage, or no display to open the window on (said on standard error)\n"
        "  3  headless: the message is complete, but the mail application could not be launched\n"
        "  4  sent, but some items could not be attached (each named on standard error)\n");
}

CommandLineResult CommandLine::parse(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const auto value = [&](const char* name, const char* valueName) {
        QCommandLineOption option(QString::fromLatin1(name));
        option.setValueName(QString::fromLatin1(valueName));
        parser.addOption(option);
        return option;
    };
    const auto flag = [&](QStringList names) {
        QCommandLineOption option(names);
        parser.addOption(option);
        return option;
    };
    const QCommandLineOption title = value("title", "TEXT");
    const QCommandLineOption text = value("text", "TEXT");
    const QCommandLineOption image = value("image", "FILE");
    const QCommandLineOption container = value("container", "DIR");
    const QCommandLineOption bundleId = value("bundle-id", "ID");
    const QCommandLineOption headless = flag({QStringLiteral("headless")});
    const QCommandLineOption from = value("from", "ADDR");
    const QCommandLineOption to = value("to", "ADDR");
    const QCommandLineOption cc = value("cc", "ADDR");
    const QCommandLineOption bcc = value("bcc", "ADDR");
    const QCommandLineOption subject = value("subject", "TEXT");
    const QCommandLineOption body = value("body", "TEXT");
    const QCommandLineOption cancel = flag({QStringLiteral("cancel")});
    const QCommandLineOption printUrl = flag({QStringLiteral("print-url")});
    const QCommandLineOption screenshot = value("screenshot", "FILE");
    const QCommandLineOption help = flag({QStringLiteral("h"), QStringLiteral("help")});
    const QCommandLineOption version = flag({QStringLiteral("version")});

    if (!parser.parse(QStringList{QStringLiteral("velmora-share")} + arguments))
        return usage(parser.errorText());

    ShareOptions options;
    options.help = parser.isSet(help);
    options.version = parser.isSet(version);
    if (options.help || options.version)
        return {options, {}};

    // Options that may be given once: a second one would silently win otherwise.
    for (const QCommandLineOption* single :
         {&title, &text, &container, &bundleId, &from, &subject, &body, &screenshot}) {
        if (parser.values(*single).size() > 1)
            return usage(
                LocalizedString("--%1 given more than once").arg(single->names().constFirst()));
    }

    options.headless = parser.isSet(headless);
    for (const QCommandLineOption* headlessOnly :
         {&from, &to, &cc, &bcc, &subject, &body, &cancel}) {
        if (parser.isSet(*headlessOnly) && !options.headless)
            return usage(
                LocalizedString("--%1 needs --headless").arg(headlessOnly->names().constFirst()));
    }

    bool standardInput = false;
    for (const QString& argument : parser.positionalArguments()) {
        // A mailto: URI is a message to compose, not a link to share.
        if (MailtoUri::isMailto(argument)) {
            const MailtoParse mailto = MailtoUri::parse(argument);
            if (!mailto.mailto)
                return usage(mailto.error);
            if (options.mailto)
                options.mailto->merge(*mailto.mailto);
            else
                options.mailto = mailto.mailto;
            continue;
        }
        QString error;
        const std::optional<SharedItem> item = classify(argument, &error);
        if (!item)
            return usage(error);
        if (item->kind == SharedItem::Kind::StandardInput) {
            if (standardInput)
                return usage(LocalizedString("standard input ('-') can be shared only once"));
            standardInput = true;
        }
        options.items.append(*item);
    }
    for (const QString& file : parser.values(image)) {
        if (!FileNames::isRegularFile(file))
            return usage(
                LocalizedString("no such image file: %1").arg(FileNames::displayable(file)));
        options.images.append(absolute(file));
    }

    // Arguments come decoded as file names (FileNames); in a text, a byte that is not UTF-8
    // stands for nothing and shows as U+FFFD.
    const auto textOf = [&](const QCommandLineOption& option) {
        return FileNames::displayable(parser.value(option));
    };
    if (parser.isSet(title))
        options.title = textOf(title);
    if (parser.isSet(text))
        options.text = textOf(text);
    if (parser.isSet(container))
        options.container = parser.value(container);
    if (parser.isSet(bundleId))
        options.bundleId = textOf(bundleId);
    if (parser.isSet(from))
        options.from = textOf(from);
    for (const QString& recipient : parser.values(to))
        options.to.append(FileNames::displayable(recipient));
    for (const QString& recipient : parser.values(cc))
        options.cc.append(FileNames::displayable(recipient));
    for (const QString& recipient : parser.values(bcc))
        options.bcc.append(FileNames::displayable(recipient));
    if (parser.isSet(subject))
        options.subject = textOf(subject);
    if (parser.isSet(body))
        options.body = textOf(body);
    options.cancel = parser.isSet(cancel);
    options.printUrl = parser.isSet(printUrl);
    if (parser.isSet(screenshot))
        options.screenshot = QFileInfo(parser.value(screenshot)).absoluteFilePath();
    return {options, {}};
}

} // namespace velmora
