// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace velmora {

// A concurrent work queue: every work item runs on one of the queue's own threads, and the
// caller never waits for it. A queue starts threads as work arrives, up to a fixed number, and
// keeps them; so a thousand items cost a handful of threads, but an item that blocks holds one
// of them until it returns. Work that waits on other work of the same queue belongs on a queue
// of its own. The process-wide queues live until the program ends, which waits for the work they
// still hold.
class DispatchQueue {
public:
    enum class Priority { Default, Background };

    // The global queue of that priority. Background work runs at a lower scheduling priority,
    // so that a long wait or a slow copy never competes with the user interface.
    static DispatchQueue& global(Priority priority);

    // The number of threads a queue gets when none is given: the processor's cores, at least 2.
    static int defaultWidth();

    explicit DispatchQueue(Priority priority, int maxThreads = defaultWidth());
    ~DispatchQueue();
    DispatchQueue(const DispatchQueue&) = delete;
    DispatchQueue& operator=(const DispatchQueue&) = delete;

    // Queues work and returns at once; items start in the order they were queued.
    void async(std::function<void()> work);
    // Queues work to start once delay has passed. No thread is held while it waits.
    void asyncAfter(std::chrono::steady_clock::duration delay, std::function<void()> work);

    // The threads started so far, never more than maxThreads.
    int threadCount() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace velmora
