// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Error.h"
#include "request/UrlText.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace velmora {

class ExtensionAccount;
class ExtensionAddress;
class ExtensionContext;
class ExtensionGroup;
class ExtensionMessage;

// The contacts as the main application keeps them: addresses, and groups of addresses.
struct AddressesAndGroupsResult {
    QList<std::shared_ptr<ExtensionAddress>> addresses;
    QList<std::shared_ptr<ExtensionGroup>> groups;
};

// The bridge to the main application: where the shared container is, the staging folder of a
// share, the intake of shared items, the directory files the main application writes, and the
// commands sent to it. Stateless: every call asks afresh.
class ExtensionUtilities {
public:
    ExtensionUtilities() = delete;

    // "SharedDataBeta" for a beta build's bundle identifier, else "SharedData".
    static QString GroupFolderName();
    // The shared container's root; null when there is none.
    static QString GroupPath();
    // The data folder inside the container; null when there is no container.
    static QString GroupDataPath();

    // Starts a share in the staging folder of service: removes what no share needs any more
    // (folders of shares that ended longer than the grace period ago and that nobody holds) and
    // makes this share's own folder in it, which lives as long as the process (ShareFolder).
    static void ShareInit(const QString& service);
    // Told, on the staging thread, how the staging of each input goes: bytes copied of the
    // input at index (total -1 when unknown), and each input or folder entry left out, with the
    // reason.
    struct StagingObserver {
        std::function<void(qsizetype index, qint64 done, qint64 total)> progress;
        std::function<void(const QString& name, const QString& reason)> leftOut;
    };
    // Copies files and folders into this share's own folder of the staging folder under
    // collision-free names; returns the staged paths of those that were copied, in input order. A folder is staged with the
    // entries that could be copied; the others are logged and told to the observer.
    static QStringList ShareFiles(const QString& service, const QStringList& paths,
                                  const StagingObserver& observer = {});
    // Writes each buffer as "image.png" (or image_1.png ...) into this share's own folder.
    static QStringList ShareDatas(const QString& service, const QList<QByteArray>& datas,
                                  const StagingObserver& observer = {});

    // Receives the message made from the shared items; the error is always null.
    using MessageCompletion = std::function<void(const std::shared_ptr<ExtensionMessage>& message,
                                                 const std::optional<Error>& error)>;
    // How the intake waits between two looks at its providers.
    using Sleep = std::function<void(std::chrono::duration<double> interval)>;

    // Makes a new message from the context's input items on a background thread and returns
    // at once: rich text becomes HTML body text, a web link an anchor in the body (its item's
    // title the subject), a file a staged copy and an image a staged PNG, each staged path an
    // attachment. Waits about 0.1 s at a time until every provider has answered, for at most
    // 101 waits, then calls completion once on that thread; later answers still change the
    // message. The context's staging status tells meanwhile which items are still on their
    // way (and how far their copies are) and which were left out, and why. sleep replaces the
    // real wait (for tests).
    static void GetItemForExtension(const std::shared_ptr<ExtensionContext>& context,
                                    const QString& service, MessageCompletion completion,
                                    Sleep sleep = {});

    // The bundle identifier of the main application's build that receives this program's
    // commands, chosen by this program's own bundle identifier.
    static QString TargetApplication();
    // Opens the URLs with the main application in one launch (see docs/main-application.md):
    // without bringing it to the front when background is set. False for an empty list or when
    // the application cannot be launched.
    static bool LaunchCommands(const QList<UrlText>& urls, bool background);
    // Sends command for each message as "velmora://<command>?mail=...&messageid=...&
    // folderstandardid=...", posting "ACTION_CALLED_EXTENSION" for each; a message whose URL
    // does not parse is left out. The result of LaunchCommands.
    static bool LaunchCommandForMessages(const QList<std::shared_ptr<ExtensionMessage>>& messages,
                                         const QString& command, bool background);

    // The accounts of Accounts.plist, in file order; empty when there is no such file.
    static QList<std::shared_ptr<ExtensionAccount>> Accounts();
    // The contacts of the Contacts folder. The groups list is always empty: the main
    // application does not offer groups to the share composer yet.
    static AddressesAndGroupsResult AddressesAndGroups();
};

} // namespace velmora
