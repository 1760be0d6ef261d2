// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "recipients/BackgroundDelay.h"

#include "platform/DispatchQueue.h"
#include "platform/MainQueue.h"

#include <QPointer>

namespace velmora {

void afterDelayInBackground(std::chrono::milliseconds delay, QObject* receiver,
                            std::function<void()> then) {
    // Made here and run and dropped on the main thread: the worker only moves it along, so the
    // guard's reference counts are never touched off the main thread.
    auto done = [receiver = QPointer<QObject>(receiver), then = std::move(then)] {
        if (receiver)
            then();
    };
    // A delayed item holds no thread while it waits, so quick typing cannot use up the queue.
    DispatchQueue::global(DispatchQueue::Priority::Background)
        .asyncAfter(delay,
                    [done = std::move(done)]() mutable { MainQueue::async(std::move(done)); });
}

} // namespace velmora
