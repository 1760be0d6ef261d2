// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <memory>

namespace velmora {

// A concurrent work queue: every work item runs on one of the queue's own threads, and the
// caller never waits for it. The process-wide queues live until the program ends, which waits
// for the work they still hold.
class DispatchQueue {
public:
    enum class Priority { Default, Background };

    // The global queue of that priority. Background work runs at a lower scheduling priority,
    // so that a long wait or a slow copy never competes with the user interface.
    static DispatchQueue& global(Priority priority);

    explicit DispatchQueue(Priority priority);
    ~DispatchQueue();
    DispatchQueue(const DispatchQueue&) = delete;
    DispatchQueue& operator=(const DispatchQueue&) = delete;

    // Queues work and returns at once. A new thread is started when every thread of the queue is
    // busy, so one blocking work item never holds up another.
    void async(std::function<void()> work);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace velmora
