#include "request/RequestUtils.h"

#include <QByteArray>
#include <QStringDecoder>

#include <array>

namespace velmora::RequestUtils {

namespace {

// How many characters each UTF-8 byte takes once encoded: 1 for the unreserved set, else 3.
constexpr std::array<quint8, 256> makeCost() {
    std::array<quint8, 256> cost{};
    for (int b = 0; b < 256; ++b) {
        const bool unreserved = (b >= 'A' && b <= 'Z') || (b >= 'a' && b <= 'z') ||
                                (b >= '0' && b <= '9') || b == '-' || b == '.' || b == '_' ||
                                b == '~';
        cost[b] = unreserved ? 1 : 3;
    }
    return cost;
}

constexpr std::array<quint8, 256> kCost = makeCost();
constexpr char16_t kHex[] = u"0123456789ABCDEF";

inline char16_t* putEscape(char16_t* out, unsigned byte) {
    out[0] = u'%';
    out[1] = kHex[byte >> 4];
    out[2] = kHex[byte & 0xF];
    return out + 3;
}

inline bool isHigh(char16_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}

inline bool isLow(char16_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

// The encoded length of text, from one look-up per ASCII unit; surrogate pairs count together.
qsizetype encodedLength(const char16_t* in, qsizetype n) {
    qsizetype length = 0;
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t c = in[i];
        if (c < 0x80) {
            length += kCost[c];
        } else if (c < 0x800) {
            length += 6;
        } else if (isHigh(c) && i + 1 < n && isLow(in[i + 1])) {
            length += 12;
            ++i;
        } else if (isHigh(c) || isLow(c)) {
            length += 3; // an unpaired surrogate is written as "?"
        } else {
            length += 9;
        }
    }
    return length;
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
    const qsizetype length = encodedLength(in, n);
    if (length == n)
        return text.toString();

    // One pass from UTF-16 straight to escaped UTF-8, into a buffer of the exact size: non-ASCII
    // bytes are always escaped, so they never need the table.
    QString out(length, Qt::Uninitialized);
    char16_t* p = reinterpret_cast<char16_t*>(out.data());
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t c = in[i];
        if (c < 0x80) {
            if (kCost[c] == 1)
                *p++ = c;
            else
                p = putEscape(p, c);
        } else if (c < 0x800) {
            p = putEscape(p, 0xC0 | (c >> 6));
            p = putEscape(p, 0x80 | (c & 0x3F));
        } else if (isHigh(c) && i + 1 < n && isLow(in[i + 1])) {
            const char32_t u = 0x10000 + ((char32_t(c) - 0xD800) << 10) + (in[i + 1] - 0xDC00);
            ++i;
            p = putEscape(p, 0xF0 | (u >> 18));
            p = putEscape(p, 0x80 | ((u >> 12) & 0x3F));
            p = putEscape(p, 0x80 | ((u >> 6) & 0x3F));
            p = putEscape(p, 0x80 | (u & 0x3F));
        } else if (isHigh(c) || isLow(c)) {
            p = putEscape(p, '?');
        } else {
            p = putEscape(p, 0xE0 | (c >> 12));
            p = putEscape(p, 0x80 | ((c >> 6) & 0x3F));
            p = putEscape(p, 0x80 | (c & 0x3F));
        }
    }
    Q_ASSERT(p == reinterpret_cast<char16_t*>(out.data()) + length);
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
