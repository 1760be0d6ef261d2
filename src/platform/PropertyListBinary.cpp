// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/PropertyList.h"
#include "platform/PropertyListPrivate.h"

#include <QDateTime>
#include <QVariantList>
#include <QVariantMap>
#include <QtEndian>

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

namespace velmora {

namespace {

using plist::Malformed;

constexpr qsizetype kHeaderSize = 8;
constexpr qsizetype kTrailerSize = 32;
constexpr quint64 kMaxSigned = quint64(std::numeric_limits<qint64>::max());
// Seconds from 1970-01-01 to 2001-01-01, the epoch of binary dates.
constexpr qint64 kEpoch2001 = 978307200;

quint64 readBigEndian(const uchar* p, int size) {
    quint64 value = 0;
    for (int i = 0; i < size; ++i)
        value = (value << 8) | p[i];
    return value;
}

bool isValidIntSize(int size) {
    return size == 1 || size == 2 || size == 4 || size == 8;
}

// Decodes a "bplist00" file. Every object is decoded at most once and kept, so that any number
// of references to it cost one QVariant copy each (the containers share their data).
class BinaryReader {
public:
    BinaryReader(const QByteArray& data, const PropertyList::Limits& limits)
        : m_data(reinterpret_cast<const uchar*>(data.constData()))
        , m_size(quint64(data.size()))
        , m_limits(limits) {}

    QVariant read() {
        open();
        int height = 0;
        return object(m_topObject, 1, &height);
    }

    // Visits the elements of a root array one at a time; an element that nothing else refers
    // to is released after its visit, and is handed over as its entries when it is a dictionary.
    void forEachTopElement(PropertyListElementVisitor& visitor) {
        open();
        const quint64 offset = objectOffset(m_topObject);
        const uchar marker = m_data[offset];
        // A set reads as a list, as it does in a whole read.
        if ((marker >> 4) != 0xA && (marker >> 4) != 0xC)
            fail(m_topObject, QStringLiteral("is the root and not an array"));
        Cursor at{m_topObject, offset + 1};
        const quint64 n = count(at, marker & 0x0F);
        const uchar* refs = bytes(at, n * quint64(m_refSize));
        m_slot[size_t(m_topObject)] = kBusy;
        for (quint64 i = 0; i < n; ++i) {
            const quint64 ref = reference(refs + i * quint64(m_refSize));
            if (visitEntries(ref, visitor))
                continue;
            int height = 0;
            visitor.value(object(ref, 2, &height));
        }
    }

private:
    void open() {
        if (m_size < quint64(kHeaderSize + kTrailerSize) || std::memcmp(m_data, "bplist00", 8) != 0)
            throw Malformed{QStringLiteral("the data is not a bplist00 file")};
        readTrailer();
        countReferences();
    }

    // How often containers refer to each object, saturating at 2: only objects referred to more
    // than once are kept after decoding, so shared objects are still decoded once while the
    // rest of the tree is freed as soon as its owner is. Objects whose headers do not read are
    // skipped here; decoding reports them if they are reachable.
    void countReferences() {
        m_references.assign(size_t(m_objectCount), 0);
        for (quint64 ref = 0; ref < m_objectCount; ++ref) {
            try {
                const quint64 offset = objectOffset(ref);
                const uchar marker = m_data[offset];
                const int kind = marker >> 4;
                if (kind != 0xA && kind != 0xC && kind != 0xD)
                    continue;
                Cursor at{ref, offset + 1};
                const quint64 n = count(at, marker & 0x0F) * (kind == 0xD ? 2 : 1);
                const uchar* refs = bytes(at, n * quint64(m_refSize));
                for (quint64 i = 0; i < n; ++i) {
                    const quint64 target = reference(refs + i * quint64(m_refSize));
                    if (target < m_objectCount && m_references[size_t(target)] < 2)
                        ++m_references[size_t(target)];
                }
            } catch (const Malformed&) {
            }
        }
    }

    quint64 objectOffset(quint64 ref) const {
        const quint64 entry = m_tableOffset + ref * quint64(m_offsetSize);
        const quint64 offset = readBigEndian(m_data + entry, m_offsetSize);
        if (offset < quint64(kHeaderSize) || offset >= m_tableOffset)
            fail(ref, QStringLiteral("has the offset %1, outside the object area").arg(offset));
        return offset;
    }

    [[noreturn]] void fail(quint64 ref, const QString& what) const {
        throw Malformed{QStringLiteral("object %1 %2").arg(ref).arg(what)};
    }

