// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// The percent decoder on any text; whatever it decodes encodes and decodes back to itself.
#include "FuzzText.h"
#include "request/RequestUtils.h"

using namespace velmora;
using namespace velmora::RequestUtils;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString input = fuzz::text(data, size);
    for (const bool decodePlus : {false, true}) {
        const QString decoded = URLDecodedString(input, decodePlus);
        if (decoded.isNull()) {
            fuzz::check(input.contains(u'%'));
            continue;
        }
        const QString encoded = URLEncodedString(decoded);
        fuzz::check(encoded.size() >= decoded.size());
        fuzz::check(URLDecodedString(encoded, true) == decoded);
    }
    return 0;
}
