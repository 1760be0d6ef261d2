// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/PropertyList.h"
#include "platform/PropertyListPrivate.h"

#include <QDateTime>
#include <QVariantList>
#include <QVariantMap>

#include <charconv>
#include <cstring>
#include <limits>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

namespace {

using plist::Malformed;

bool isXmlSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool isBlank(std::string_view s) {
    for (char c : s) {
        if (!isXmlSpace(c))
            return false;
    }
    return true;
}

std::string_view trimmed(std::string_view s) {
    while (!s.empty() && isXmlSpace(s.front()))
        s.remove_prefix(1);
    while (!s.empty() && isXmlSpace(s.back()))
        s.remove_suffix(1);
    return s;
}

bool isCharacterData(const pugi::xml_node& node) {
    return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

std::string_view valueOf(const pugi::xml_node& node) {
    return node.value();
}

// An empty element is the empty string, never a null one: "" is a value.
QString utf8(std::string_view s) {
    if (s.empty())
        return QStringLiteral("");
    return QString::fromUtf8(s.data(), qsizetype(s.size()));
}

QString quoted(std::string_view s) {
    constexpr qsizetype kShown = 40;
    QString text = QString::fromUtf8(s.data(), qMin(qsizetype(s.size()), kShown));
    if (qsizetype(s.size()) > kShown)
        text += QStringLiteral("...");
    return u'"' + text + u'"';
}

// Decimal digits at fixed places of a date, or -1 when one of them is not a digit.
int digitsAt(std::string_view s, size_t pos, size_t count) {
    int value = 0;
    for (size_t i = pos; i < pos + count; ++i) {
        if (s[i] < '0' || s[i] > '9')
            return -1;
        value = value * 10 + (s[i] - '0');
    }
    return value;
}

// Equal short texts are read once and share one QString's data: a contacts file repeats the
// same few keys in every entry, and the same first names, last names and companies in many.
// Each text has one place in a table, found from a hash of its bytes; a text that finds another
// one there takes its place, so a run of texts that never repeat (mail addresses) costs a hash
// and a comparison each and keeps the table small.
class SharedTexts {
public:
    QString get(std::string_view s) {
        if (s.empty() || s.size() > kLongest)
            return utf8(s);
        Slot& slot = m_slots[hash(s) % kSlots];
        if (slot.size == s.size() && std::memcmp(slot.bytes, s.data(), s.size()) == 0)
            return slot.text;
        slot.text = utf8(s);
        slot.size = quint8(s.size());
        std::memcpy(slot.bytes, s.data(), s.size());
        return slot.text;
    }

private:
    static constexpr size_t kLongest = 48;
    static constexpr size_t kSlots = 1021;

    // FNV-1a.
    static size_t hash(std::string_view s) {
        quint32 h = 2166136261u;
        for (char c : s)
            h = (h ^ quint8(c)) * 16777619u;
        return h;
    }

    struct Slot {
        QString text;
        quint8 size = 0;
        char bytes[kLongest];
    };
    std::vector<Slot> m_slots = std::vector<Slot>(kSlots);
};

// Removes a leading "+" or "-" from s; true when it was "-".
bool takeSign(std::string_view& s) {
    if (s.empty() || (s.front() != '+' && s.front() != '-'))
        return false;
    const bool negative = s.front() == '-';
    s.remove_prefix(1);
    return negative;
}

class XmlReader {
public:
    explicit XmlReader(const PropertyList::Limits& limits)
        : m_limits(limits) {}

    QVariant read(const pugi::xml_document& doc) { return value(rootValue(doc), 1); }

    // Visits the elements of a root array one at a time; a dictionary is handed over as its
    // entries.
    void forEachTopElement(const pugi::xml_document& doc, PropertyListElementVisitor& visitor) {
        const pugi::xml_node root = rootValue(doc);
        if (std::strcmp(root.name(), "array") != 0)
            fail(root, QStringLiteral("the root is <%1>, not an array")
                           .arg(QString::fromUtf8(root.name())));
        refuseText(root);
        ++m_objects;
        std::vector<PropertyListEntry> view;
        for (const pugi::xml_node& child : root.children()) {
            if (!isElement(child))
                continue;
            if (std::strcmp(child.name(), "dict") != 0) {
                visitor.value(value(child, 2));
                continue;
            }
            count(child, 2);
            m_held.clear();
            entries(child, 2,
                    [&](const QString& k, QVariant v) { m_held.emplace_back(k, std::move(v)); });
            view.clear();
            for (const auto& [k, v] : m_held)
                view.push_back({&k, &v});
            visitor.dictionary(view);
        }
    }

private:
    [[noreturn]] static void fail(const pugi::xml_node& node, const QString& what) {
        throw Malformed{QStringLiteral("%1 at byte %2").arg(what).arg(node.offset_debug())};
    }

    // The element holding the document's value: the one child of <plist>, or a bare root value.
    static pugi::xml_node rootValue(const pugi::xml_document& doc) {
        const pugi::xml_node root =
            onlyElement(doc, QStringLiteral("content after the root element"));
        if (!root)
            throw Malformed{QStringLiteral("there is no root element")};
        if (std::strcmp(root.name(), "plist") != 0)
            return root;
        refuseText(root);
        const pugi::xml_node only =
            onlyElement(root, QStringLiteral("<plist> must hold exactly one value"));
        if (!only)
            fail(root, QStringLiteral("<plist> holds no value"));
        return only;
    }

    // The one element among the children, blank text aside; null when there is none.
    static pugi::xml_node onlyElement(const pugi::xml_node& parent, const QString& whenMore) {
        pugi::xml_node only;
        for (const pugi::xml_node& child : parent.children()) {
            if (isCharacterData(child) && isBlank(valueOf(child)))
                continue;
            if (child.type() != pugi::node_element || only)
                fail(child, whenMore);
            only = child;
        }
        return only;
    }

    // Counts one more value at the given depth against the limits.
    void count(const pugi::xml_node& node, int depth) {
        if (depth > m_limits.maxDepth)
            fail(node, QStringLiteral("values nest deeper than %1 levels").arg(m_limits.maxDepth));
        if (++m_objects > m_limits.maxObjects)
            fail(node, QStringLiteral("more than %1 values").arg(m_limits.maxObjects));
    }

    QVariant value(const pugi::xml_node& node, int depth) {
        count(node, depth);
        const char* name = node.name();
        if (std::strcmp(name, "string") == 0)
            return string(node);
        if (std::strcmp(name, "integer") == 0)
            return integer(node);
        if (std::strcmp(name, "dict") == 0)
            return dict(node, depth);
        if (std::strcmp(name, "array") == 0)
            return array(node, depth);
        if (std::strcmp(name, "real") == 0)
            return real(node);
        if (std::strcmp(name, "true") == 0 || std::strcmp(name, "false") == 0) {
            if (!isBlank(text(node)))
                fail(node, QStringLiteral("<%1/> has content").arg(QLatin1String(name)));
            return name[0] == 't';
        }
        if (std::strcmp(name, "date") == 0)
            return date(node);
        if (std::strcmp(name, "data") == 0)
            return data(node);
        if (std::strcmp(name, "key") == 0)
            fail(node, QStringLiteral("<key> outside a dictionary"));
        fail(node, QStringLiteral("unknown element <%1>").arg(QString::fromUtf8(name)));
    }

    // The character data of a leaf element, comments and CDATA sections joined. The first
    // piece is the element's own value (parse_embed_pcdata); only text split by a comment or a
    // CDATA section has more, as children. One piece, as nearly always, is not copied.
    std::string_view text(const pugi::xml_node& node) {
        const std::string_view first = valueOf(node);
        if (!node.first_child())
            return first;
        m_scratch.assign(first);
        for (const pugi::xml_node& child : node.children()) {
            if (!isCharacterData(child))
                fail(child,
                     QStringLiteral("an element inside <%1>").arg(QLatin1String(node.name())));
            m_scratch += child.value();
        }
        return m_scratch;
    }

    QString string(const pugi::xml_node& node) { return m_texts.get(text(node)); }

    QString key(const pugi::xml_node& node) { return m_texts.get(text(node)); }

    QVariant integer(const pugi::xml_node& node) {
        std::string_view s = trimmed(text(node));
        const std::string_view whole = s;
        const bool negative = takeSign(s);
        int base = 10;
        if (s.size() > 2 && s[0] == '0' && (s[1] == 'x' || s[1] == 'X')) {
            base = 16;
            s.remove_prefix(2);
        }
        quint64 magnitude = 0;
        const auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), magnitude, base);
        if (s.empty() || ec != std::errc() || end != s.data() + s.size())
            fail(node, QStringLiteral("%1 is not an integer").arg(quoted(whole)));
        constexpr quint64 kMaxSigned = quint64(std::numeric_limits<qint64>::max());
        if (!negative)
            return magnitude <= kMaxSigned ? QVariant(qint64(magnitude)) : QVariant(magnitude);
        if (magnitude > kMaxSigned + 1)
            fail(node, QStringLiteral("%1 is below the 64-bit range").arg(quoted(whole)));
        // Negating in unsigned arithmetic reaches the minimum without overflow.
        return qint64(0 - magnitude);
    }

