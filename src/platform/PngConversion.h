// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Error.h"

#include <QByteArray>
#include <QImage>
#include <QVariant>

#include <variant>

namespace velmora {

// Turns a shared image into PNG bytes, as the staging folder keeps every image.
class PngConversion {
public:
    // The most memory a decoded image may take; larger images are refused before decoding, so
    // a small file that declares a huge size cannot exhaust memory.
    static constexpr int kAllocationLimitMegabytes = 256;

    using Result = std::variant<QByteArray, Error>;

    // Bytes of an image in any format Qt reads, decoded with its EXIF orientation applied.
    static Result fromData(const QByteArray& bytes);
    static Result fromImage(const QImage& image);
    // A QByteArray or a QImage, as an item provider delivers an image; anything else is an
    // error.
    static Result fromItem(const QVariant& item);
};

} // namespace velmora
