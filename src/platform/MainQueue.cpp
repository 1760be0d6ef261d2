#include "platform/MainQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>

#include <condition_variable>
#include <deque>
#include <mutex>

namespace velmora {

namespace {

// Lives on the main thread; each wake-up event makes it run whatever is queued.
class Dispatcher : public QObject {
public:
    static const QEvent::Type kWake;

    void queue(std::function<void()> f) {
        // Made before the function is queued: the unlock below orders it before the main
        // thread's lock, and so before Qt deletes it there.
        auto* wake = new QEvent(kWake);
        {
            const std::lock_guard lock(m_mutex);
            m_queue.push_back(std::move(f));
        }
        QCoreApplication::postEvent(this, wake);
    }

protected:
    bool event(QEvent* event) override {
        if (event->type() != kWake)
            return QObject::event(event);
        for (;;) {
            std::function<void()> f;
            {
                const std::lock_guard lock(m_mutex);
                if (m_queue.empty())
                    return true;
                f = std::move(m_queue.front());
                m_queue.pop_front();
            }
            f();
        }
    }

private:
    std::mutex m_mutex;
    std::deque<std::function<void()>> m_queue;
};

const QEvent::Type Dispatcher::kWake = QEvent::Type(QEvent::registerEventType());

Dispatcher& dispatcher() {
    // Never deleted: queued functions may arrive until the very end of the process.
    static Dispatcher* const instance = [] {
        auto* d = new Dispatcher;
        d->moveToThread(QCoreApplication::instance()->thread());
        return d;
    }();
    return *instance;
}

// Made on the main thread as the application object is made, so that the first function
// queued from a worker does not create it there.
void makeDispatcherEarly() {
    dispatcher();
}

Q_COREAPP_STARTUP_FUNCTION(makeDispatcherEarly)

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
