// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/PropertyList.h"

#include "platform/Log.h"
#include "platform/PropertyListPrivate.h"
#include "platform/RegularFile.h"

#include <QVariantMap>

#include <cerrno>
#include <optional>

namespace velmora {

namespace plist {

void checkInputSize(qsizetype size, const PropertyList::Limits& limits) {
    if (size > limits.maxInputBytes)
        throw Malformed{QStringLiteral("the input is %1 bytes, above the limit of %2 bytes")
                            .arg(size)
                            .arg(limits.maxInputBytes)};
}

void TreeVisitor::dictionary(std::span<const PropertyListEntry> entries) {
    QVariantMap map;
    for (const PropertyListEntry& e : entries)
        map.insert(map.cend(), *e.key, *e.value);
    m_visit(map);
}

} // namespace plist

QVariant PropertyList::fromData(const QByteArray& data, QString* error, const Limits& limits) {
    if (data.startsWith("bplist00"))
        return fromBinary(data, error, limits);
    return fromXml(data, error, limits);
}

namespace {

// The file's bytes, or nothing when it is missing, unreadable or over the size limit. A named
// pipe or a device in the file's place is refused without waiting and logged: the main
// application never writes one, and reading it would hold the file's lock forever.
std::optional<QByteArray> readBounded(const QString& path, const PropertyList::Limits& limits) {
    RegularFile::Result read = RegularFile::read(path, limits.maxInputBytes);
    if (const Error* error = std::get_if<Error>(&read)) {
        if (error->code == EINVAL)
            Log::error(u"[%@] arrayWithContentsOfFile %@", error->text());
        return std::nullopt;
    }
    return std::move(std::get<QByteArray>(read));
}

} // namespace

bool PropertyList::forEachArrayElementInFile(const QString& path,
                                             PropertyListElementVisitor& visitor,
                                             const Limits& limits) {
    std::optional<QByteArray> data = readBounded(path, limits);
    if (!data)
        return false;
    try {
        if (data->startsWith("bplist00"))
            plist::forEachBinaryArrayElement(*data, limits, visitor);
        else
            plist::forEachXmlArrayElement(std::move(*data), limits, visitor);
        return true;
    } catch (const plist::Malformed&) {
        return false;
    }
}

bool PropertyList::forEachArrayElementInFile(const QString& path,
                                             const std::function<void(const QVariant&)>& visit,
                                             const Limits& limits) {
    plist::TreeVisitor visitor(visit);
    return forEachArrayElementInFile(path, visitor, limits);
}

QVariant PropertyList::arrayWithContentsOfFile(const QString& path, const Limits& limits) {
    QVariantList elements;
    if (!forEachArrayElementInFile(
            path, [&](const QVariant& e) { elements.append(e); }, limits))
        return {};
    return elements;
}

} // namespace velmora
