// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ExtensionContext.h"
#include "share/CommandLine.h"

#include <QByteArray>
#include <QList>

#include <optional>

namespace velmora {

// Turns a command line into the items of a share request, as another program's share would
// hand them over: one item with the title, the text and an attachment for each ITEM and then
// each --image, in the order given; standard input as image data when it decodes as an image,
// else as a second item holding it as rich text.
class ShareInput {
public:
    // images holds the bytes of each --image file, read beforehand so that an unreadable one is
    // a usage error and not a silently missing attachment.
    static ExtensionContext::Items inputItems(const ShareOptions& options,
                                              const QByteArray& standardInput,
                                              const QList<QByteArray>& images);
    // Rich text from text that may be HTML or plain text.
    static RichText richText(const QString& text);
    // Whether bytes hold an image Qt can decode; when not, error says why.
    static bool decodesAsImage(const QByteArray& bytes, QString* error = nullptr);
    // Why bytes that look like an image (their first bytes are an image format's signature, as
    // Qt's image plugins check it, and they are not text) cannot be shared: they do not decode,
    // or are too large to. Nothing for an image that decodes and for anything else.
    static std::optional<QString> undecodableImage(const QByteArray& bytes);
};

} // namespace velmora
