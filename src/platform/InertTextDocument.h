// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QSize>
#include <QTextDocument>

namespace velmora {

// A text document for HTML that comes from outside: it resolves no resource the markup names.
// Nothing is read from a file, a device or the network, neither while the HTML is parsed (table,
// cell and body backgrounds, style sheets, CSS images) nor while it is laid out and painted
// (<img>). An image shows as a neutral placeholder of the size the markup declares; only a small
// inline data: image is decoded and shown as itself.
class InertTextDocument : public QTextDocument {
public:
    // A data: URL longer than this is not decoded.
    static constexpr qsizetype kMaxDataUrlLength = 64 * 1024;
    // No side of an image, declared or decoded, is laid out larger than this, in pixels.
    static constexpr int kMaxImageSide = 2048;
    // An image that declares no size is laid out at this size.
    static constexpr QSize kDefaultImageSize{16, 16};

    explicit InertTextDocument(QObject* parent = nullptr);

    // The image a small data: URL holds, or a null image for every other name.
    static QImage decodeDataImage(const QUrl& name);

protected:
    // Answers every request with a value, never an invalid one: an invalid answer would send
    // QTextDocument::resource on to the resource providers, which read files.
    QVariant loadResource(int type, const QUrl& name) override;
};

} // namespace velmora
