// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Our reader against libplist on files that Python's plistlib writes, in both formats.

#include "PlistTestSupport.h"
#include "TestSupport.h"
#include "platform/PropertyList.h"

#include <QDateTime>
#include <QDir>
#include <QTemporaryDir>

#include <cstdlib>
#include <limits>
#include <plist/plist.h>

using velmora::PropertyList;

namespace {

// A few fixed files for the corner cases, then random trees from a fixed seed.
const char* const kCorpusScript = R"PY(
import datetime, os, plistlib, random, sys

out = sys.argv[1]
rnd = random.Random(20240611)
LETTERS = 'abcXYZ019 <>&"\'\n\t' + '\u00e9\u00df\u03a9\u0436\u0915\u65e5\u672c' + '\U0001F600\U0001D11E'
EDGE_INTS = [0, 1, -1, 255, 256, 65535, 65536, 2**31, 2**32 - 1, 2**32, 2**63 - 1, -2**63,
             2**63, 2**64 - 1]

def text():
    return ''.join(rnd.choice(LETTERS) for _ in range(rnd.randrange(12)))

def scalar():
    kind = rnd.randrange(6)
    if kind == 0:
        return text()
    if kind == 1:
        return rnd.choice(EDGE_INTS + [rnd.randrange(-2**63, 2**64)])
    if kind == 2:
        return rnd.choice([0.0, -0.0, 1.5, 1e300, 5e-324, rnd.uniform(-1e6, 1e6)])
    if kind == 3:
        return rnd.random() < 0.5
    if kind == 4:
        return bytes(rnd.randrange(256) for _ in range(rnd.randrange(40)))
    return datetime.datetime(1970, 1, 1) + datetime.timedelta(seconds=rnd.randrange(2**32))

def value(depth):
    if depth > 4 or rnd.random() < 0.3:
        return scalar()
    if rnd.random() < 0.5:
        return [value(depth + 1) for _ in range(rnd.randrange(6))]
    return {text(): value(depth + 1) for _ in range(rnd.randrange(6))}

shared = {'shared': [1, 'two']}
cases = {
    'all_types': {'string': 'text', 'empty': '', 'int': 42, 'neg': -42, 'real': 0.1,
                  'true': True, 'false': False, 'data': b'\x00\x01\xfe\xff', 'nodata': b'',
                  'date': datetime.datetime(2024, 2, 29, 23, 59, 58), 'list': [], 'dict': {},
                  'nan': float('nan'), 'inf': float('inf')},
    'unicode': [LETTERS, '\U0001F600' * 20, {'\u65e5\u672c': '\u00e9'}],
    'large_ints': EDGE_INTS,
    'deep': [[[[[[[[[[[[[[[[[[[[['bottom']]]]]]]]]]]]]]]]]]]]],
    'shared': [shared, shared, {'again': shared}],
    'dates_before_2001': [datetime.datetime(1990, 5, 1, 12, 0, 0), datetime.datetime(1, 1, 1)],
}
cases.update({'random_%02d' % i: value(0) for i in range(30)})
binary_only = {
    # libplist 2.2 refuses a UID of 8 bytes (2**32 and above); the unit tests cover those.
    'uid': [plistlib.UID(0), plistlib.UID(300), plistlib.UID(2**32 - 1)],
    'date_milliseconds': [datetime.datetime(2030, 1, 1, 0, 0, 0, 125000),
                          datetime.datetime(1990, 5, 1, 12, 0, 0, 250000)],
}
for name, v in cases.items():
    with open(os.path.join(out, name + '.xml'), 'wb') as f:
        plistlib.dump(v, f, fmt=plistlib.FMT_XML)
for name, v in list(cases.items()) + list(binary_only.items()):
    with open(os.path.join(out, name + '.bin'), 'wb') as f:
        plistlib.dump(v, f, fmt=plistlib.FMT_BINARY)
)PY";

// libplist 2.2 has a single integer node, unsigned 64-bit: -1 and 2^64 - 1 are one value there.
// Integers are therefore compared by their 64-bit pattern.
QVariant bitPattern(quint64 v) {
    return QVariant(v);
}

// libplist gives a date as whole seconds since 2001 and microseconds, but for a date before
// 2001 it drops the microseconds' sign: -1.25 s comes back as (-1, 250000).
QVariant libplistDate(qint32 sec, qint32 usec) {
    const qint64 micros = qint64(sec) * 1000000 + (sec < 0 ? -usec : usec);
    return QDateTime::fromMSecsSinceEpoch((micros + 978307200LL * 1000000) / 1000, Qt::UTC);
}

