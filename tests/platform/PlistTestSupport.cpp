// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "PlistTestSupport.h"

#include <bit>
#include <cmath>

namespace velmora::test {

namespace {

QString show(const QVariant& v) {
    return QStringLiteral("%1(%2)").arg(QString::fromLatin1(v.typeName()), v.toString());
}

QString mismatch(const QVariant& actual, const QVariant& expected, const QString& path) {
    const int type = expected.typeId();
    if (actual.typeId() != type)
        return path + QStringLiteral(": ") + show(actual) + QStringLiteral(" is not ") +
               show(expected);
    if (type == QMetaType::QVariantList || type == QMetaType::QVariantMap) {
        // A list is compared as a map from indexes, so one loop serves both.
        QVariantMap a = actual.toMap(), e = expected.toMap();
        if (type == QMetaType::QVariantList) {
            a.clear();
            e.clear();
            for (const QVariant& item : actual.toList())
                a.insert(QStringLiteral("[%1]").arg(a.size(), 6, 10, QLatin1Char('0')), item);
            for (const QVariant& item : expected.toList())
                e.insert(QStringLiteral("[%1]").arg(e.size(), 6, 10, QLatin1Char('0')), item);
        }
        if (a.keys() != e.keys())
            return path + QStringLiteral(": keys ") + a.keys().join(u',') +
                   QStringLiteral(" not ") + e.keys().join(u',');
        for (auto it = e.cbegin(); it != e.cend(); ++it) {
            const QString m = mismatch(a.value(it.key()), it.value(), path + u'/' + it.key());
            if (!m.isEmpty())
                return m;
        }
        return {};
    }
    if (type == QMetaType::Double && std::isnan(expected.toDouble()) &&
        std::isnan(actual.toDouble()))
        return {};
    if (type == QMetaType::QString && actual.toString().isNull() != expected.toString().isNull())
        return path + QStringLiteral(": null and empty strings differ");
    if (actual != expected)
        return path + QStringLiteral(": ") + show(actual) + QStringLiteral(" != ") + show(expected);
    return {};
}

} // namespace

::testing::AssertionResult sameValue(const QVariant& actual, const QVariant& expected) {
    const QString m = mismatch(actual, expected, QStringLiteral("root"));
    if (m.isEmpty())
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << m.toStdString();
}

namespace bplist {

QByteArray bytes(std::initializer_list<int> values) {
    QByteArray b;
    for (int v : values)
        b += char(v);
    return b;
}

QByteArray bigEndian(quint64 value, int size) {
    QByteArray b(size, '\0');
    for (int i = size - 1; i >= 0; --i, value >>= 8)
        b[i] = char(value & 0xFF);
    return b;
}

QByteArray head(int type, quint64 count) {
    if (count < 15)
        return bytes({type << 4 | int(count)});
    return bytes({type << 4 | 0xF, 0x13}) + bigEndian(count, 8);
}

QByteArray integer(qint64 value) {
    return '\x13' + bigEndian(quint64(value), 8);
}

QByteArray ascii(const QByteArray& text) {
    return head(0x5, quint64(text.size())) + text;
}

QByteArray real(double value) {
    return '\x23' + bigEndian(std::bit_cast<quint64>(value), 8);
}

QByteArray date(double secondsSince2001) {
    return '\x33' + bigEndian(std::bit_cast<quint64>(secondsSince2001), 8);
}

QByteArray array(std::initializer_list<int> refs, int type) {
    return head(type, refs.size()) + bytes(refs);
}

QByteArray dict(std::initializer_list<int> keys, std::initializer_list<int> values) {
    return head(0xD, keys.size()) + bytes(keys) + bytes(values);
}

QByteArray file(const std::vector<QByteArray>& objects, const Trailer& trailer) {
    QByteArray f("bplist00");
    QByteArray table;
    for (const QByteArray& object : objects) {
        table += bigEndian(quint64(f.size()), trailer.offsetSize);
        f += object;
    }
    const quint64 tableOffset = quint64(f.size());
    f += table + QByteArray(6, '\0') + bytes({trailer.offsetSize, trailer.refSize});
    f += bigEndian(trailer.objectCount.value_or(objects.size()), 8);
    f += bigEndian(trailer.topObject, 8);
    f += bigEndian(trailer.tableOffset.value_or(tableOffset), 8);
    return f;
}

} // namespace bplist
} // namespace velmora::test
