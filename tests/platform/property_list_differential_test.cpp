// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Random trees from a fixed seed, written by libplist in both formats and read back by ours.

#include "PlistTestSupport.h"
#include "platform/PropertyList.h"

#include <QDateTime>

#include <cstdlib>
#include <plist/plist.h>
#include <random>
#include <string>

using velmora::PropertyList;

namespace {

// A value as we expect to read it, and the same value as a libplist node.
struct Tree {
    QVariant value;
    plist_t node;
};

class RandomTrees {
public:
    Tree tree(int depth) {
        if (depth > 4 || below(10) < 3)
            return scalar();
        const bool isList = below(2);
        const plist_t node = isList ? plist_new_array() : plist_new_dict();
        QVariantList list;
        QVariantMap map;
        for (int n = below(6); n > 0; --n) {
            const QString key = text();
            const Tree item = tree(depth + 1);
            if (isList) {
                list.append(item.value);
                plist_array_append_item(node, item.node);
            } else {
                map.insert(key, item.value);
                plist_dict_set_item(node, key.toUtf8().constData(), item.node);
            }
        }
        return {isList ? QVariant(list) : QVariant(map), node};
    }

private:
    int below(int n) { return int(m_random() % quint64(n)); }

    // Long enough that some counts take an integer object of their own in the binary format.
    QString text() {
        static const std::u32string letters =
            U"abcXYZ019 <>&\"'\n\t\u00e9\u00df\u03a9\u0436\u0915\u65e5\U0001F600\U0001D11E";
        QString s = QStringLiteral("");
        for (int n = below(20); n > 0; --n)
            s += QString::fromUcs4(&letters[below(int(letters.size()))], 1);
        return s;
    }

    Tree scalar() {
        static const double edgeReals[] = {0.0, -0.0, 1.5, 1e300, 5e-324, -0.1};
        switch (below(7)) {
        case 0: {
            const QString s = text();
            return {s, plist_new_string(s.toUtf8().constData())};
        }
        case 1: {
            // Mostly powers of two and their neighbours, either sign: where the widths change.
            quint64 v = (quint64(1) << below(64)) + quint64(below(3)) - 1;
            if (below(2))
                v = 0 - v;
            if (below(4) == 0)
                v = m_random();
            // libplist 2.2 keeps integers as unsigned 64 bits and writes those from 2^63 up as
            // their signed pattern, in both formats: they read back as negative numbers.
            return {QVariant(qint64(v)), plist_new_uint(v)};
        }
        case 2: {
            const double d =
                below(2) ? edgeReals[below(std::size(edgeReals))] : double(m_random()) / 7e12;
            return {d, plist_new_real(d)};
        }
        case 3: {
            const bool b = below(2);
            return {b, plist_new_bool(b)};
        }
        case 4: {
            QByteArray data("");
            for (int n = below(40); n > 0; --n)
                data += char(below(256));
            return {data, plist_new_data(data.constData(), quint64(data.size()))};
        }
        case 5: {
            const qint32 since2001 = qint32(quint32(m_random()));
            return {QDateTime::fromSecsSinceEpoch(978307200LL + since2001, Qt::UTC),
                    plist_new_date(since2001, 0)};
        }
        default: {
            const quint64 uid = below(2) ? quint64(below(300)) : quint64(quint32(m_random()));
            return {QVariantMap{{QStringLiteral("CF$UID"), QVariant(qint64(uid))}},
                    plist_new_uid(uid)};
        }
        }
    }

    std::mt19937_64 m_random{20240611};
};

TEST(PropertyListDifferential, ReadsWhatLibplistWritesInBothFormats) {
    RandomTrees random;
    for (int i = 0; i < 200; ++i) {
        const Tree tree = random.tree(0);
        for (const bool binary : {false, true}) {
            SCOPED_TRACE(testing::Message() << "tree " << i << (binary ? " binary" : " XML"));
            char* out = nullptr;
            uint32_t length = 0;
            (binary ? plist_to_bin : plist_to_xml)(tree.node, &out, &length);
            const QByteArray data(out, qsizetype(length));
            std::free(out);
            QString error;
            const QVariant ours = PropertyList::fromData(data, &error);
            ASSERT_TRUE(ours.isValid()) << error.toStdString() << "\n" << data.toStdString();
            EXPECT_TRUE(velmora::test::sameValue(ours, tree.value));
        }
        plist_free(tree.node);
    }
}

} // namespace
