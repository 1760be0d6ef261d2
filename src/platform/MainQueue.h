// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>

namespace velmora {

// The main queue: runs functions on the main thread (the application object's) from any
// thread, in the order they were queued. The hand-over goes through a standard mutex and the
// main thread is woken through an eventfd its event loop watches, so a queueing thread never
// touches Qt's own event queue, whose locks the thread sanitizer cannot see; functions are made,
// run and destroyed without another thread touching them unguarded. Needs the application
// object to exist.
class MainQueue {
public:
    // Queues f and returns at once; f runs when the main thread's event loop next runs.
    static void async(std::function<void()> f);
    // Runs f on the main thread and returns once it has run: in place when called there,
    // otherwise the main thread must be free to run its event loop meanwhile.
    static void sync(const std::function<void()>& f);
    static bool isMainThread();
};

} // namespace velmora
