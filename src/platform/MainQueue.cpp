// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/MainQueue.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QThread>

#include <cerrno>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <sys/eventfd.h>
#include <unistd.h>

namespace velmora {

namespace {

// Runs whatever is queued on the main thread each time its wake-up counter is bumped. The counter
// is an eventfd the main thread's event loop watches, so a queueing thread touches nothing of
// Qt's: posting an event would go through Qt's own event queue, whose lock the thread sanitizer
// cannot see, and the main thread posting its own events at the same moment would then look like
// a race on that queue.
class Dispatcher {
public:
    Dispatcher()
        : m_wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
        if (m_wake < 0)
            qFatal("MainQueue: no eventfd for waking the main thread (errno %d)", errno);
    }

    // Watches the counter from the event loop of the application object being made. A program
    // may make one after another (a plain one for its command line, then the window's): the
    // watch goes with each, and what was queued in between runs in the next one's loop.
    void attach(QCoreApplication* app) {
        auto* notifier = new QSocketNotifier(m_wake, QSocketNotifier::Read, app);
        QObject::connect(notifier, &QSocketNotifier::activated, notifier, [this] { runQueued(); });
        wake();
    }

    void queue(std::function<void()> f) {
        {
            const std::lock_guard lock(m_mutex);
            m_queue.push_back(std::move(f));
        }
        wake();
    }

private:
    void wake() {
        const std::uint64_t one = 1;
        while (::write(m_wake, &one, sizeof one) < 0 && errno == EINTR) {
        }
    }

    void runQueued() {
        // The counter is emptied before the queue is read, so a function queued from here on
        // wakes the main thread again.
        std::uint64_t count = 0;
        while (::read(m_wake, &count, sizeof count) < 0 && errno == EINTR) {
        }
        for (;;) {
            std::function<void()> f;
            bool more = false;
            {
                const std::lock_guard lock(m_mutex);
                if (m_queue.empty())
                    return;
                f = std::move(m_queue.front());
                m_queue.pop_front();
                more = !m_queue.empty();
            }
            // A function may run an event loop of its own (a modal sheet); the ones behind it
            // then run in that loop, as they would have without it.
            if (more)
                wake();
            f();
        }
    }

    const int m_wake; // the eventfd, open for the life of the process
    std::mutex m_mutex;
    std::deque<std::function<void()>> m_queue;
};

Dispatcher& dispatcher() {
    // Never deleted: queued functions may arrive until the very end of the process.
    static Dispatcher* const instance = new Dispatcher;
    return *instance;
}

// As each application object is made, on its thread, so that a worker never makes the
// dispatcher and the object's event loop watches it.
void attachDispatcher() {
    dispatcher().attach(QCoreApplication::instance());
}

Q_COREAPP_STARTUP_FUNCTION(attachDispatcher)

} // namespace

bool MainQueue::isMainThread() {
    return QCoreApplication::instance() &&
           QThread::currentThread() == QCoreApplication::instance()->thread();
}

void MainQueue::async(std::function<void()> f) {
    dispatcher().queue(std::move(f));
}

void MainQueue::sync(const std::function<void()>& f) {
    if (isMainThread()) {
        f();
        return;
    }
    std::mutex mutex;
    std::condition_variable ran;
    bool done = false;
    async([&] {
        f();
        const std::lock_guard lock(mutex);
        done = true;
        ran.notify_one();
    });
    std::unique_lock lock(mutex);
    ran.wait(lock, [&] { return done; });
}

} // namespace velmora