    void readTrailer() {
        const uchar* t = m_data + m_size - kTrailerSize;
        m_offsetSize = t[6];
        m_refSize = t[7];
        m_objectCount = readBigEndian(t + 8, 8);
        m_topObject = readBigEndian(t + 16, 8);
        m_tableOffset = readBigEndian(t + 24, 8);
        const quint64 trailerStart = m_size - kTrailerSize;
        auto bad = [](const QString& what) { throw Malformed{QStringLiteral("trailer: ") + what}; };
        if (!isValidIntSize(m_offsetSize) || !isValidIntSize(m_refSize))
            bad(QStringLiteral("offset size %1 or reference size %2 is not 1, 2, 4 or 8")
                    .arg(m_offsetSize)
                    .arg(m_refSize));
        if (m_objectCount == 0 || m_topObject >= m_objectCount)
            bad(QStringLiteral("top object %1 of %2 objects").arg(m_topObject).arg(m_objectCount));
        if (m_tableOffset <= quint64(kHeaderSize) || m_tableOffset >= trailerStart ||
            m_objectCount > (trailerStart - m_tableOffset) / quint64(m_offsetSize))
            bad(QStringLiteral("the offset table of %1 objects at byte %2 does not fit the file")
                    .arg(m_objectCount)
                    .arg(m_tableOffset));
        if (m_objectCount > quint64(m_limits.maxObjects) || m_objectCount >= kBusy)
            bad(QStringLiteral("%1 objects, more than the limit of %2")
                    .arg(m_objectCount)
                    .arg(m_limits.maxObjects));
        m_slot.assign(size_t(m_objectCount), 0);
        // Files rarely declare objects they do not use; pages of a reservation that is never
        // filled are never touched.
        m_done.reserve(size_t(m_objectCount));
    }

    // A dictionary element of the root array that nothing else refers to, handed to the visitor
    // as its entries; false leaves the element to object(), which also reports its faults.
    bool visitEntries(quint64 ref, PropertyListElementVisitor& visitor) {
        constexpr int kDepth = 2;
        if (ref >= m_objectCount || m_slot[size_t(ref)] != 0 || m_references[size_t(ref)] > 1 ||
            kDepth > m_limits.maxDepth)
            return false;
        const quint64 offset = objectOffset(ref);
        const uchar marker = m_data[offset];
        if ((marker >> 4) != 0xD)
            return false;
        m_slot[size_t(ref)] = kBusy;
        Cursor at{ref, offset + 1};
        int height = 1;
        m_held.clear();
        entries(at, count(at, marker & 0x0F), kDepth, &height, [&](Held&& k, Held&& v) {
            m_held.push_back(std::move(k));
            m_held.push_back(std::move(v));
        });
        m_slot[size_t(ref)] = 0;
        m_view.clear();
        for (size_t i = 0; i < m_held.size(); i += 2) {
            m_view.push_back(
                {static_cast<const QString*>(m_held[i].get().constData()), &m_held[i + 1].get()});
        }
        visitor.dictionary(m_view);
        return true;
    }

    // An object as a container's entry takes it: the kept value itself when the object is
    // shared and decoded already, else a value of its own.
    struct Held {
        const QVariant* kept = nullptr;
        QVariant fresh;
        const QVariant& get() const { return kept ? *kept : fresh; }
    };

    // The kept value of an object decoded before, or null when it is still to be decoded.
    const QVariant* kept(quint64 ref, int depth, int* height) const {
        if (ref >= m_objectCount)
            fail(ref, QStringLiteral("does not exist: the file has %1").arg(m_objectCount));
        const quint32 slot = m_slot[size_t(ref)];
        if (slot == kBusy)
            fail(ref, QStringLiteral("contains itself"));
        if (slot == 0)
            return nullptr;
        const Decoded& done = m_done[slot - 1];
        // A shared object reached at a deeper place still counts its full height there.
        if (depth + done.height - 1 > m_limits.maxDepth)
            fail(ref, QStringLiteral("nests deeper than %1 levels").arg(m_limits.maxDepth));
        *height = done.height;
        return &done.value;
    }

    void fetch(quint64 ref, int depth, int* height, Held& into) {
        into.kept = kept(ref, depth, height);
        if (!into.kept)
            into.fresh = decodeOnce(ref, depth, height);
    }

    // The object at ref, at the given nesting depth; height receives how many levels it spans.
    QVariant object(quint64 ref, int depth, int* height) {
        if (const QVariant* value = kept(ref, depth, height))
            return *value;
        return decodeOnce(ref, depth, height);
    }

