#include "ImageSamples.h"

#include <QBuffer>
#include <QImageWriter>
#include <QtEndian>

#include <cstdlib>

namespace velmora::test {

QImage twoColourImage(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::blue);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width / 2; ++x)
            image.setPixelColor(x, y, Qt::red);
    }
    return image;
}

QByteArray encoded(const QImage& image, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.setQuality(95);
    writer.write(image);
    return bytes;
}

namespace {

void appendBigEndian16(QByteArray& out, quint16 v) {
    out.append(char(v >> 8)).append(char(v & 0xff));
}

void appendBigEndian32(QByteArray& out, quint32 v) {
    appendBigEndian16(out, quint16(v >> 16));
    appendBigEndian16(out, quint16(v & 0xffff));
}

quint32 crc32(QByteArrayView bytes) {
    quint32 crc = 0xffffffffu;
    for (const char c : bytes) {
        crc ^= quint8(c);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xedb88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

} // namespace

QByteArray jpegWithOrientation(const QImage& image, quint16 orientation) {
    // TIFF header (big-endian), one IFD with one SHORT entry, no next IFD.
    QByteArray tiff("MM\x00\x2a\x00\x00\x00\x08", 8);
    appendBigEndian16(tiff, 1);      // entries
    appendBigEndian16(tiff, 0x0112); // Orientation
    appendBigEndian16(tiff, 3);      // SHORT
    appendBigEndian32(tiff, 1);      // count
    appendBigEndian16(tiff, orientation);
    appendBigEndian16(tiff, 0); // padding of the value field
    appendBigEndian32(tiff, 0); // next IFD
    QByteArray app1("\xff\xe1", 2);
    const QByteArray exif = QByteArray("Exif\x00\x00", 6) + tiff;
    appendBigEndian16(app1, quint16(exif.size() + 2));
    app1 += exif;
    QByteArray jpeg = encoded(image, "jpg");
    jpeg.insert(2, app1); // right after the start-of-image marker
    return jpeg;
}

QByteArray pngDeclaringSize(quint32 width, quint32 height) {
    QByteArray png = encoded(QImage(1, 1, QImage::Format_RGB32), "png");
    // The IHDR chunk follows the 8-byte signature: length, type, then width and height.
    constexpr int kIhdrType = 12;
    constexpr int kIhdrDataSize = 13;
    qToBigEndian(width, png.data() + kIhdrType + 4);
    qToBigEndian(height, png.data() + kIhdrType + 8);
    qToBigEndian(crc32(QByteArrayView(png).sliced(kIhdrType, 4 + kIhdrDataSize)),
                 png.data() + kIhdrType + 4 + kIhdrDataSize);
    return png;
}

bool nearColour(QColor actual, QColor expected, int tolerance) {
    return std::abs(actual.red() - expected.red()) <= tolerance &&
           std::abs(actual.green() - expected.green()) <= tolerance &&
           std::abs(actual.blue() - expected.blue()) <= tolerance;
}

} // namespace velmora::test
