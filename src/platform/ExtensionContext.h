// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Error.h"
#include "platform/ExtensionItem.h"
#include "platform/StagingStatus.h"

#include <QList>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace velmora {

// One share request: the items shared, and its end, told to whoever hosts the composer.
class ExtensionContext {
public:
    using Items = QList<std::shared_ptr<ExtensionItem>>;

    // How a request ended: completed with the items handed back, or cancelled with an error.
    struct Outcome {
        Items returnedItems;
        std::optional<Error> error;
        bool cancelled() const { return error.has_value(); }
    };
    // Told once, on the thread that ends the request.
    using EndHandler = std::function<void(const Outcome& outcome)>;
    // Called after the host was told; expired is always false here, as no host takes the
    // request away before it ends.
    using CompletionHandler = std::function<void(bool expired)>;

    explicit ExtensionContext(Items inputItems, EndHandler onEnd = {});
    ExtensionContext(const ExtensionContext&) = delete;
    ExtensionContext& operator=(const ExtensionContext&) = delete;

    // The shared items, in the order in which they were given.
    const Items& inputItems() const { return m_inputItems; }
    // How the staging of the items goes: those on their way and those left out.
    const std::shared_ptr<StagingStatus>& stagingStatus() const { return m_stagingStatus; }

    // End the request. Only the first of these calls counts; a later one is a mistake of the
    // caller, warned about and otherwise ignored (its handler does not run). Any thread.
    void completeRequestReturningItems(Items items, const CompletionHandler& handler = {});
    void cancelRequestWithError(const Error& error);

    bool hasEnded() const;

private:
    bool end(Outcome outcome);

    const Items m_inputItems;
    const EndHandler m_onEnd;
    const std::shared_ptr<StagingStatus> m_stagingStatus = std::make_shared<StagingStatus>();
    mutable std::mutex m_mutex;
    bool m_ended = false;
};

} // namespace velmora