QVariant fromLibplist(plist_t node) {
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        uint8_t b = 0;
        plist_get_bool_val(node, &b);
        return bool(b);
    }
    case PLIST_UINT: {
        uint64_t v = 0;
        plist_get_uint_val(node, &v);
        return bitPattern(v);
    }
    case PLIST_REAL: {
        double d = 0;
        plist_get_real_val(node, &d);
        return d;
    }
    case PLIST_STRING: {
        char* s = nullptr;
        plist_get_string_val(node, &s);
        const QString text = QString::fromUtf8(s ? s : "");
        std::free(s);
        return text;
    }
    case PLIST_DATA: {
        char* bytes = nullptr;
        uint64_t length = 0;
        plist_get_data_val(node, &bytes, &length);
        const QByteArray data = length ? QByteArray(bytes, qsizetype(length)) : QByteArray("");
        std::free(bytes);
        return data;
    }
    case PLIST_DATE: {
        int32_t sec = 0, usec = 0;
        plist_get_date_val(node, &sec, &usec);
        return libplistDate(sec, usec);
    }
    case PLIST_UID: {
        uint64_t v = 0;
        plist_get_uid_val(node, &v);
        return QVariantMap{{QStringLiteral("CF$UID"), bitPattern(v)}};
    }
    case PLIST_ARRAY: {
        QVariantList list;
        for (uint32_t i = 0; i < plist_array_get_size(node); ++i)
            list.append(fromLibplist(plist_array_get_item(node, i)));
        return list;
    }
    case PLIST_DICT: {
        QVariantMap map;
        plist_dict_iter it = nullptr;
        plist_dict_new_iter(node, &it);
        for (;;) {
            char* key = nullptr;
            plist_t value = nullptr;
            plist_dict_next_item(node, it, &key, &value);
            if (!key)
                break;
            map.insert(QString::fromUtf8(key), fromLibplist(value));
            std::free(key);
        }
        std::free(it);
        return map;
    }
    default:
        ADD_FAILURE() << "unexpected libplist node type " << plist_get_node_type(node);
        return {};
    }
}

// libplist 2.2 keeps a date's seconds since 2001 in 32 bits; a date outside them, from 2069 on
// or before 1933, comes back as the 32-bit minimum, that is 1932-12-13T20:45:52Z.
QVariant libplistDate(const QDateTime& date) {
    const qint64 since2001 = date.toSecsSinceEpoch() - 978307200LL;
    if (since2001 >= std::numeric_limits<qint32>::min() &&
        since2001 <= std::numeric_limits<qint32>::max())
        return date;
    return libplistDate(std::numeric_limits<qint32>::min(), 0);
}

// Our tree as libplist 2.2 can give it: integers as 64-bit patterns, dates in its range.
QVariant comparable(const QVariant& v) {
    switch (v.typeId()) {
    case QMetaType::LongLong:
        return bitPattern(quint64(v.toLongLong()));
    case QMetaType::QDateTime:
        return libplistDate(v.toDateTime());
    case QMetaType::QVariantList: {
        QVariantList list;
        for (const QVariant& item : v.toList())
            list.append(comparable(item));
        return list;
    }
    case QMetaType::QVariantMap: {
        QVariantMap map = v.toMap();
        for (QVariant& item : map)
            item = comparable(item);
        return map;
    }
    default:
        return v;
    }
}

TEST(PropertyListDifferential, AgreesWithLibplistOnPlistlibFiles) {
    QTemporaryDir dir;
    if (!velmora::test::runPython(QString::fromUtf8(kCorpusScript), {dir.path()}))
        GTEST_SKIP() << "no python3 to write the corpus";
    const QStringList names = QDir(dir.path()).entryList(QDir::Files, QDir::Name);
    ASSERT_GE(names.size(), 70);
    for (const QString& name : names) {
        SCOPED_TRACE(name.toStdString());
        const QByteArray data = velmora::test::readFile(dir.filePath(name));
        QString error;
        const QVariant ours = PropertyList::fromData(data, &error);
        ASSERT_TRUE(ours.isValid()) << error.toStdString();

        plist_t root = nullptr;
        plist_from_memory(data.constData(), uint32_t(data.size()), &root);
        ASSERT_NE(root, nullptr);
        const QVariant theirs = fromLibplist(root);
        plist_free(root);
        EXPECT_TRUE(velmora::test::sameValue(comparable(ours), theirs));
    }
}

} // namespace
