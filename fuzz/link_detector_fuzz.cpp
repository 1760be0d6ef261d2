// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// The link detector on any text: links in order, inside the text, without overlaps; and the
// plain-body rendering built on it.
#include "FuzzText.h"
#include "message/ExtensionMessage.h"
#include "message/LinkDetector.h"

using namespace velmora;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString input = fuzz::text(data, size);
    qsizetype previousEnd = 0;
    for (const DetectedLink& link : detectLinks(input)) {
        fuzz::check(link.start >= previousEnd && link.length > 0);
        fuzz::check(link.start + link.length <= input.size());
        fuzz::check(!link.url.isEmpty() && link.url.contains(u':'));
        previousEnd = link.start + link.length;
    }
    // Repeated substitution may grow the body a lot; keep inputs where that stays cheap.
    if (size <= 512) {
        const auto message = ExtensionMessage::init();
        message->setPlainBody(input);
        message->renderHtml();
    }
    return 0;
}
