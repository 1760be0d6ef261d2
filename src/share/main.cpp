#include "bridge/ExtensionUtilities.h"
#include "share/CommandLine.h"
#include "share/MailtoIntake.h"
#include "share/ShareInput.h"
#include "share/ShareSession.h"
#include "share/Translations.h"

#include <QApplication>
#include <QFile>
#include <QTextStream>

#include <cstdio>

namespace {

constexpr int kUsageError = velmora::ShareSession::UsageError;

int usageError(QTextStream& err, const QString& message) {
    err << "velmora-share: " << message << "\nTry 'velmora-share --help'.\n";
    return kUsageError;
}

bool hasDisplay() {
    return qEnvironmentVariableIsSet("QT_QPA_PLATFORM") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           !qEnvironmentVariableIsEmpty("DISPLAY");
}

} // namespace

int main(int argc, char** argv) {
    QTextStream out(stdout);
    QTextStream err(stderr);

    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
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
    else if (!hasDisplay())
        return usageError(err, QStringLiteral("there is no display to show the composer on "
                                              "(neither DISPLAY nor WAYLAND_DISPLAY is set); "
                                              "use --headless"));
    if (!options.container.isNull())
        qputenv("VELMORA_GROUP_CONTAINER", QFile::encodeName(options.container));
    if (!options.bundleId.isNull())
        qputenv("VELMORA_BUNDLE_ID", options.bundleId.toUtf8());
    if (velmora::ExtensionUtilities::GroupDataPath().isNull())
        return usageError(err, QStringLiteral("the shared container cannot be created; give "
                                              "one with --container"));
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
            return usageError(err, QStringLiteral("standard input cannot be read"));
        standardInput = input.readAll();
    }
    QList<QByteArray> images;
    for (const QString& path : options.images) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return usageError(err,
                              QStringLiteral("cannot read %1: %2").arg(path, file.errorString()));
        images.append(file.readAll());
        if (!velmora::ShareInput::decodesAsImage(images.last()))
            return usageError(err, QStringLiteral("not an image: %1").arg(path));
    }

    // Qt's own options (-platform, -style ...) are not taken from the command line: every
    // argument there is an item or one of ours.
    int qtArgc = 1;
    QApplication app(qtArgc, argv);
    QApplication::setApplicationName(QStringLiteral("velmora-share"));
    QApplication::setApplicationVersion(QStringLiteral(VELMORA_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("it.zemlo.velmora.share"));
    velmora::installTranslations();

    velmora::ShareSession session(
        options, velmora::ShareInput::inputItems(options, standardInput, images), out, err);
    return session.exec();
}
