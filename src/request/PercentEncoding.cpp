// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "request/RequestUtils.h"

#include <QByteArray>
#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <cstring>

namespace velmora::RequestUtils {

namespace {

constexpr char16_t kHex[] = u"0123456789ABCDEF";

// What each UTF-8 byte becomes: the byte itself for the unreserved set, else "%XY"; the
// characters are packed into 64 bits so that one store writes any of them.
struct Encoded {
    quint64 chars;
    quint8 length;
};

constexpr std::array<Encoded, 256> makeTable() {
    std::array<Encoded, 256> table{};
    for (unsigned b = 0; b < 256; ++b) {
        const bool unreserved = (b >= 'A' && b <= 'Z') || (b >= 'a' && b <= 'z') ||
                                (b >= '0' && b <= '9') || b == '-' || b == '.' || b == '_' ||
                                b == '~';
        if (unreserved) {
            table[b] = {b, 1};
        } else {
            // Little-endian order: the first character in the lowest 16 bits.
            table[b] = {quint64(u'%') | quint64(kHex[b >> 4]) << 16 | quint64(kHex[b & 0xF]) << 32,
                        3};
        }
    }
    return table;
}

constexpr std::array<Encoded, 256> kTable = makeTable();

// Whether four UTF-16 units starting at in are all ASCII, read as one 64-bit word.
inline bool fourAscii(const char16_t* in) {
    quint64 word;
    std::memcpy(&word, in, sizeof word);
    return (word & 0xFF80FF80FF80FF80ULL) == 0;
}

// Writes one byte's encoding. Always stores four characters (the buffer has room for them past
// its end) and moves on by the real length: no branch on whether the byte is escaped, which
// in prose is too irregular to predict.
inline char16_t* put(char16_t* out, unsigned byte) {
    const Encoded& e = kTable[byte];
    std::memcpy(out, &e.chars, sizeof e.chars);
    return out + e.length;
}

inline bool isHigh(char16_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}

inline bool isLow(char16_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

int hexValue(char16_t c) {
    if (c >= u'0' && c <= u'9')
        return c - u'0';
    if (c >= u'A' && c <= u'F')
        return c - u'A' + 10;
    if (c >= u'a' && c <= u'f')
        return c - u'a' + 10;
    return -1;
}

} // namespace

QString URLEncodedString(QStringView text) {
    if (text.isNull())
        return {};
    const char16_t* in = text.utf16();
    const qsizetype n = text.size();

    // One pass from UTF-16 straight to escaped UTF-8. The buffer always has room for three
    // characters per unit still to read, which any ASCII unit needs at most, plus the slack that
    // put() writes past the last character; a non-ASCII unit (up to nine, twelve for a pair)
    // makes sure of its own room first. Counting the length in a pass of its own cost a third of
    // the time.
    constexpr qsizetype slack = 4;
    QString out(3 * n + slack, Qt::Uninitialized);
    char16_t* begin = reinterpret_cast<char16_t*>(out.data());
    char16_t* end = begin + out.size();
    char16_t* p = begin;
    for (qsizetype i = 0; i < n; ++i) {
        while (i + 4 <= n && fourAscii(in + i)) {
            p = put(put(put(put(p, in[i]), in[i + 1]), in[i + 2]), in[i + 3]);
            i += 4;
        }
        if (i == n)
            break;
        const char16_t c = in[i];
        if (c < 0x80) {
            p = put(p, c);
            continue;
        }
        const qsizetype needed = 12 + 3 * (n - i) + slack;
        if (end - p < needed) {
            const qsizetype written = p - begin;
            out.resize(std::max(written + needed, 2 * out.size()));
            begin = reinterpret_cast<char16_t*>(out.data());
            end = begin + out.size();
            p = begin + written;
        }
        if (c < 0x800) {
            p = put(p, 0xC0 | (c >> 6));
            p = put(p, 0x80 | (c & 0x3F));
        } else if (isHigh(c) && i + 1 < n && isLow(in[i + 1])) {
            const char32_t u = 0x10000 + ((char32_t(c) - 0xD800) << 10) + (in[i + 1] - 0xDC00);
            ++i;
            p = put(p, 0xF0 | (u >> 18));
            p = put(p, 0x80 | ((u >> 12) & 0x3F));
            p = put(p, 0x80 | ((u >> 6) & 0x3F));
            p = put(p, 0x80 | (u & 0x3F));
        } else if (isHigh(c) || isLow(c)) {
            p = put(p, '?');
        } else {
            p = put(p, 0xE0 | (c >> 12));
            p = put(p, 0x80 | ((c >> 6) & 0x3F));
            p = put(p, 0x80 | (c & 0x3F));
        }
    }
    const qsizetype length = p - begin;
    out.resize(length);
    // Prose leaves about half of the room unused; give it back when that is worth a realloc,
    // which shrinks in place.
    if (out.capacity() > length + length / 4 + 64)
        out.squeeze();
    return out;
}

QString URLDecodedString(QStringView text, bool decodePlus) {
    if (text.isNull())
        return {};
    // Escapes, "+" and "%" are ASCII, and ASCII bytes never occur inside a UTF-8 sequence, so the
    // bytes can be decoded in place: the write position never passes the read position.
    QByteArray bytes = text.toUtf8();
    char* data = bytes.data();
    const qsizetype n = bytes.size();
    qsizetype out = 0;
    for (qsizetype i = 0; i < n; ++i) {
        const char c = data[i];
        if (c == '%') {
            const int hi = i + 2 < n ? hexValue(char16_t(uchar(data[i + 1]))) : -1;
            const int lo = hi >= 0 ? hexValue(char16_t(uchar(data[i + 2]))) : -1;
            if (lo < 0)
                return {};
            data[out++] = char(hi * 16 + lo);
            i += 2;
        } else if (c == '+' && decodePlus) {
            data[out++] = ' ';
        } else {
            data[out++] = c;
        }
    }
    bytes.truncate(out);
    if (bytes.isEmpty())
        return QStringLiteral("");
    // A leading byte-order mark is text here, not a signature to drop.
    QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless |
                                                       QStringConverter::Flag::ConvertInitialBom);
    QString decoded = decoder.decode(bytes);
    if (decoder.hasError())
        return {};
    return decoded;
}

} // namespace velmora::RequestUtils
