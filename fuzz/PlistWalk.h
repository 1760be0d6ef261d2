#pragma once

#include "platform/PropertyList.h"

#include <QDateTime>
#include <QVariantList>
#include <QVariantMap>

#include <cstdlib>

namespace velmora::fuzz {

// What every parsed tree must satisfy: each value is one of the kinds the reader promises,
// containers nest no deeper than the limit, and every scalar can be read. Shared references
// can make a small file a tree of 2^40 nodes, so the walk stops after a fixed number of visits.
class PlistWalk {
public:
    explicit PlistWalk(const PropertyList::Limits& limits)
        : m_limits(limits) {}

    void walk(const QVariant& value, int depth = 1) {
        if (++m_visits > kMaxVisits)
            return;
        if (depth > m_limits.maxDepth)
            std::abort();
        switch (value.typeId()) {
        case QMetaType::QVariantList:
            for (const QVariant& item : value.toList())
                walk(item, depth + 1);
            return;
        case QMetaType::QVariantMap: {
            const QVariantMap map = value.toMap();
            for (auto it = map.cbegin(); it != map.cend(); ++it) {
                m_checksum += size_t(it.key().size());
                walk(it.value(), depth + 1);
            }
            return;
        }
        case QMetaType::QString:
            m_checksum += size_t(value.toString().toUtf8().size());
            return;
        case QMetaType::QByteArray:
            m_checksum += size_t(value.toByteArray().size());
            return;
        case QMetaType::QDateTime:
            if (!value.toDateTime().isValid() || value.toDateTime().timeSpec() != Qt::UTC)
                std::abort();
            m_checksum += size_t(value.toDateTime().toString(Qt::ISODateWithMs).size());
            return;
        case QMetaType::LongLong:
        case QMetaType::ULongLong:
        case QMetaType::Double:
        case QMetaType::Bool:
            m_checksum += size_t(value.toString().size());
            return;
        default:
            std::abort();
        }
    }

    size_t checksum() const { return m_checksum; }

private:
    static constexpr long kMaxVisits = 100000;
    const PropertyList::Limits& m_limits;
    long m_visits = 0;
    size_t m_checksum = 0;
};

// Parses with small limits, so that the fuzzer reaches them, and walks whatever it gets.
// A failure must come with its reason; a success with no reason.
template <typename Parse> void parseAndWalk(const uint8_t* data, size_t size, Parse parse) {
    PropertyList::Limits limits;
    limits.maxInputBytes = 1 << 20;
    limits.maxDepth = 64;
    limits.maxObjects = 4096;
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size));
    QString error;
    const QVariant root = parse(bytes, &error, limits);
    if (root.isValid() == !error.isEmpty())
        std::abort();
    if (!root.isValid())
        return;
    PlistWalk walk(limits);
    walk.walk(root);
    // Keeps the conversions from being optimised away.
    if (walk.checksum() == size_t(-1))
        std::abort();
}

} // namespace velmora::fuzz
