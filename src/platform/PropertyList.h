// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <functional>
#include <span>

namespace velmora {

// What one property list may cost at most.
struct PropertyListLimits {
    qint64 maxInputBytes = qint64(256) * 1024 * 1024;
    int maxDepth = 512;
    qint64 maxObjects = qint64(16) * 1024 * 1024;
};

// One entry of a dictionary handed to a PropertyListElementVisitor: both belong to the reader
// and live for the call that hands them over.
struct PropertyListEntry {
    const QString* key;
    const QVariant* value;
};

// Receives the elements of a root array one at a time. A dictionary element comes as its entries,
// so that a reader that wants a few fields of each dictionary is spared building a QVariantMap
// per element; every other element comes as the tree the whole read gives for it.
class PropertyListElementVisitor {
public:
    virtual ~PropertyListElementVisitor() = default;
    // The entries in the order of the file. A key may come more than once: its last entry holds
    // the value the dictionary's QVariantMap would hold.
    virtual void dictionary(std::span<const PropertyListEntry> entries) = 0;
    // An element that is not a dictionary, or a binary dictionary that other containers refer
    // to as well (it is kept whole for them): the tree the whole read gives for it.
    virtual void value(const QVariant& element) = 0;
};

// Reads property lists, XML and binary ("bplist00"), into QVariant trees:
//   dictionary -> QVariantMap, array -> QVariantList, string -> QString,
//   integer -> qint64 (quint64 above the signed range), real -> double, boolean -> bool,
//   date -> QDateTime in UTC, data -> QByteArray, uid -> QVariantMap {"CF$UID": qint64}.
// The work is bounded: input size, nesting depth and object count are limited, each binary
// object is decoded once however often it is referenced, and reference cycles are refused.
class PropertyList {
public:
    // At namespace scope, as GCC cannot use a nested type with member initialisers in a
    // default argument of the enclosing class.
    using Limits = PropertyListLimits;

    // Parses data in whichever format it is in. On failure returns a null QVariant and, when
    // error is given, a sentence saying what is wrong and where.
    static QVariant fromData(const QByteArray& data, QString* error = nullptr,
                             const Limits& limits = {});
    static QVariant fromXml(const QByteArray& data, QString* error = nullptr,
                            const Limits& limits = {});
    static QVariant fromBinary(const QByteArray& data, QString* error = nullptr,
                               const Limits& limits = {});

    // The platform's array-from-file reader: the root array of the file at path, or a null
    // QVariant when the file is missing, unreadable, malformed or its root is not an array.
    static QVariant arrayWithContentsOfFile(const QString& path, const Limits& limits = {});

    // Calls visit with each element of the root array of the file at path, in order. Each
    // element's tree lives only for its call, so a large file is never held whole. Returns false
    // when the file is missing, unreadable, malformed or its root is not an array; the file then
    // reads as no array, and whatever visit was given must be dropped.
    static bool forEachArrayElementInFile(const QString& path,
                                          const std::function<void(const QVariant&)>& visit,
                                          const Limits& limits = {});
    // The same, handing each dictionary element to the visitor as its entries.
    static bool forEachArrayElementInFile(const QString& path, PropertyListElementVisitor& visitor,
                                          const Limits& limits = {});
};

} // namespace velmora
