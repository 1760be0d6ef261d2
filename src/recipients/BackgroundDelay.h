#pragma once

#include <QFuture>

#include <chrono>

namespace velmora {

// A wait on a background-priority worker: the future finishes once the time has passed. Whoever
// waits for it on the main thread (a QFutureWatcher) gets the result there; the worker touches
// nothing else, so the watcher's owner may go away meanwhile.
QFuture<void> waitInBackground(std::chrono::milliseconds delay);

} // namespace velmora
