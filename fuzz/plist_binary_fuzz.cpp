// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "PlistWalk.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    velmora::fuzz::parseAndWalk(
        data, size, &velmora::PropertyList::fromBinary,
        [](const QByteArray& bytes, const velmora::PropertyList::Limits& limits, auto&& visit) {
            velmora::plist::forEachBinaryArrayElement(bytes, limits, visit);
        });
    return 0;
}