    QVariant real(const pugi::xml_node& node) {
        std::string_view s = trimmed(text(node));
        const std::string_view whole = s;
        const bool negative = takeSign(s);
        // from_chars reads "nan", "inf" and "infinity" in any case, never a sign or a space.
        double d = 0;
        const auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), d);
        if (s.empty() || s.front() == '+' || s.front() == '-' || ec != std::errc() ||
            end != s.data() + s.size())
            fail(node, QStringLiteral("%1 is not a real number").arg(quoted(whole)));
        return negative ? -d : d;
    }

    QVariant date(const pugi::xml_node& node) {
        // The one form writers use: "2024-03-01T09:30:00Z", always UTC.
        const std::string_view s = trimmed(text(node));
        if (s.size() == 20 && s[4] == '-' && s[7] == '-' && s[10] == 'T' && s[13] == ':' &&
            s[16] == ':' && s[19] == 'Z') {
            const QDate day(digitsAt(s, 0, 4), digitsAt(s, 5, 2), digitsAt(s, 8, 2));
            const QTime time(digitsAt(s, 11, 2), digitsAt(s, 14, 2), digitsAt(s, 17, 2));
            if (day.isValid() && time.isValid())
                return QDateTime(day, time, Qt::UTC);
        }
        fail(node, QStringLiteral("%1 is not a date").arg(quoted(s)));
    }

    QVariant data(const pugi::xml_node& node) {
        const std::string_view s = text(node);
        QByteArray compact;
        compact.reserve(qsizetype(s.size()));
        for (char c : s) {
            if (!isXmlSpace(c))
                compact += c;
        }
        // Qt accepts a missing "=" padding but also a lone trailing character, which encodes
        // no whole byte.
        if (compact.size() % 4 == 1)
            fail(node, QStringLiteral("truncated base64 data"));
        auto decoded = QByteArray::fromBase64Encoding(std::move(compact),
                                                      QByteArray::AbortOnBase64DecodingErrors);
        if (!decoded)
            fail(node, QStringLiteral("malformed base64 data"));
        return QByteArray(decoded.decoded.isNull() ? QByteArray("") : decoded.decoded);
    }

    QVariant array(const pugi::xml_node& node, int depth) {
        refuseText(node);
        QVariantList list;
        for (const pugi::xml_node& child : node.children()) {
            if (!isElement(child))
                continue;
            list.append(value(child, depth + 1));
        }
        return list;
    }

    QVariant dict(const pugi::xml_node& node, int depth) {
        QVariantMap map;
        // Writers sort their keys, so the end is the right place nearly always; a later
        // duplicate replaces the earlier value.
        entries(node, depth,
                [&](const QString& k, QVariant v) { map.insert(map.cend(), k, std::move(v)); });
        return map;
    }

    // Calls sink with each key and value of a dictionary (at depth) in the order of the file.
    template <typename Sink> void entries(const pugi::xml_node& node, int depth, Sink&& sink) {
        refuseText(node);
        pugi::xml_node child = node.first_child();
        while (child) {
            if (!isElement(child)) {
                child = child.next_sibling();
                continue;
            }
            if (std::strcmp(child.name(), "key") != 0)
                fail(child, QStringLiteral("<%1> where a <key> was expected")
                                .arg(QString::fromUtf8(child.name())));
            const QString k = key(child);
            pugi::xml_node valueNode = child.next_sibling();
            while (valueNode && !isElement(valueNode))
                valueNode = valueNode.next_sibling();
            if (!valueNode || std::strcmp(valueNode.name(), "key") == 0)
                fail(child, QStringLiteral("the key %1 has no value").arg(k));
            sink(k, value(valueNode, depth + 1));
            child = valueNode.next_sibling();
        }
    }

    // A container's own text, which comes before its first element, must be blank.
    static void refuseText(const pugi::xml_node& node) {
        if (!isBlank(valueOf(node)))
            fail(node, QStringLiteral("text %1 inside <%2>")
                           .arg(quoted(valueOf(node)), QLatin1String(node.name())));
    }

    // True for an element; skips blank text between elements and refuses any other text.
    static bool isElement(const pugi::xml_node& node) {
        if (node.type() == pugi::node_element)
            return true;
        if (isCharacterData(node) && !isBlank(valueOf(node)))
            fail(node, QStringLiteral("text %1 inside <%2>")
                           .arg(quoted(valueOf(node)), QLatin1String(node.parent().name())));
        return false;
    }

    const PropertyList::Limits& m_limits;
    qint64 m_objects = 0;
    std::string m_scratch;
    // The entries of the root array's current dictionary.
    std::vector<std::pair<QString, QVariant>> m_held;
    SharedTexts m_texts;
};

} // namespace

