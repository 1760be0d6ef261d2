// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "directory/RecordReading.h"

namespace velmora {

DictionaryReader::DictionaryReader(const QVariant& d) {
    if (d.typeId() != QMetaType::QVariantMap) {
        m_notDictionary = &d;
        return;
    }
    m_map = static_cast<const QVariantMap*>(d.constData());
    if (m_map->size() > kScanned)
        return;
    m_entryCount = 0;
    for (auto it = m_map->constBegin(); it != m_map->constEnd(); ++it)
        m_entries[size_t(m_entryCount++)] = {it.key(), &it.value()};
}

DictionaryReader::DictionaryReader(std::span<const PropertyListEntry> entries) {
    if (entries.size() > size_t(kScanned)) {
        m_flat = entries;
        return;
    }
    m_entryCount = 0;
    for (const PropertyListEntry& e : entries)
        m_entries[size_t(m_entryCount++)] = {*e.key, e.value};
}

const QVariant* DictionaryReader::find(const QString& key) const {
    if (m_notDictionary) {
        throw ValueError(
            QStringLiteral("a %1 was given where a dictionary was expected (key \"%2\")")
                .arg(Values::kindName(*m_notDictionary), key)
                .toStdString());
    }
    // From the back: of a key handed over more than once, the last entry holds the value.
    if (m_entryCount >= 0) {
        for (int i = m_entryCount - 1; i >= 0; --i) {
            const Entry& e = m_entries[size_t(i)];
            if (e.key.size() == key.size() && e.key.front() == key.front() && e.key == key)
                return e.value;
        }
        return nullptr;
    }
    if (m_map) {
        // Through the const map, so the shared tree is never detached.
        const auto it = m_map->constFind(key);
        return it == m_map->constEnd() ? nullptr : &*it;
    }
    for (auto e = m_flat.rbegin(); e != m_flat.rend(); ++e) {
        if (*e->key == key)
            return e->value;
    }
    return nullptr;
}

QVariant DictionaryReader::value(const QString& key) const {
    const QVariant* v = find(key);
    return v ? *v : QVariant();
}

QString DictionaryReader::string(const QString& key, const QString& fallback) const {
    const QVariant* v = find(key);
    if (!v || v->isNull())
        return fallback;
    if (v->typeId() == QMetaType::QString)
        return *static_cast<const QString*>(v->constData());
    return Values::stringValue(*v);
}

QVariantList DictionaryReader::elements(const QString& key) const {
    const QVariant* v = find(key);
    if (!v || v->isNull())
        return {};
    if (v->typeId() != QMetaType::QVariantList) {
        throw ValueError(QStringLiteral("\"%1\" is a %2, not an array")
                             .arg(key, Values::kindName(*v))
                             .toStdString());
    }
    return *static_cast<const QVariantList*>(v->constData());
}

QString DictionaryReader::describe(const std::exception& e) {
    return QString::fromUtf8(e.what());
}

} // namespace velmora
