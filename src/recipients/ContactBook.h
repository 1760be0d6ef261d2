// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "recipients/SuggestionMatcher.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

class QObject;

namespace velmora {

// The contacts of the shared container with their suggestion index, read and worked out on a
// worker of their own, so that the composer can be shown while a large book is still being
// read. Whoever needs the contacts before they are ready either waits for them (matcher()) or
// asks to be told on the main thread once they are (whenReady()).
class ContactBook {
public:
    // Starts reading the contacts at once and returns without waiting.
    static std::shared_ptr<ContactBook> load();
    ContactBook() = default;
    ContactBook(const ContactBook&) = delete;
    ContactBook& operator=(const ContactBook&) = delete;

    bool isReady() const;
    // The contacts and their index; waits for them while they are being read.
    const SuggestionMatcher& matcher() const;
    // Runs then on the main thread once the contacts are ready (queued, also when they already
    // are), unless receiver is gone by then. Call on the main thread.
    void whenReady(QObject* receiver, std::function<void()> then);

private:
    void finish(SuggestionMatcher matcher);

    mutable std::mutex m_mutex;
    mutable std::condition_variable m_readyChanged;
    // Set once, then never changed: references handed out stay valid as long as the book.
    std::optional<SuggestionMatcher> m_matcher;
    std::vector<std::function<void()>> m_waiting;
};

} // namespace velmora
