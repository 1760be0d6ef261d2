#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>

namespace velmora {

class ExtensionAccount;
class ExtensionAddress;
class ExtensionGroup;

// The contacts as the main application keeps them: addresses, and groups of addresses.
struct AddressesAndGroupsResult {
    QList<std::shared_ptr<ExtensionAddress>> addresses;
    QList<std::shared_ptr<ExtensionGroup>> groups;
};

// The bridge to the main application: where the shared container is, the staging folder of a
// share, and the directory files the main application writes. Stateless: every call asks afresh.
class ExtensionUtilities {
public:
    ExtensionUtilities() = delete;

    // "SharedDataBeta" for a beta build's bundle identifier, else "SharedData".
    static QString GroupFolderName();
    // The shared container's root; null when there is none.
    static QString GroupPath();
    // The data folder inside the container; null when there is no container.
    static QString GroupDataPath();

    // Empties the staging folder of service (deletes it and creates it again).
    static void ShareInit(const QString& service);
    // Copies files and folders into the staging folder under collision-free names; returns the
    // staged paths of those that were copied, in input order.
    static QStringList ShareFiles(const QString& service, const QStringList& paths);
    // Writes each buffer as "image.png" (or image_1.png ...) into the staging folder.
    static QStringList ShareDatas(const QString& service, const QList<QByteArray>& datas);

    // The accounts of Accounts.plist, in file order; empty when there is no such file.
    static QList<std::shared_ptr<ExtensionAccount>> Accounts();
    // The contacts of the Contacts folder. The groups list is always empty: the main
    // application does not offer groups to the share composer yet.
    static AddressesAndGroupsResult AddressesAndGroups();
};

} // namespace velmora
