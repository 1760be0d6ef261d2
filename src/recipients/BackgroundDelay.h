// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <functional>

class QObject;

namespace velmora {

// Runs then on the main thread once delay has passed; the wait is spent on a background-priority
// worker, never on the main thread. Nothing runs when receiver is destroyed before then. Call on
// the main thread.
void afterDelayInBackground(std::chrono::milliseconds delay, QObject* receiver,
                            std::function<void()> then);

} // namespace velmora
