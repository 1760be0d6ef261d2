// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/DispatchQueue.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace velmora {

struct DispatchQueue::State {
    Priority priority;
    std::mutex mutex;
    std::condition_variable wake;
    std::deque<std::function<void()>> work;
    std::vector<std::thread> threads;
    int idle = 0;
    bool stopping = false;

    void run() {
        if (priority == Priority::Background) {
            // Linux keeps a nice value per thread; a failure only leaves the thread at the
            // normal priority.
            setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), 10);
        }
        std::unique_lock lock(mutex);
        while (true) {
            ++idle;
            wake.wait(lock, [this] { return stopping || !work.empty(); });
            --idle;
            if (work.empty())
                return; // stopping, and nothing left to do
            std::function<void()> next = std::move(work.front());
            work.pop_front();
            lock.unlock();
            next();
            // The work item's captures are released before the lock is taken again.
            next = nullptr;
            lock.lock();
        }
    }
};

DispatchQueue& DispatchQueue::global(Priority priority) {
    static DispatchQueue defaultQueue(Priority::Default);
    static DispatchQueue backgroundQueue(Priority::Background);
    return priority == Priority::Background ? backgroundQueue : defaultQueue;
}

DispatchQueue::DispatchQueue(Priority priority)
    : m_state(std::make_unique<State>()) {
    m_state->priority = priority;
}

DispatchQueue::~DispatchQueue() {
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->stopping = true;
    }
    m_state->wake.notify_all();
    for (std::thread& thread : m_state->threads)
        thread.join();
}

void DispatchQueue::async(std::function<void()> work) {
    State& s = *m_state;
    {
        const std::lock_guard lock(s.mutex);
        s.work.push_back(std::move(work));
        // An idle thread takes the item unless other queued items already claim every idle one.
        if (std::ssize(s.work) > s.idle)
            s.threads.emplace_back([&s] { s.run(); });
    }
    s.wake.notify_one();
}

} // namespace velmora
