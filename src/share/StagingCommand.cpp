#include "share/StagingCommand.h"

#include "bridge/ConstVars.h"
#include "bridge/ExtensionUtilities.h"
#include "directory/ExtensionAccount.h"
#include "directory/ExtensionAddress.h"
#include "platform/HostEnvironment.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTextStream>

namespace velmora {

namespace {

void describeAccounts(QTextStream& out) {
    const auto accounts = ExtensionUtilities::Accounts();
    out << "Accounts: " << accounts.size() << '\n';
    for (const auto& account : accounts) {
        out << "  " << account->mail();
        if (!account->name().isEmpty())
            out << " (" << account->name() << ')';
        out << "  type " << account->type() << (account->enabled() ? "" : ", disabled") << '\n';
        for (const auto& alias : account->aliases())
            out << "    alias " << alias->mail() << '\n';
    }
}

} // namespace

int StagingCommand::run(const QStringList& arguments, QTextStream& out, QTextStream& err) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Stages files and folders for a share into the container shared with the Velmora mail "
        "application, and lists the accounts and contacts it finds there."));
    parser.addPositionalArgument(QStringLiteral("ITEM"),
                                 QStringLiteral("an existing file or folder to share"),
                                 QStringLiteral("[ITEM...]"));
    const QCommandLineOption container(
        QStringLiteral("container"),
        QStringLiteral("the shared container (overrides VELMORA_GROUP_CONTAINER)"),
        QStringLiteral("DIR"));
    const QCommandLineOption bundleId(
        QStringLiteral("bundle-id"),
        QStringLiteral("this program's bundle identifier (overrides VELMORA_BUNDLE_ID)"),
        QStringLiteral("ID"));
    parser.addOption(container);
    parser.addOption(bundleId);
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();

    if (!parser.parse(QStringList{QStringLiteral("velmora-share")} + arguments)) {
        err << "velmora-share: " << parser.errorText() << "\nTry 'velmora-share --help'.\n";
        return UsageError;
    }
    if (parser.isSet(help)) {
        out << parser.helpText();
        return Success;
    }
    if (parser.isSet(version)) {
        out << "velmora-share " << QCoreApplication::applicationVersion() << '\n';
        return Success;
    }

    // Every item is checked before anything is touched.
    QStringList items;
    for (const QString& item : parser.positionalArguments()) {
        const QFileInfo info(item);
        if (!info.exists()) {
            err << "velmora-share: no such file or folder: " << item << '\n';
            return UsageError;
        }
        items.append(info.absoluteFilePath());
    }

    if (parser.isSet(container))
        qputenv("VELMORA_GROUP_CONTAINER", QFile::encodeName(parser.value(container)));
    if (parser.isSet(bundleId))
        qputenv("VELMORA_BUNDLE_ID", parser.value(bundleId).toUtf8());

    const QString data = ExtensionUtilities::GroupDataPath();
    if (data.isNull()) {
        err << "velmora-share: the shared container cannot be created; give one with --container\n";
        return UsageError;
    }
    out << "Bundle identifier: " << HostEnvironment::bundleIdentifier() << '\n';
    out << "Data folder: " << data << '\n';

    const QString service(ConstVars::shareService);
    ExtensionUtilities::ShareInit(service);
    const QStringList staged = ExtensionUtilities::ShareFiles(service, items);
    out << "Staged: " << staged.size() << " of " << items.size() << '\n';
    for (const QString& path : staged)
        out << "  " << path << '\n';

    describeAccounts(out);
    out << "Contacts: " << ExtensionUtilities::AddressesAndGroups().addresses.size()
        << " addresses\n";
    out.flush();
    if (staged.size() < items.size()) {
        err << "velmora-share: " << items.size() - staged.size()
            << " item(s) could not be staged; see the log above\n";
        return SomeNotStaged;
    }
    return Success;
}

} // namespace velmora
