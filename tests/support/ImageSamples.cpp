// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "ImageSamples.h"

#include <QBuffer>
#include <QImageWriter>
#include <QPainter>
#include <QtEndian>

#include <cstdlib>

namespace velmora::test {

QImage twoColourImage(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QPainter(&image).fillRect(0, 0, width / 2, height, Qt::red);
    return image;
}

QByteArray encoded(const QImage& image, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter(&buffer, format).write(image);
    return bytes;
}

QByteArray jpegWithOrientation(const QImage& image, quint16 orientation) {
    // APP1: length, "Exif\0\0", a big-endian TIFF header, one IFD with the one SHORT entry
    // 0x0112 (orientation), no next IFD.
    QByteArray app1("\xff\xe1\x00\x22"
                    "Exif\x00\x00"
                    "MM\x00\x2a\x00\x00\x00\x08"
                    "\x00\x01"
                    "\x01\x12\x00\x03\x00\x00\x00\x01\x00\x00\x00\x00"
                    "\x00\x00\x00\x00",
                    36);
    qToBigEndian(orientation, app1.data() + 4 + 6 + 8 + 2 + 8);
    return encoded(image, "jpg").insert(2, app1); // right after the start-of-image marker
}

QByteArray pngDeclaringSize(quint32 width, quint32 height) {
    QByteArray png = encoded(QImage(1, 1, QImage::Format_RGB32), "png");
    // IHDR follows the 8-byte signature: length, "IHDR", width, height, 5 more bytes, CRC.
    char* ihdr = png.data() + 12;
    qToBigEndian(width, ihdr + 4);
    qToBigEndian(height, ihdr + 8);
    quint32 crc = 0xffffffffu;
    for (int i = 0; i < 17; ++i) {
        crc ^= quint8(ihdr[i]);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xedb88320u & (0u - (crc & 1u)));
    }
    qToBigEndian(~crc, ihdr + 17);
    return png;
}

bool nearColour(QColor actual, QColor expected) {
    return std::abs(actual.red() - expected.red()) <= 40 &&
           std::abs(actual.green() - expected.green()) <= 40 &&
           std::abs(actual.blue() - expected.blue()) <= 40;
}

} // namespace velmora::test
