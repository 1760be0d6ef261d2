// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QMutex>
#include <QMutexLocker>

#include <utility>

namespace velmora {

// One field of a record whose reads and writes are each indivisible: a reader on another
// thread sees either the old or the new value, never a torn one. Several fields together are
// not covered; records are filled by one thread at a time.
template <typename T> class AtomicProperty {
public:
    AtomicProperty() = default;
    explicit AtomicProperty(T value)
        : m_value(std::move(value)) {}
    AtomicProperty(const AtomicProperty&) = delete;
    AtomicProperty& operator=(const AtomicProperty&) = delete;

    T get() const {
        const QMutexLocker lock(&m_mutex);
        return m_value;
    }

    void set(T value) {
        const QMutexLocker lock(&m_mutex);
        // The old value, now in the parameter, is released after the lock is.
        std::swap(m_value, value);
    }

    // Sets the value of a record that no other thread can see yet (while it is being read from
    // its dictionary): no lock is needed then, and a large file's records are built faster.
    void initialize(T value) { m_value = std::move(value); }

private:
    mutable QMutex m_mutex;
    T m_value{};
};

} // namespace velmora
