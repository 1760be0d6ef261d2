#include "platform/PropertyList.h"

#include "platform/PropertyListPrivate.h"

#include <QFile>
#include <QVariantMap>

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

// The file's bytes, or nothing when it cannot be read or is over the size limit.
std::optional<QByteArray> readBounded(const QString& path, const PropertyList::Limits& limits) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray data;
    if (!file.isSequential()) {
        if (file.size() > limits.maxInputBytes)
            return std::nullopt;
        data = file.readAll();
    } else {
        // A pipe or a device has no size to check first: read in chunks until past the limit.
        while (data.size() <= limits.maxInputBytes) {
            const QByteArray chunk = file.read(64 * 1024);
            if (chunk.isEmpty())
                break;
            data += chunk;
        }
    }
    if (data.size() > limits.maxInputBytes || file.error() != QFileDevice::NoError)
        return std::nullopt;
    return data;
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
