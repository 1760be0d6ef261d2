// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

namespace velmora {

// One link found in a text.
struct DetectedLink {
    qsizetype start = 0;  // where the link's text begins, in UTF-16 units
    qsizetype length = 0; // how much of the text it covers
    QString url;          // the normalised absolute URL: "http://" before a bare "www." host,
                          // "mailto:" before an e-mail address
    bool operator==(const DetectedLink&) const = default;
};

// Finds the links of a prose text, in text order and without overlaps: URLs with a scheme
// followed by "://", "mailto:" links, bare "www." hosts and e-mail addresses. Punctuation that
// ends a sentence or closes a quotation stays out of a link; a ")" stays in when it closes a
// "(" of the link. Linear in the text's length. The grammar is in docs/link-detection.md.
QList<DetectedLink> detectLinks(QStringView text);

} // namespace velmora
