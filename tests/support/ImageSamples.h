// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QImage>

// Images made at test time, for the tests of image intake.
namespace velmora::test {

// A width x height image whose left half is red and right half blue, so a rotation shows.
QImage twoColourImage(int width, int height);
// The image as Qt encodes it in that format ("png", "jpg").
QByteArray encoded(const QImage& image, const char* format);
// A JPEG of the image with an EXIF segment holding only the orientation tag.
QByteArray jpegWithOrientation(const QImage& image, quint16 orientation);
// A valid PNG of a few dozen bytes whose header declares width x height pixels.
QByteArray pngDeclaringSize(quint32 width, quint32 height);
// Equal within the tolerance that lossy formats need.
bool nearColour(QColor actual, QColor expected);

} // namespace velmora::test
