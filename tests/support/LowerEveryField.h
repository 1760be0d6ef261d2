// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "recipients/SuggestionMatcher.h"

#include <algorithm>

namespace velmora::test {

// Suggestions found the plain way, every field lower-cased for each query, then a stable sort
// by rank: the matcher's tests compare its results, the benchmark its speed.
inline QList<Recipient> lowerEveryField(const SuggestionMatcher::Addresses& addresses,
                                        const QString& text) {
    const QString q = text.toLower();
    QList<std::shared_ptr<ExtensionAddress>> found;
    if (q.isEmpty())
        return {};
    for (const auto& a : addresses) {
        if (a->mail().toLower().contains(q) || a->firstName().toLower().startsWith(q) ||
            a->lastName().toLower().startsWith(q) || a->fullName().toLower().startsWith(q) ||
            a->company().toLower().startsWith(q) || a->nickname().toLower().startsWith(q))
            found.append(a);
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto& x, const auto& y) { return x->rank() > y->rank(); });
    return {found.begin(), found.end()};
}

} // namespace velmora::test