    // Decodes an object that is not kept yet, and keeps it when more than one container refers
    // to it.
    QVariant decodeOnce(quint64 ref, int depth, int* height) {
        if (depth > m_limits.maxDepth)
            fail(ref, QStringLiteral("nests deeper than %1 levels").arg(m_limits.maxDepth));
        m_slot[size_t(ref)] = kBusy;
        *height = 1;
        QVariant value = decode(ref, depth, height);
        if (m_references[size_t(ref)] > 1) {
            // Room for every object was reserved, so kept values never move: entries handed
            // over point at them.
            Q_ASSERT(m_done.size() < m_done.capacity());
            m_done.push_back({value, *height});
            m_slot[size_t(ref)] = quint32(m_done.size());
        } else {
            // Reached once: nothing will ask for it again, so it is not kept.
            m_slot[size_t(ref)] = 0;
        }
        return value;
    }

    QVariant decode(quint64 ref, int depth, int* height) {
        const quint64 offset = objectOffset(ref);
        Cursor at{ref, offset + 1};
        const uchar marker = m_data[offset];
        const int low = marker & 0x0F;
        switch (marker >> 4) {
        case 0x0:
            if (marker == 0x08 || marker == 0x09)
                return marker == 0x09;
            break;
        case 0x1:
            return integer(at, low);
        case 0x2:
            if (low == 2)
                return double(std::bit_cast<float>(quint32(readBigEndian(bytes(at, 4), 4))));
            if (low == 3)
                return std::bit_cast<double>(readBigEndian(bytes(at, 8), 8));
            break;
        case 0x3:
            if (low == 3)
                return date(at);
            break;
        case 0x4: {
            const quint64 n = count(at, low);
            return QByteArray(reinterpret_cast<const char*>(bytes(at, n)), qsizetype(n));
        }
        case 0x5: {
            // Writers keep these to ASCII; any other byte is read as Latin-1 rather than refused.
            const quint64 n = count(at, low);
            return QString::fromLatin1(reinterpret_cast<const char*>(bytes(at, n)), qsizetype(n));
        }
        case 0x6:
            return utf16(at, count(at, low));
        case 0x8:
            return uid(at, low + 1);
        case 0xA:
        case 0xC:
            return list(at, count(at, low), depth, height);
        case 0xD:
            return dict(at, count(at, low), depth, height);
        default:
            break;
        }
        // 0x00 (null) and 0x0F (fill) have no value to give, so they count as malformed too.
        fail(ref, QStringLiteral("at byte %1 has the unknown marker 0x%2")
                      .arg(offset)
                      .arg(marker, 2, 16, QLatin1Char('0')));
    }

    struct Cursor {
        quint64 ref;
        quint64 pos;
    };

    // n bytes at the cursor, which moves past them; they must lie before the offset table.
    const uchar* bytes(Cursor& at, quint64 n) const {
        if (n > m_tableOffset - at.pos)
            fail(at.ref, QStringLiteral("runs past the object area at byte %1").arg(at.pos));
        const uchar* p = m_data + at.pos;
        at.pos += n;
        return p;
    }

    // An element count: the marker's low nibble, or when that is 0xF the integer that follows.
    quint64 count(Cursor& at, int low) const {
        if (low != 0xF)
            return quint64(low);
        const uchar marker = *bytes(at, 1);
        if ((marker >> 4) != 0x1 || (marker & 0x0F) > 3)
            fail(at.ref, QStringLiteral("has a count that is not an integer of 1 to 8 bytes"));
        const int size = 1 << (marker & 0x0F);
        const quint64 n = readBigEndian(bytes(at, quint64(size)), size);
        // Every element takes at least one byte, so a count beyond the file is refused here
        // before anything is allocated for it.
        if (n > m_size)
            fail(at.ref, QStringLiteral("has the impossible count %1").arg(n));
        return n;
    }

    QVariant integer(Cursor& at, int low) const {
        if (low > 4)
            fail(at.ref, QStringLiteral("is an integer of 2^%1 bytes").arg(low));
        if (low < 3)
            return qint64(readBigEndian(bytes(at, quint64(1) << low), 1 << low));
        if (low == 3)
            return qint64(readBigEndian(bytes(at, 8), 8));
        // 16 bytes: a signed 128-bit number; what fits 64 bits is kept, unsigned when it must.
        const uchar* p = bytes(at, 16);
        const quint64 high = readBigEndian(p, 8);
        const quint64 lowBits = readBigEndian(p + 8, 8);
        if (high == 0)
            return lowBits <= kMaxSigned ? QVariant(qint64(lowBits)) : QVariant(lowBits);
        if (high == ~quint64(0) && lowBits > kMaxSigned)
            return qint64(lowBits);
        fail(at.ref, QStringLiteral("is an integer outside the 64-bit range"));
    }

