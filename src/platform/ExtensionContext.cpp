// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/ExtensionContext.h"

#include "platform/Log.h"

namespace velmora {

ExtensionContext::ExtensionContext(Items inputItems, EndHandler onEnd)
    : m_inputItems(std::move(inputItems))
    , m_onEnd(std::move(onEnd)) {}

void ExtensionContext::completeRequestReturningItems(Items items,
                                                     const CompletionHandler& handler) {
    if (end({std::move(items), std::nullopt}) && handler)
        handler(false);
}

void ExtensionContext::cancelRequestWithError(const Error& error) {
    end({{}, error});
}

bool ExtensionContext::hasEnded() const {
    const std::lock_guard lock(m_mutex);
    return m_ended;
}

bool ExtensionContext::end(Outcome outcome) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_ended) {
            qCWarning(lcCore) << "the share request has already ended; ignoring a second end";
            return false;
        }
        m_ended = true;
    }
    if (m_onEnd)
        m_onEnd(outcome);
    return true;
}

} // namespace velmora
