#include "platform/PropertyList.h"

#include "platform/PropertyListPrivate.h"

#include <QFile>

namespace velmora {

namespace plist {

void checkInputSize(qsizetype size, const PropertyList::Limits& limits) {
    if (size > limits.maxInputBytes)
        throw Malformed{QStringLiteral("the input is %1 bytes, above the limit of %2 bytes")
                            .arg(size)
                            .arg(limits.maxInputBytes)};
}

} // namespace plist

QVariant PropertyList::fromData(const QByteArray& data, QString* error, const Limits& limits) {
    if (data.startsWith("bplist00"))
        return fromBinary(data, error, limits);
    return fromXml(data, error, limits);
}

QVariant PropertyList::arrayWithContentsOfFile(const QString& path, const Limits& limits) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QByteArray data;
    if (!file.isSequential()) {
        if (file.size() > limits.maxInputBytes)
            return {};
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
    if (data.size() > limits.maxInputBytes)
        return {};
    QVariant root = fromData(data, nullptr, limits);
    if (root.typeId() != QMetaType::QVariantList)
        return {};
    return root;
}

} // namespace velmora
