// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "recipients/ContactBook.h"

#include "bridge/ExtensionUtilities.h"
#include "platform/DispatchQueue.h"
#include "platform/MainQueue.h"

#include <QPointer>

#include <malloc.h>

namespace velmora {

namespace {

// One worker for every book: reading a book never waits on anything queued behind it, and the
// shared items' copies on the global queues never wait for a book.
DispatchQueue& readingQueue() {
    static DispatchQueue queue(DispatchQueue::Priority::Default, 1);
    return queue;
}

} // namespace

std::shared_ptr<ContactBook> ContactBook::load() {
    auto book = std::make_shared<ContactBook>();
    readingQueue().async([book] {
        AddressesAndGroupsResult read = ExtensionUtilities::AddressesAndGroups();
        // The reader's buffers, freed by now, lie among the records: their pages go back to the
        // system before the index is built beside the records, which is when the share is at
        // its largest.
        malloc_trim(0);
        book->finish(SuggestionMatcher(std::move(read.addresses), std::move(read.groups)));
    });
    return book;
}

bool ContactBook::isReady() const {
    const std::lock_guard lock(m_mutex);
    return m_matcher.has_value();
}

const SuggestionMatcher& ContactBook::matcher() const {
    std::unique_lock lock(m_mutex);
    m_readyChanged.wait(lock, [this] { return m_matcher.has_value(); });
    return *m_matcher;
}

void ContactBook::whenReady(QObject* receiver, std::function<void()> then) {
    // Made, run and dropped on the main thread: other threads only move it along.
    auto guarded = [receiver = QPointer<QObject>(receiver), then = std::move(then)] {
        if (receiver)
            then();
    };
    {
        const std::lock_guard lock(m_mutex);
        if (!m_matcher) {
            m_waiting.push_back(std::move(guarded));
            return;
        }
    }
    MainQueue::async(std::move(guarded));
}

void ContactBook::finish(SuggestionMatcher matcher) {
    std::vector<std::function<void()>> waiting;
    {
        const std::lock_guard lock(m_mutex);
        m_matcher.emplace(std::move(matcher));
        waiting.swap(m_waiting);
    }
    m_readyChanged.notify_all();
    for (auto& then : waiting)
        MainQueue::async(std::move(then));
}

} // namespace velmora
