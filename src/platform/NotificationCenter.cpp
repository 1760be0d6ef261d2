// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/NotificationCenter.h"

#include <map>
#include <mutex>
#include <vector>

namespace velmora {

struct NotificationCenter::State {
    struct Entry {
        QString name;
        std::shared_ptr<const Observer> observer;
    };
    std::mutex mutex;
    std::map<int, Entry> observers; // by handle, which grows: the order of addition
    int next = 1;
};

NotificationCenter& NotificationCenter::defaultCenter() {
    static NotificationCenter center;
    return center;
}

NotificationCenter::NotificationCenter()
    : m_state(std::make_unique<State>()) {}

NotificationCenter::~NotificationCenter() = default;

int NotificationCenter::addObserver(const QString& name, Observer observer) {
    const std::lock_guard lock(m_state->mutex);
    const int handle = m_state->next++;
    m_state->observers.emplace(
        handle, State::Entry{name, std::make_shared<const Observer>(std::move(observer))});
    return handle;
}

void NotificationCenter::removeObserver(int handle) {
    const std::lock_guard lock(m_state->mutex);
    m_state->observers.erase(handle);
}

void NotificationCenter::postNotificationName(const QString& name, const QVariant& object) {
    // Observers run outside the lock, so they may post, add or remove observers themselves.
    std::vector<std::shared_ptr<const Observer>> matching;
    {
        const std::lock_guard lock(m_state->mutex);
        for (const auto& [handle, entry] : m_state->observers) {
            if (entry.name.isEmpty() || entry.name == name)
                matching.push_back(entry.observer);
        }
    }
    const Notification notification{name, object};
    for (const auto& observer : matching)
        (*observer)(notification);
}

} // namespace velmora