namespace {

// Parses data, which must outlive doc, in place: the document is built inside data's own buffer,
// which it changes. Every caller parses this way, so all read a document alike (pugixml treats
// a NUL inside its own copy of a buffer differently from one inside a buffer parsed in place).
void loadDocument(pugi::xml_document& doc, QByteArray& data, const PropertyList::Limits& limits) {
    plist::checkInputSize(data.size(), limits);
    // pugixml never reads a DTD: the five predefined entities and character references are
    // all it expands, and a document type declaration is skipped. A whitespace-only
    // <string> keeps its spaces. The text of an element is kept in the element itself, which
    // spares a node per value.
    constexpr unsigned kOptions =
        pugi::parse_default | pugi::parse_ws_pcdata_single | pugi::parse_embed_pcdata;
    const pugi::xml_parse_result parsed =
        doc.load_buffer_inplace(data.data(), size_t(data.size()), kOptions, pugi::encoding_auto);
    if (!parsed)
        throw Malformed{QStringLiteral("%1 at byte %2")
                            .arg(QString::fromUtf8(parsed.description()))
                            .arg(parsed.offset)};
}

} // namespace

namespace plist {

void forEachXmlArrayElement(QByteArray data, const PropertyList::Limits& limits,
                            PropertyListElementVisitor& visitor) {
    pugi::xml_document doc;
    loadDocument(doc, data, limits);
    XmlReader(limits).forEachTopElement(doc, visitor);
}

void forEachXmlArrayElement(QByteArray data, const PropertyList::Limits& limits,
                            const ElementVisitor& visit) {
    TreeVisitor visitor(visit);
    forEachXmlArrayElement(std::move(data), limits, visitor);
}

} // namespace plist

QVariant PropertyList::fromXml(const QByteArray& data, QString* error, const Limits& limits) {
    return plist::guarded(QStringLiteral("XML property list"), error, [&] {
        pugi::xml_document doc;
        plist::checkInputSize(data.size(), limits);
        QByteArray copy(data.constData(), data.size());
        loadDocument(doc, copy, limits);
        return XmlReader(limits).read(doc);
    });
}

} // namespace velmora
