// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/PropertyList.h"
#include "platform/Values.h"

#include <QVariant>
#include <QVariantMap>

#include <array>
#include <span>

namespace velmora {

// Reads the fields of one record's dictionary for a record reader. Like the platform's
// dictionaries, asking a value that is not a dictionary for a key raises ValueError (at the
// first key, not before), and so do conversions the value's kind does not have; the reader's
// guard catches it and keeps the fields read so far.
class DictionaryReader {
public:
    explicit DictionaryReader(const QVariant& d);
    // A dictionary as the property-list reader hands it over, entry by entry; it reads as the
    // QVariantMap of the same entries would.
    explicit DictionaryReader(std::span<const PropertyListEntry> entries);

    // The value under key, or null when the key is missing.
    const QVariant* find(const QString& key) const;
    // The value under key as it stands, or null when the key is missing.
    QVariant value(const QString& key) const;
    // A string field: a string as it is, a number as its text, fallback when missing.
    QString string(const QString& key, const QString& fallback) const;
    qint64 integer(const QString& key) const { return Values::integerValue(value(key)); }
    bool boolean(const QString& key) const { return Values::boolValue(value(key)); }
    bool contains(const QString& key) const { return find(key) != nullptr; }
    // The elements of an array field; none when missing; ValueError for any other kind.
    QVariantList elements(const QString& key) const;

    // The text of the guard's log line for a failure while reading a record.
    static QString describe(const std::exception& e);

private:
    struct Entry {
        QStringView key;
        const QVariant* value;
    };
    // Record dictionaries hold a handful of keys and every one is asked for: one walk over the
    // map and a scan that compares lengths first beats a tree search per field.
    static constexpr int kScanned = 16;

    // Set when the value given is not a dictionary: the first key asked for raises then.
    const QVariant* m_notDictionary = nullptr;
    // With too many keys to scan: the map to search, or the entries to search from the back.
    const QVariantMap* m_map = nullptr;
    std::span<const PropertyListEntry> m_flat;
    std::array<Entry, kScanned> m_entries{};
    int m_entryCount = -1; // -1: too many keys to scan
};

} // namespace velmora
