// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "PlistWalk.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // The streaming reader reads the root array a run of elements at a time; small runs, chosen
    // by the first byte, put the seams between the elements of short inputs too.
    const qsizetype pieceBytes = size > 0 ? 1 + data[0] % 64 : 1;
    velmora::fuzz::parseAndWalk(
        data, size, &velmora::PropertyList::fromXml,
        [pieceBytes](const QByteArray& bytes, const velmora::PropertyList::Limits& limits,
                     auto&& visit) {
            velmora::plist::forEachXmlArrayElement(QByteArray(bytes.constData(), bytes.size()),
                                                   limits, visit, pieceBytes);
        });
    return 0;
}
