// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// The query parser in every mode; what mode 1 reads, built again with options 0, reads the same.
#include "FuzzText.h"
#include "request/RequestUtils.h"

using namespace velmora;
using namespace velmora::RequestUtils;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0)
        return 0;
    const QueryOptions options = data[0] & 0xF;
    const QString input = fuzz::text(data + 1, size - 1);
    const QueryParameters parsed = URLQueryParametersWithOptions(input, options);
    for (const QueryValue& value : parsed) {
        const QueryOptions mode = options & QueryModeMask;
        if (mode == QueryModeAlwaysArrays)
            fuzz::check(std::holds_alternative<QStringList>(value));
        if (mode <= QueryModeKeepFirst)
            fuzz::check(std::holds_alternative<QString>(value));
    }

    QueryParameters strings = URLQueryParameters(input);
    // A key that still ends in "[]" would read back as array syntax; the format has no escape.
    strings.removeIf([](const auto& it) { return it.key().endsWith(u"[]"); });
    fuzz::check(URLQueryParameters(u'?' + URLQueryWithParameters(strings)) == strings);
    return 0;
}
