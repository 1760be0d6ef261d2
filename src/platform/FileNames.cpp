// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/FileNames.h"

#include <sys/stat.h>

namespace velmora::FileNames {

namespace {

// Lone low surrogates that stand for the bytes 0x80..0xFF of a name.
constexpr char16_t kEscapeBase = 0xDC00;
constexpr char16_t kFirstEscape = 0xDC80;
constexpr char16_t kLastEscape = 0xDCFF;

bool isEscape(char16_t c) {
    return c >= kFirstEscape && c <= kLastEscape;
}

// The length of the valid UTF-8 sequence at bytes[i], or 0 when there is none: overlong forms,
// encoded surrogates and code points above U+10FFFF are not valid.
qsizetype validSequenceAt(QByteArrayView bytes, qsizetype i) {
    const auto byte = [&](qsizetype k) { return uchar(bytes[k]); };
    const uchar lead = byte(i);
    if (lead < 0x80)
        return 1;
    qsizetype length;
    uchar low = 0x80;
    uchar high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        if (lead == 0xE0)
            low = 0xA0;
        else if (lead == 0xED)
            high = 0x9F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        if (lead == 0xF0)
            low = 0x90;
        else if (lead == 0xF4)
            high = 0x8F;
    } else {
        return 0;
    }
    if (i + length > bytes.size())
        return 0;
    if (byte(i + 1) < low || byte(i + 1) > high)
        return 0;
    for (qsizetype k = 2; k < length; ++k) {
        if (byte(i + k) < 0x80 || byte(i + k) > 0xBF)
            return 0;
    }
    return length;
}

} // namespace

QString decode(QByteArrayView bytes) {
    if (bytes.isValidUtf8())
        return QString::fromUtf8(bytes);
    QString name;
    name.reserve(bytes.size());
    for (qsizetype i = 0; i < bytes.size();) {
        const qsizetype length = validSequenceAt(bytes, i);
        if (length == 0) {
            name.append(QChar(char16_t(kEscapeBase + uchar(bytes[i]))));
            ++i;
        } else {
            name.append(QString::fromUtf8(bytes.sliced(i, length)));
            i += length;
        }
    }
    return name;
}

QByteArray encode(QStringView name) {
    QByteArray bytes;
    bytes.reserve(name.size());
    qsizetype start = 0; // the run of ordinary characters not yet encoded
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (!isEscape(name[i].unicode()))
            continue;
        // A low surrogate right after a high one is half of a pair, not an escape.
        if (i > 0 && name[i - 1].isHighSurrogate())
            continue;
        bytes += name.sliced(start, i - start).toUtf8();
        bytes += char(name[i].unicode() - kEscapeBase);
        start = i + 1;
    }
    bytes += name.sliced(start).toUtf8();
    return bytes;
}

QString displayable(QString name) {
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (isEscape(name[i].unicode()) && !(i > 0 && name[i - 1].isHighSurrogate()))
            name[i] = QChar::ReplacementCharacter;
    }
    return name;
}

bool exists(const QString& path) {
    struct stat st {};
    return ::stat(encode(path).constData(), &st) == 0;
}

bool isRegularFile(const QString& path) {
    struct stat st {};
    return ::stat(encode(path).constData(), &st) == 0 && S_ISREG(st.st_mode);
}

} // namespace velmora::FileNames
