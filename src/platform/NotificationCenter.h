// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QVariant>

#include <functional>
#include <memory>

namespace velmora {

// A notification: its name and the object it is about.
struct Notification {
    QString name;
    QVariant object;
};

// Delivers named notifications to the observers of this process. Thread-safe: observers run
// on the posting thread, in the order in which they were added.
class NotificationCenter {
public:
    using Observer = std::function<void(const Notification& notification)>;

    // The process's centre.
    static NotificationCenter& defaultCenter();

    NotificationCenter();
    ~NotificationCenter();
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;

    // Observes notifications of that name, or of every name when name is empty. Returns the
    // handle that removes the observer.
    int addObserver(const QString& name, Observer observer);
    // After this returns the observer is not called again, except by a post already running on
    // another thread.
    void removeObserver(int handle);

    void postNotificationName(const QString& name, const QVariant& object);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace velmora
