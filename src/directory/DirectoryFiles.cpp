// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

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
QString dataPath(const QString& relative) {
    const QString data = ExtensionUtilities::GroupDataPath();
    return data.isNull() ? QString() : data + u'/' + relative;
}

// The records of a file's root array, made element by element so that the file's tree is never
// held whole; none when the file does not read as an array.
template <typename Record> QList<std::shared_ptr<Record>> recordsOfArrayFile(const QString& path) {
    QList<std::shared_ptr<Record>> records;
    const bool read = PropertyList::forEachArrayElementInFile(
        path, [&](const QVariant& element) { records.append(Record::initWithDictonary(element)); });
    if (!read)
        records.clear();
    return records;
}

// The contacts book's records, each address dictionary read from its entries as the reader
// meets them, without a QVariantMap in between.
class AddressCollector final : public PropertyListElementVisitor {
public:
    void dictionary(std::span<const PropertyListEntry> entries) override {
        addresses.append(ExtensionAddress::initWithDictonary(entries));
    }
    void value(const QVariant& element) override {
        addresses.append(ExtensionAddress::initWithDictonary(element));
    }

    QList<std::shared_ptr<ExtensionAddress>> addresses;
};

QList<std::shared_ptr<ExtensionAddress>> addressesOfFile(const QString& path) {
    AddressCollector collector;
    if (!PropertyList::forEachArrayElementInFile(path, collector))
        return {};
    return std::move(collector.addresses);
}

// Reads a file's elements and drops them.
class Discarder final : public PropertyListElementVisitor {
public:
    void dictionary(std::span<const PropertyListEntry>) override {}
    void value(const QVariant&) override {}
};

} // namespace

QList<std::shared_ptr<ExtensionAccount>> ExtensionUtilities::Accounts() {
    QList<std::shared_ptr<ExtensionAccount>> accounts;
    const auto coordinationError = FileCoordinator::coordinateWritingItemAtPath(
        dataPath(QStringLiteral("Accounts.plist")),
        [&](const QString& path) { accounts = recordsOfArrayFile<ExtensionAccount>(path); });
    if (coordinationError)
        Log::error(u"[%@] NSFileCoordinator Accounts %@", coordinationError->text());
    return accounts;
}

AddressesAndGroupsResult ExtensionUtilities::AddressesAndGroups() {
    AddressesAndGroupsResult result;
    const auto coordinationError = FileCoordinator::coordinateWritingItemAtPath(
        dataPath(QStringLiteral("Contacts")), [&](const QString& folder) {
            if (!QFileInfo::exists(folder)) {
                if (const auto error = FileStaging::createFolder(folder)) {
                    Log::error(u"[%@] AddressesAndGroups %@", error->text());
                    return;
                }
            }
            result.addresses = addressesOfFile(folder + QStringLiteral("/Addresses.plist"));
            // The groups file is read but not offered: the main application keeps groups out
            // of the share composer's suggestions, so the list stays empty. ExtensionGroup still
            // reads a group dictionary completely for the day it is offered.
            Discarder discarder;
            PropertyList::forEachArrayElementInFile(folder + QStringLiteral("/Groups.plist"),
                                                    discarder);
        });
    if (coordinationError)
        Log::error(u"[%@] NSFileCoordinator AddressesAndGroups %@", coordinationError->text());
    return result;
}

} // namespace velmora
