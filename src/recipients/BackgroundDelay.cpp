// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "recipients/BackgroundDelay.h"

#include "platform/DispatchQueue.h"
#include "platform/MainQueue.h"

#include <QPointer>

#include <thread>

namespace velmora {

void afterDelayInBackground(std::chrono::milliseconds delay, QObject* receiver,
                            std::function<void()> then) {
    // Made here and run and dropped on the main thread: the worker only moves it along, so the
    // guard's reference counts are never touched off the main thread.
    auto done = [receiver = QPointer<QObject>(receiver), then = std::move(then)] {
        if (receiver)
            then();
    };
    DispatchQueue::global(DispatchQueue::Priority::Background)
        .async([delay, done = std::move(done)]() mutable {
            std::this_thread::sleep_for(delay);
            MainQueue::async(std::move(done));
        });
}

} // namespace velmora
