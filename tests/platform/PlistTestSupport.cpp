#include "PlistTestSupport.h"

#include <QDateTime>
#include <QtEndian>

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
    if (type == QMetaType::QVariantList) {
        const QVariantList a = actual.toList();
        const QVariantList e = expected.toList();
        if (a.size() != e.size())
            return path + QStringLiteral(": %1 items, expected %2").arg(a.size()).arg(e.size());
        for (qsizetype i = 0; i < a.size(); ++i) {
            const QString m = mismatch(a[i], e[i], path + QStringLiteral("[%1]").arg(i));
            if (!m.isEmpty())
                return m;
        }
        return {};
    }
    if (type == QMetaType::QVariantMap) {
        const QVariantMap a = actual.toMap();
        const QVariantMap e = expected.toMap();
        if (a.keys() != e.keys())
            return path + QStringLiteral(": keys ") + a.keys().join(u',') +
                   QStringLiteral(", expected ") + e.keys().join(u',');
        for (auto it = e.cbegin(); it != e.cend(); ++it) {
            const QString m = mismatch(a.value(it.key()), it.value(), path + u'.' + it.key());
            if (!m.isEmpty())
                return m;
        }
        return {};
    }
    if (type == QMetaType::Double && std::isnan(expected.toDouble()))
        return std::isnan(actual.toDouble()) ? QString() : path + QStringLiteral(": not NaN");
    if (type == QMetaType::QString && actual.toString().isNull() != expected.toString().isNull())
        return path + QStringLiteral(": null and empty strings differ");
    return actual == expected ? QString()
                              : path + QStringLiteral(": ") + show(actual) +
                                    QStringLiteral(" != ") + show(expected);
}

} // namespace

::testing::AssertionResult sameValue(const QVariant& actual, const QVariant& expected) {
    const QString m = mismatch(actual, expected, QStringLiteral("root"));
    if (m.isEmpty())
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << m.toStdString();
}

int BinaryPlist::add(const QByteArray& object) {
    m_objects.push_back(object);
    return int(m_objects.size()) - 1;
}

QByteArray BinaryPlist::build(const Trailer& trailer) const {
    QByteArray file("bplist00");
    std::vector<quint64> offsets;
    for (const QByteArray& object : m_objects) {
        offsets.push_back(quint64(file.size()));
        file += object;
    }
    const quint64 tableOffset = quint64(file.size());
    for (quint64 offset : offsets)
        file += bigEndian(offset, trailer.offsetSize);
    file += QByteArray(6, '\0');
    file += char(trailer.offsetSize);
    file += char(trailer.refSize);
    file += bigEndian(trailer.objectCount.value_or(m_objects.size()), 8);
    file += bigEndian(trailer.topObject, 8);
    file += bigEndian(trailer.tableOffset.value_or(tableOffset), 8);
    return file;
}

QByteArray BinaryPlist::bigEndian(quint64 value, int size) {
    QByteArray bytes(size, '\0');
    for (int i = size - 1; i >= 0; --i, value >>= 8)
        bytes[i] = char(value & 0xFF);
    return bytes;
}

QByteArray BinaryPlist::head(int type, quint64 count) {
    if (count < 15)
        return QByteArray(1, char(type << 4 | int(count)));
    return QByteArray(1, char(type << 4 | 0xF)) + '\x13' + bigEndian(count, 8);
}

QByteArray BinaryPlist::utf16(const QString& text) {
    QByteArray units(text.size() * 2, '\0');
    qToBigEndian<char16_t>(text.utf16(), text.size(), units.data());
    return head(0x6, text.size()) + units;
}

QByteArray BinaryPlist::real(double value) {
    return '\x23' + bigEndian(std::bit_cast<quint64>(value), 8);
}

QByteArray BinaryPlist::date(double secondsSince2001) {
    return '\x33' + bigEndian(std::bit_cast<quint64>(secondsSince2001), 8);
}

QByteArray BinaryPlist::array(std::initializer_list<int> refs, int type) {
    QByteArray bytes = head(type, refs.size());
    for (int ref : refs)
        bytes += char(ref);
    return bytes;
}

QByteArray BinaryPlist::dict(std::initializer_list<int> keys, std::initializer_list<int> values) {
    QByteArray bytes = head(0xD, keys.size());
    for (int ref : keys)
        bytes += char(ref);
    for (int ref : values)
        bytes += char(ref);
    return bytes;
}

} // namespace velmora::test
