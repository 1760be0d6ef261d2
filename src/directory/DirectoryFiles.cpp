#include "bridge/ExtensionUtilities.h"
#include "bridge/FileStaging.h"
#include "directory/ExtensionAccount.h"
#include "directory/ExtensionAddress.h"
#include "platform/FileCoordinator.h"
#include "platform/Log.h"
#include "platform/PropertyList.h"

#include <QFileInfo>

namespace velmora {

namespace {

// A path inside the data folder; null when there is no container, which the file coordinator
// then reports as its error.
QString dataPath(const QString& relative)
{
    const QString data = ExtensionUtilities::GroupDataPath();
    return data.isNull() ? QString() : data + u'/' + relative;
}

} // namespace

QList<std::shared_ptr<ExtensionAccount>> ExtensionUtilities::Accounts()
{
    QVariant array;
    const auto coordinationError = FileCoordinator::coordinateWritingItemAtPath(
        dataPath(QStringLiteral("Accounts.plist")),
        [&](const QString& path) { array = PropertyList::arrayWithContentsOfFile(path); });
    if (coordinationError)
        Log::error(u"[%@] NSFileCoordinator Accounts %@", coordinationError->text());

    QList<std::shared_ptr<ExtensionAccount>> accounts;
    const QVariantList elements = array.toList();
    accounts.reserve(elements.size());
    for (const QVariant& element : elements)
        accounts.append(ExtensionAccount::initWithDictonary(element));
    return accounts;
}

AddressesAndGroupsResult ExtensionUtilities::AddressesAndGroups()
{
    QVariant addressList;
    QVariant groupList;
    const auto coordinationError = FileCoordinator::coordinateWritingItemAtPath(
        dataPath(QStringLiteral("Contacts")), [&](const QString& folder) {
            if (!QFileInfo::exists(folder)) {
                if (const auto error = FileStaging::createFolder(folder)) {
                    Log::error(u"[%@] AddressesAndGroups %@", error->text());
                    return;
                }
            }
            addressList = PropertyList::arrayWithContentsOfFile(folder + QStringLiteral("/Addresses.plist"));
            groupList = PropertyList::arrayWithContentsOfFile(folder + QStringLiteral("/Groups.plist"));
        });
    if (coordinationError)
        Log::error(u"[%@] NSFileCoordinator AddressesAndGroups %@", coordinationError->text());

    AddressesAndGroupsResult result;
    const QVariantList addresses = addressList.toList();
    result.addresses.reserve(addresses.size());
    for (const QVariant& element : addresses)
        result.addresses.append(ExtensionAddress::initWithDictonary(element));
    // The groups file is read but not offered: the main application keeps groups out of the
    // share composer's suggestions, so the list stays empty. ExtensionGroup still reads a group
    // dictionary completely for the day it is offered.
    Q_UNUSED(groupList);
    return result;
}

} // namespace velmora
