// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "PlistWalk.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // The streaming reader takes its buffer and parses it in place: it gets a copy.
    velmora::fuzz::parseAndWalk(
        data, size, &velmora::PropertyList::fromXml,
        [](const QByteArray& bytes, const velmora::PropertyList::Limits& limits, auto&& visit) {
            velmora::plist::forEachXmlArrayElement(QByteArray(bytes.constData(), bytes.size()),
                                                   limits, visit);
        });
    return 0;
}
