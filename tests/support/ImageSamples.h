#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>

namespace velmora::test {

// A width x height image whose left half is red and right half blue, so a rotation shows.
QImage twoColourImage(int width, int height);
// The image encoded by Qt in that format ("png", "jpg").
QByteArray encoded(const QImage& image, const char* format);
// A JPEG of the image with an EXIF APP1 segment holding only the orientation tag.
QByteArray jpegWithOrientation(const QImage& image, quint16 orientation);
// A valid PNG of a few bytes whose header declares width x height pixels.
QByteArray pngDeclaringSize(quint32 width, quint32 height);
// Whether two colours are equal within the tolerance lossy formats need.
bool nearColour(QColor actual, QColor expected, int tolerance = 40);

} // namespace velmora::test
