// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/DispatchQueue.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace velmora {

using Clock = std::chrono::steady_clock;

struct DispatchQueue::State {
    Priority priority;
    int maxThreads;
    mutable std::mutex mutex;
    std::condition_variable wake;
    std::deque<std::function<void()>> work;
    // Delayed items by the time they are due; equal times keep the order they were queued in.
    std::multimap<Clock::time_point, std::function<void()>> delayed;
    std::vector<std::thread> threads;
    int idle = 0;
    bool stopping = false;

    // Moves the delayed items that are due to the end of the queue.
    void takeDue(Clock::time_point now) {
        while (!delayed.empty() && delayed.begin()->first <= now) {
            work.push_back(std::move(delayed.begin()->second));
            delayed.erase(delayed.begin());
        }
    }

    // Starts a thread when the queued items outnumber the idle threads, up to the limit. A queue
    // that is ending starts none: its destructor is joining the list.
    void growIfNeeded() {
        if (!stopping && std::ssize(work) > idle && std::ssize(threads) < maxThreads)
            threads.emplace_back([this] { run(); });
    }

    void run() {
        if (priority == Priority::Background) {
            // Linux keeps a nice value per thread; a failure only leaves the thread at the
            // normal priority.
            setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), 10);
        }
        std::unique_lock lock(mutex);
        while (true) {
            takeDue(Clock::now());
            if (work.empty()) {
                // A queue that is ending still runs what is queued, delayed items included,
                // each at its time.
                if (stopping && delayed.empty())
                    return;
                ++idle;
                if (delayed.empty())
                    wake.wait(lock);
                else
                    wake.wait_until(lock, delayed.begin()->first);
                --idle;
                continue;
            }
            std::function<void()> next = std::move(work.front());
            work.pop_front();
            // More items than idle threads: another thread may be due.
            growIfNeeded();
            lock.unlock();
            next();
            // The work item's captures are released before the lock is taken again.
            next = nullptr;
            lock.lock();
        }
    }
};

int DispatchQueue::defaultWidth() {
    return std::max(2, static_cast<int>(std::thread::hardware_concurrency()));
}

DispatchQueue& DispatchQueue::global(Priority priority) {
    static DispatchQueue defaultQueue(Priority::Default);
    static DispatchQueue backgroundQueue(Priority::Background);
    return priority == Priority::Background ? backgroundQueue : defaultQueue;
}

DispatchQueue::DispatchQueue(Priority priority, int maxThreads)
    : m_state(std::make_unique<State>()) {
    m_state->priority = priority;
    m_state->maxThreads = std::max(1, maxThreads);
}

DispatchQueue::~DispatchQueue() {
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->stopping = true;
    }
    m_state->wake.notify_all();
    // The threads are joined without the lock: they need it to finish their work.
    for (std::thread& thread : m_state->threads)
        thread.join();
}

void DispatchQueue::async(std::function<void()> work) {
    State& s = *m_state;
    {
        const std::lock_guard lock(s.mutex);
        s.work.push_back(std::move(work));
        s.growIfNeeded();
    }
    s.wake.notify_one();
}

void DispatchQueue::asyncAfter(Clock::duration delay, std::function<void()> work) {
    State& s = *m_state;
    {
        const std::lock_guard lock(s.mutex);
        s.delayed.emplace(Clock::now() + delay, std::move(work));
        // Some thread has to watch the clock.
        if (s.threads.empty() && !s.stopping)
            s.threads.emplace_back([&s] { s.run(); });
    }
    // Every idle thread looks again at the earliest time: the new item may be the first due.
    s.wake.notify_all();
}

int DispatchQueue::threadCount() const {
    const std::lock_guard lock(m_state->mutex);
    return static_cast<int>(m_state->threads.size());
}

} // namespace velmora