    QVariant date(Cursor& at) const {
        const double seconds = std::bit_cast<double>(readBigEndian(bytes(at, 8), 8));
        // About ±300,000 years: far beyond any real date, well inside what QDateTime holds.
        constexpr double kLimit = 1e13;
        if (!(std::fabs(seconds) <= kLimit))
            fail(at.ref, QStringLiteral("is a date out of range"));
        const qint64 ms = std::llround(seconds * 1000.0) + kEpoch2001 * 1000;
        return QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC);
    }

    QVariant utf16(Cursor& at, quint64 units) const {
        const uchar* p = bytes(at, units * 2);
        QString s(qsizetype(units), Qt::Uninitialized);
        // Unpaired surrogates pass through as they are: QString holds UTF-16 units, not text.
        qFromBigEndian<char16_t>(p, qsizetype(units), s.data());
        return s;
    }

    QVariant uid(Cursor& at, int size) const {
        if (size > 8)
            fail(at.ref, QStringLiteral("is a UID of %1 bytes").arg(size));
        const quint64 value = readBigEndian(bytes(at, quint64(size)), size);
        if (value > kMaxSigned)
            fail(at.ref, QStringLiteral("is a UID outside the 64-bit range"));
        static const QString kUidKey = QStringLiteral("CF$UID");
        return QVariantMap{{kUidKey, qint64(value)}};
    }

    quint64 reference(const uchar* p) const { return readBigEndian(p, m_refSize); }

    QVariant list(Cursor& at, quint64 n, int depth, int* height) {
        const uchar* refs = bytes(at, n * quint64(m_refSize));
        QVariantList items;
        items.reserve(qsizetype(n));
        for (quint64 i = 0; i < n; ++i) {
            int child = 0;
            items.append(object(reference(refs + i * quint64(m_refSize)), depth + 1, &child));
            *height = qMax(*height, child + 1);
        }
        return items;
    }

    QVariant dict(Cursor& at, quint64 n, int depth, int* height) {
        QVariantMap map;
        entries(at, n, depth, height, [&](Held&& k, Held&& v) {
            // A later duplicate key replaces the earlier value, as in XML.
            map.insert(map.cend(), *static_cast<const QString*>(k.get().constData()), v.get());
        });
        return map;
    }

    // Calls sink with each key and value of the dictionary of n entries at the cursor (at depth),
    // in the order of the file.
    template <typename Sink>
    void entries(Cursor& at, quint64 n, int depth, int* height, Sink&& sink) {
        const uchar* keys = bytes(at, n * quint64(m_refSize));
        const uchar* values = bytes(at, n * quint64(m_refSize));
        for (quint64 i = 0; i < n; ++i) {
            int child = 0;
            const quint64 keyRef = reference(keys + i * quint64(m_refSize));
            Held k;
            fetch(keyRef, depth + 1, &child, k);
            if (k.get().typeId() != QMetaType::QString)
                fail(at.ref,
                     QStringLiteral("has the key object %1, which is not a string").arg(keyRef));
            Held v;
            fetch(reference(values + i * quint64(m_refSize)), depth + 1, &child, v);
            *height = qMax(*height, child + 1);
            sink(std::move(k), std::move(v));
        }
    }

    struct Decoded {
        QVariant value;
        int height;
    };
    // m_slot[ref]: 0 before the object is decoded, kBusy while it is, then its index in m_done
    // plus one. Four bytes per object however many are never referenced.
    static constexpr quint32 kBusy = std::numeric_limits<quint32>::max();

    const uchar* m_data;
    quint64 m_size;
    const PropertyList::Limits& m_limits;
    int m_offsetSize = 0;
    int m_refSize = 0;
    quint64 m_objectCount = 0;
    quint64 m_topObject = 0;
    quint64 m_tableOffset = 0;
    std::vector<quint32> m_slot;
    std::vector<quint8> m_references;
    std::vector<Decoded> m_done;
    // The keys and values of the root array's current dictionary, in turn, and their entries.
    std::vector<Held> m_held;
    std::vector<PropertyListEntry> m_view;
};

} // namespace

namespace plist {

void forEachBinaryArrayElement(const QByteArray& data, const PropertyList::Limits& limits,
                               PropertyListElementVisitor& visitor) {
    checkInputSize(data.size(), limits);
    BinaryReader(data, limits).forEachTopElement(visitor);
}

void forEachBinaryArrayElement(const QByteArray& data, const PropertyList::Limits& limits,
                               const ElementVisitor& visit) {
    TreeVisitor visitor(visit);
    forEachBinaryArrayElement(data, limits, visitor);
}

} // namespace plist

QVariant PropertyList::fromBinary(const QByteArray& data, QString* error, const Limits& limits) {
    return plist::guarded(QStringLiteral("binary property list"), error, [&] {
        plist::checkInputSize(data.size(), limits);
        return BinaryReader(data, limits).read();
    });
}

} // namespace velmora
