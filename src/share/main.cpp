// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "bridge/ExtensionUtilities.h"
#include "platform/FileNames.h"
#include "platform/LocalizedString.h"
#include "platform/RegularFile.h"
#include "share/CommandLine.h"
#include "share/DisplayCheck.h"
#include "share/MailtoIntake.h"
#include "share/ShareInput.h"
#include "share/ShareSession.h"
#include "share/Translations.h"

#include <QApplication>
#include <QCoreApplication>
#include <QFile>
#include <QIcon>
#include <QTextStream>

#include <cstdio>
#include <optional>

namespace {

constexpr int kUsageError = velmora::ShareSession::UsageError;
// An --image file larger than this is refused unread.
constexpr qint64 kMaxImageFileBytes = qint64(1) << 30;

int usageError(QTextStream& err, const QString& message) {
    err << "velmora-share: " << message << '\n'
        << velmora::LocalizedString("Try 'velmora-share --help'.") << '\n';
    return kUsageError;
}

} // namespace

int main(int argc, char** argv) {
    QTextStream out(stdout);
    QTextStream err(stderr);

    // The command line's own messages are in the user's language too. Translations need an
    // application object, and the window's must wait until the display has been checked, so a
    // plain one serves until then.
    int earlyArgc = 1;
    std::optional<QCoreApplication> early(std::in_place, earlyArgc, argv);
    velmora::installTranslations();

    // Arguments are bytes: decoded as file names, so that an item whose name is not UTF-8 still
    // names its file.
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(velmora::FileNames::decode(argv[i]));
    const velmora::CommandLineResult parsed = velmora::CommandLine::parse(arguments);
    if (!parsed.options)
        return usageError(err, parsed.error);
    velmora::ShareOptions options = *parsed.options;
    if (options.help) {
        out << velmora::CommandLine::helpText();
        return 0;
    }
    if (options.version) {
        out << "velmora-share " << VELMORA_VERSION << '\n';
        return 0;
    }

    // For tests only: a run started by another program (xdg-email, a portal) goes headless.
    if (qEnvironmentVariableIntValue("VELMORA_SHARE_TEST_HEADLESS") == 1)
        options.headless = true;
    if (options.headless)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    else if (const QString problem = velmora::DisplayCheck::problem(); !problem.isNull())
        return usageError(
            err, velmora::LocalizedString("there is no display to show the composer on (%1); "
                                          "use --headless")
                     .arg(problem));
    if (!options.container.isNull())
        qputenv("VELMORA_GROUP_CONTAINER", velmora::FileNames::encode(options.container));
    if (!options.bundleId.isNull())
        qputenv("VELMORA_BUNDLE_ID", options.bundleId.toUtf8());
    if (velmora::ExtensionUtilities::GroupDataPath().isNull())
        return usageError(
            err, velmora::LocalizedString("the shared container cannot be created; give one with "
                                          "--container"));
    if (const QString refused = velmora::MailtoIntake::admitAttachments(
            options, velmora::ExtensionUtilities::GroupPath(), err);
        !refused.isNull())
        return usageError(err, refused);

    // Everything is read before the composer starts, so that a file that cannot be read is a
    // usage error rather than a missing attachment.
    QByteArray standardInput;
    for (const velmora::SharedItem& item : options.items) {
        if (item.kind != velmora::SharedItem::Kind::StandardInput)
            continue;
        QFile input;
        if (!input.open(stdin, QIODevice::ReadOnly))
            return usageError(err, velmora::LocalizedString("standard input cannot be read"));
        standardInput = input.readAll();
        // Image data that does not decode is refused: read as text it would be binary junk.
        if (const std::optional<QString> why = velmora::ShareInput::undecodableImage(standardInput))
            return usageError(
                err, velmora::LocalizedString("standard input cannot be shared: %1").arg(*why));
    }
    QList<QByteArray> images;
    for (const QString& path : options.images) {
        const QString shown = velmora::FileNames::displayable(path);
        velmora::RegularFile::Result read = velmora::RegularFile::read(path, kMaxImageFileBytes);
        if (const velmora::Error* error = std::get_if<velmora::Error>(&read))
            return usageError(err, error->text());
        images.append(std::get<QByteArray>(std::move(read)));
        if (!velmora::ShareInput::decodesAsImage(images.last()))
            return usageError(err, velmora::LocalizedString("not an image: %1").arg(shown));
    }

    // Qt's own options (-platform, -style ...) are not taken from the command line: every
    // argument there is an item or one of ours.
    int qtArgc = 1;
    early.reset();
    std::optional<QApplication> app;
    {
        // Should the platform still fail to start, Qt's fatal message becomes a usage error.
        const velmora::DisplayCheck::FatalAsUsageError fatalAsUsageError;
        app.emplace(qtArgc, argv);
    }
    QApplication::setApplicationName(QStringLiteral("velmora-share"));
    QApplication::setApplicationVersion(QStringLiteral(VELMORA_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("it.zemlo.velmora.share"));
    // The icon theme's, else the icons built into the program. Given with their sizes, the files
    // are read only when a size is drawn, not before the window first appears.
    QIcon builtIn;
    for (const int size : {16, 24, 32, 48, 64, 128, 256})
        builtIn.addFile(QStringLiteral(":/icons/%1/it.zemlo.velmora.share.png").arg(size),
                        QSize(size, size));
    QApplication::setWindowIcon(
        QIcon::fromTheme(QStringLiteral("it.zemlo.velmora.share"), builtIn));
    velmora::installTranslations();

    velmora::ShareSession session(
        options, velmora::ShareInput::inputItems(options, standardInput, images), out, err);
    return session.exec();
}
