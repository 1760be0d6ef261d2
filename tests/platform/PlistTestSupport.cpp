// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "PlistTestSupport.h"

#include <QStringList>

#include <bit>

namespace velmora::test {

namespace {

QString shown(const QVariant& v) {
    QStringList items;
    switch (v.typeId()) {
    case QMetaType::QVariantList:
        for (const QVariant& item : v.toList())
            items.append(shown(item));
        return u'[' + items.join(u',') + u']';
    case QMetaType::QVariantMap: {
        const QVariantMap map = v.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            items.append(it.key() + u'=' + shown(it.value()));
        return u'{' + items.join(u',') + u'}';
    }
    case QMetaType::QByteArray:
        return QStringLiteral("data(%1)").arg(QString::fromLatin1(v.toByteArray().toHex()));
    case QMetaType::Double:
        return QStringLiteral("double(%1)").arg(v.toDouble(), 0, 'g', 17);
    case QMetaType::QString:
        if (v.toString().isNull())
            return QStringLiteral("null string");
        break;
    default:
        break;
    }
    return QStringLiteral("%1(%2)").arg(QString::fromLatin1(v.typeName()), v.toString());
}

} // namespace

::testing::AssertionResult sameValue(const QVariant& actual, const QVariant& expected) {
    const QString a = shown(actual);
    const QString e = shown(expected);
    if (a == e)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << a.toStdString() << "\nis not\n" << e.toStdString();
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
