#include "recipients/BackgroundDelay.h"

#include <QPromise>
#include <QThread>
#include <QThreadPool>

#include <memory>

namespace velmora {

namespace {

// Joined at exit, after the last wait has run out.
QThreadPool& backgroundPool() {
    static QThreadPool pool;
    static const bool lowPriority = [] {
        pool.setThreadPriority(QThread::LowestPriority);
        return true;
    }();
    Q_UNUSED(lowPriority);
    return pool;
}

} // namespace

QFuture<void> waitInBackground(std::chrono::milliseconds delay) {
    auto promise = std::make_shared<QPromise<void>>();
    QFuture<void> future = promise->future();
    promise->start();
    backgroundPool().start([promise, delay] {
        QThread::msleep(static_cast<unsigned long>(delay.count()));
        promise->finish();
    });
    return future;
}

} // namespace velmora
