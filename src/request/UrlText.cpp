// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "request/UrlText.h"

namespace velmora {

UrlText UrlText::fromString(const QString& text) {
    if (text.isNull() || !QUrl(text, QUrl::StrictMode).isValid())
        return {};
    return UrlText(text);
}

} // namespace velmora
