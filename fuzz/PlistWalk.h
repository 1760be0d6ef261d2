// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "directory/ExtensionAddress.h"
#include "platform/Log.h"
#include "platform/PropertyList.h"
#include "platform/PropertyListPrivate.h"

#include <QDateTime>
#include <QVariantList>
#include <QVariantMap>

#include <cmath>
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

// Equality of two trees within a budget of visits: shared references can make a small file a
// tree too large to compare whole, and what the budget leaves unvisited counts as equal.
inline bool boundedEqual(const QVariant& a, const QVariant& b, long& budget) {
    if (--budget < 0)
        return true;
    if (a.typeId() != b.typeId())
        return false;
    if (a.typeId() == QMetaType::QVariantList) {
        const QVariantList& x = *static_cast<const QVariantList*>(a.constData());
        const QVariantList& y = *static_cast<const QVariantList*>(b.constData());
        if (x.size() != y.size())
            return false;
        for (qsizetype i = 0; i < x.size(); ++i) {
            if (!boundedEqual(x[i], y[i], budget))
                return false;
        }
        return true;
    }
    if (a.typeId() == QMetaType::QVariantMap) {
        const QVariantMap& x = *static_cast<const QVariantMap*>(a.constData());
        const QVariantMap& y = *static_cast<const QVariantMap*>(b.constData());
        if (x.size() != y.size())
            return false;
        for (auto i = x.cbegin(), j = y.cbegin(); i != x.cend(); ++i, ++j) {
            if (i.key() != j.key() || !boundedEqual(i.value(), j.value(), budget))
                return false;
        }
        return true;
    }
    // NaN is the one value unequal to itself; both readers give the same bits for it.
    if (a.typeId() == QMetaType::Double && std::isnan(a.toDouble()))
        return std::isnan(b.toDouble());
    return a == b;
}

// Address records as the contacts reader makes them: each dictionary element from its entries.
class AddressRecords final : public PropertyListElementVisitor {
public:
    void dictionary(std::span<const PropertyListEntry> entries) override {
        records.append(ExtensionAddress::initWithDictonary(entries));
    }
    void value(const QVariant& element) override {
        records.append(ExtensionAddress::initWithDictonary(element));
    }
    QList<std::shared_ptr<ExtensionAddress>> records;
};

inline bool sameText(const QString& a, const QString& b) {
    return a.isNull() == b.isNull() && a == b;
}

inline bool sameAddress(const ExtensionAddress& a, const ExtensionAddress& b) {
    return sameText(a.mail(), b.mail()) && sameText(a.firstName(), b.firstName()) &&
           sameText(a.lastName(), b.lastName()) && sameText(a.company(), b.company()) &&
           sameText(a.nickname(), b.nickname()) && a.rank() == b.rank();
}

// The records read from the elements' entries must be those read from their trees, and the
// lines logged on the way the same.
template <typename Stream>
void compareAddressRecords(const QByteArray& bytes, const PropertyList::Limits& limits,
                           const QVariantList& elements, Stream stream) {
    AddressRecords fromEntries;
    LogCapture entryLog;
    stream(bytes, limits, fromEntries);
    const QStringList entryLines = entryLog.lines();
    LogCapture treeLog;
    if (fromEntries.records.size() != elements.size())
        std::abort();
    for (qsizetype i = 0; i < elements.size(); ++i) {
        if (!sameAddress(*fromEntries.records[i],
                         *ExtensionAddress::initWithDictonary(elements[i])))
            std::abort();
    }
    if (treeLog.lines() != entryLines)
        std::abort();
}

// Parses with small limits, so that the fuzzer reaches them, and walks whatever it gets.
// A failure must come with its reason; a success with no reason. The element-by-element reader
// must agree with the whole read: it succeeds exactly when the whole read gives an array, and
// hands over the same elements in the same order.
template <typename Parse, typename Stream>
void parseAndWalk(const uint8_t* data, size_t size, Parse parse, Stream stream) {
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

    QVariantList streamed;
    bool streamedAll = true;
    try {
        stream(bytes, limits, [&](const QVariant& e) { streamed.append(e); });
    } catch (const plist::Malformed&) {
        streamedAll = false;
    }
    if (streamedAll != (root.typeId() == QMetaType::QVariantList))
        std::abort();
    if (streamedAll) {
        long budget = 100000;
        if (!boundedEqual(root, QVariant(streamed), budget))
            std::abort();
        compareAddressRecords(bytes, limits, root.toList(), stream);
    }

    if (!root.isValid())
        return;
    PlistWalk walk(limits);
    walk.walk(root);
    // Keeps the conversions from being optimised away.
    if (walk.checksum() == size_t(-1))
        std::abort();
}

} // namespace velmora::fuzz
