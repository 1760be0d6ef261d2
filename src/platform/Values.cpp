// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/Values.h"

#include <QByteArray>
#include <QDateTime>

#include <cmath>
#include <limits>

namespace velmora::Values {

namespace {

qsizetype skipSpace(QStringView text, qsizetype i) {
    while (i < text.size() && text[i].isSpace())
        ++i;
    return i;
}

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

[[noreturn]] void raise(const QVariant& value, const char* conversion) {
    throw ValueError(QStringLiteral("%1: a %2 value has no such conversion")
                         .arg(QLatin1String(conversion), kindName(value))
                         .toStdString());
}

bool isNumber(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
        return true;
    default:
        return false;
    }
}

qint64 clampToInt64(double d) {
    if (std::isnan(d))
        return 0;
    if (d >= 9223372036854775807.0)
        return std::numeric_limits<qint64>::max();
    if (d <= -9223372036854775808.0)
        return std::numeric_limits<qint64>::min();
    return static_cast<qint64>(d);
}

} // namespace

qint64 integerValue(QStringView text) {
    qsizetype i = skipSpace(text, 0);
    bool negative = false;
    if (i < text.size() && (text[i] == u'+' || text[i] == u'-')) {
        negative = text[i] == u'-';
        ++i;
    }
    // Accumulate as a negative number so that the minimum needs no special case.
    constexpr qint64 min = std::numeric_limits<qint64>::min();
    qint64 acc = 0;
    bool overflow = false;
    for (; i < text.size() && isDigit(text[i]); ++i) {
        const int digit = text[i].unicode() - u'0';
        if (acc < (min + digit) / 10) {
            overflow = true;
            continue;
        }
        acc = acc * 10 - digit;
    }
    if (overflow)
        return negative ? min : std::numeric_limits<qint64>::max();
    if (negative)
        return acc;
    return acc == min ? std::numeric_limits<qint64>::max() : -acc;
}

bool boolValue(QStringView text) {
    qsizetype i = skipSpace(text, 0);
    if (i < text.size() && (text[i] == u'+' || text[i] == u'-'))
        ++i;
    while (i < text.size() && text[i] == u'0')
        ++i;
    if (i >= text.size())
        return false;
    const QChar c = text[i];
    return c == u'Y' || c == u'y' || c == u'T' || c == u't' || (c >= u'1' && c <= u'9');
}

double doubleValue(QStringView text) {
    const qsizetype start = skipSpace(text, 0);
    qsizetype i = start;
    if (i < text.size() && (text[i] == u'+' || text[i] == u'-'))
        ++i;
    qsizetype digits = 0;
    for (; i < text.size() && isDigit(text[i]); ++i)
        ++digits;
    if (i < text.size() && text[i] == u'.') {
        ++i;
        for (; i < text.size() && isDigit(text[i]); ++i)
            ++digits;
    }
    if (digits == 0)
        return 0.0;
    // An exponent counts only when digits follow it: "2e" is 2.
    if (i < text.size() && (text[i] == u'e' || text[i] == u'E')) {
        qsizetype j = i + 1;
        if (j < text.size() && (text[j] == u'+' || text[j] == u'-'))
            ++j;
        if (j < text.size() && isDigit(text[j])) {
            while (j < text.size() && isDigit(text[j]))
                ++j;
            i = j;
        }
    }
    // QByteArray::toDouble reads in the C locale whatever the process's locale is.
    bool ok = false;
    const double d = text.mid(start, i - start).toLatin1().toDouble(&ok);
    // Out of range gives ok false with an infinite result; keep the signed infinity then.
    return ok || std::isinf(d) ? d : 0.0;
}

qint64 integerValue(const QVariant& value) {
    if (!value.isValid() || value.isNull())
        return 0;
    if (value.typeId() == QMetaType::QString)
        return integerValue(QStringView(value.toString()));
    if (value.typeId() == QMetaType::Double || value.typeId() == QMetaType::Float)
        return clampToInt64(value.toDouble());
    if (value.typeId() == QMetaType::ULongLong) {
        const quint64 u = value.toULongLong();
        return u > quint64(std::numeric_limits<qint64>::max()) ? std::numeric_limits<qint64>::max()
                                                               : qint64(u);
    }
    if (isNumber(value))
        return value.toLongLong();
    raise(value, "integerValue");
}

bool boolValue(const QVariant& value) {
    if (!value.isValid() || value.isNull())
        return false;
    if (value.typeId() == QMetaType::QString)
        return boolValue(QStringView(value.toString()));
    if (value.typeId() == QMetaType::Double || value.typeId() == QMetaType::Float)
        return value.toDouble() != 0.0;
    if (isNumber(value))
        return value.toULongLong() != 0;
    raise(value, "boolValue");
}

double doubleValue(const QVariant& value) {
    if (!value.isValid() || value.isNull())
        return 0.0;
    if (value.typeId() == QMetaType::QString)
        return doubleValue(QStringView(value.toString()));
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? 1.0 : 0.0;
    if (isNumber(value))
        return value.toDouble();
    raise(value, "doubleValue");
}

float floatValue(const QVariant& value) {
    return static_cast<float>(doubleValue(value));
}

QString stringValue(const QVariant& value) {
    if (!value.isValid() || value.isNull())
        return {};
    if (value.typeId() == QMetaType::QString)
        return value.toString();
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    if (isNumber(value))
        return value.toString();
    raise(value, "string");
}

QString kindName(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash:
        return QStringLiteral("dictionary");
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return QStringLiteral("array");
    case QMetaType::QString:
        return QStringLiteral("string");
    case QMetaType::QByteArray:
        return QStringLiteral("data");
    case QMetaType::QDateTime:
        return QStringLiteral("date");
    case QMetaType::Bool:
        return QStringLiteral("boolean");
    case QMetaType::Double:
    case QMetaType::Float:
        return QStringLiteral("real");
    case QMetaType::UnknownType:
        return QStringLiteral("missing");
    default:
        return isNumber(value) ? QStringLiteral("integer") : QString::fromLatin1(value.typeName());
    }
}

} // namespace velmora::Values
