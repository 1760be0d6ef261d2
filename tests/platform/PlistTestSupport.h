#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <gtest/gtest.h>
#include <initializer_list>
#include <optional>
#include <vector>

namespace velmora::test {

// Equal values of the same kinds: QVariant's own == would take 5 (qint64) for 5u (quint64) and
// never takes NaN for NaN. On a mismatch the message names the path to it.
::testing::AssertionResult sameValue(const QVariant& actual, const QVariant& expected);

// Builds "bplist00" files object by object, so that tests can state exact bytes, including
// the wrong ones.
class BinaryPlist {
public:
    // Appends an object given as its encoded bytes; returns its reference.
    int add(const QByteArray& object);

    struct Trailer {
        int offsetSize = 2;
        int refSize = 1;
        std::optional<quint64> objectCount;
        quint64 topObject = 0;
        std::optional<quint64> tableOffset;
    };
    QByteArray build(const Trailer& trailer) const;
    QByteArray build(int top = 0) const {
        Trailer t;
        t.topObject = quint64(top);
        return build(t);
    }

    // Encoded objects.
    static QByteArray bigEndian(quint64 value, int size);
    // A marker with its count: in the low nibble, or as an integer object after 0xF.
    static QByteArray head(int type, quint64 count);
    static QByteArray integer(qint64 value) { return '\x13' + bigEndian(quint64(value), 8); }
    static QByteArray ascii(const QByteArray& text) { return head(0x5, text.size()) + text; }
    static QByteArray utf16(const QString& text);
    static QByteArray real(double value);
    static QByteArray date(double secondsSince2001);
    static QByteArray array(std::initializer_list<int> refs, int type = 0xA);
    static QByteArray dict(std::initializer_list<int> keys, std::initializer_list<int> values);

private:
    std::vector<QByteArray> m_objects;
};

} // namespace velmora::test
