// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/StagingStatus.h"

#include <algorithm>

namespace velmora {

void StagingStatus::expectDelivery() {
    const std::lock_guard lock(m_mutex);
    m_deliveryExpected = true;
}

bool StagingStatus::deliveryExpected() const {
    const std::lock_guard lock(m_mutex);
    return m_deliveryExpected;
}

quint64 StagingStatus::begin() {
    quint64 id = 0;
    {
        const std::lock_guard lock(m_mutex);
        id = m_nextId++;
        m_pending.append({id, {}, 0, -1});
    }
    changed();
    return id;
}

void StagingStatus::progress(quint64 id, const QString& name, qint64 done, qint64 total) {
    {
        const std::lock_guard lock(m_mutex);
        const auto it = std::find_if(m_pending.begin(), m_pending.end(),
                                     [id](const Pending& p) { return p.id == id; });
        if (it == m_pending.end())
            return;
        it->name = name;
        it->done = done;
        it->total = total;
    }
    changed();
}

void StagingStatus::finish(quint64 id) {
    {
        const std::lock_guard lock(m_mutex);
        m_pending.removeIf([id](const Pending& p) { return p.id == id; });
    }
    changed();
}

void StagingStatus::leaveOut(const QString& name, const QString& reason) {
    {
        const std::lock_guard lock(m_mutex);
        m_leftOut.append({name, reason});
    }
    changed();
}

QList<StagingStatus::Pending> StagingStatus::pending() const {
    const std::lock_guard lock(m_mutex);
    return QList<Pending>(m_pending.cbegin(), m_pending.cend());
}

QList<StagingStatus::LeftOut> StagingStatus::leftOut() const {
    const std::lock_guard lock(m_mutex);
    return QList<LeftOut>(m_leftOut.cbegin(), m_leftOut.cend());
}

bool StagingStatus::hasPending() const {
    const std::lock_guard lock(m_mutex);
    return !m_pending.isEmpty();
}

void StagingStatus::addListener(Listener listener) {
    const std::lock_guard lock(m_mutex);
    m_listeners.append(std::move(listener));
}

void StagingStatus::changed() {
    QList<Listener> listeners;
    {
        const std::lock_guard lock(m_mutex);
        listeners = QList<Listener>(m_listeners.cbegin(), m_listeners.cend());
    }
    for (const Listener& listener : listeners)
        listener();
}

} // namespace velmora
