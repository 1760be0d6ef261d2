// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Reads the root array of an XML property list a piece at a time. A light scan finds where one
// element of the root array ends and the next begins; pugixml then parses each run of elements,
// wrapped in an array of its own, and what is left of the document at the end with its prologue.
// Anything the scan does not know for sure (a processing instruction, a NUL, a document type with
// declarations of its own, an encoding other than UTF-8) ends the splitting: from there on the
// document is parsed whole, as it would be without pieces, so the pieces never change what a
// document reads as.

#include "platform/PropertyListPrivate.h"

#include <QByteArray>

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

namespace velmora::plist {

namespace {

bool isSpace(int c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

// What may start a tag's name: a letter, '_', ':' or a byte of a multi-byte UTF-8 character.
// pugixml refuses the rest, and so does the whole read.
bool isNameStart(int c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' || c >= 0x80;
}

// The bytes of the document read so far that are still needed, addressed by their offset in the
// document; reads more from the input when a look goes past them.
class Window {
public:
    explicit Window(XmlInput& input)
        : m_input(input) {}

    // The byte at offset o, or -1 past the end of the document.
    int at(qint64 o) {
        while (o - m_base >= m_bytes.size()) {
            if (!more())
                return -1;
        }
        return uchar(m_bytes[qsizetype(o - m_base)]);
    }

    // The first offset from `from` on that holds c, or -1 when the document ends first.
    qint64 find(qint64 from, char c) {
        qint64 start = from;
        while (true) {
            const qsizetype i = qsizetype(start - m_base);
            const void* at = std::memchr(m_bytes.constData() + i, c, size_t(m_bytes.size() - i));
            if (at)
                return m_base + (static_cast<const char*>(at) - m_bytes.constData());
            start = end();
            if (!more())
                return -1;
        }
    }

    // The first offset from `from` on where needle starts, or -1 when the document ends first.
    qint64 find(qint64 from, std::string_view needle) {
        qint64 start = from;
        while (true) {
            const std::string_view held(m_bytes.constData(), size_t(m_bytes.size()));
            const size_t at = held.find(needle, size_t(start - m_base));
            if (at != std::string_view::npos)
                return m_base + qint64(at);
            start = std::max(from, end() - qint64(needle.size()) + 1);
            if (!more())
                return -1;
        }
    }

    // Whether [from, to) holds a NUL; both must have been read.
    bool hasNul(qint64 from, qint64 to) const {
        return std::memchr(m_bytes.constData() + (from - m_base), 0, size_t(to - from)) != nullptr;
    }

    // A copy of [from, to); both must have been read.
    QByteArray bytes(qint64 from, qint64 to) const {
        return m_bytes.mid(qsizetype(from - m_base), qsizetype(to - from));
    }
    void appendTo(QByteArray& out, qint64 from, qint64 to) const {
        out.append(m_bytes.constData() + (from - m_base), qsizetype(to - from));
    }

    // Forgets the bytes before o.
    void drop(qint64 o) {
        m_bytes.remove(0, qsizetype(o - m_base));
        m_base = o;
    }

    void readAll() {
        while (more()) {
        }
    }

    // Everything read, from offset 0 on (nothing was dropped), taken out of the window.
    QByteArray take() { return std::exchange(m_bytes, {}); }

    // The offset just past the last byte read.
    qint64 end() const { return m_base + m_bytes.size(); }

private:
    bool more() {
        if (!m_ended && !m_input.readMore(m_bytes))
            m_ended = true;
        return !m_ended;
    }

    XmlInput& m_input;
    QByteArray m_bytes;
    qint64 m_base = 0;
    bool m_ended = false;
};

// Where a start tag that begins at lt ends: the offset of its '>', and whether it closes itself;
// nothing when the document ends inside it or a NUL is in it.
struct TagEnd {
    qint64 gt;
    bool empty;
};

std::optional<TagEnd> startTagEnd(Window& w, qint64 lt) {
    bool slash = false;
    for (qint64 i = lt + 1;; ++i) {
        const int c = w.at(i);
        if (c <= 0)
            return std::nullopt;
        if (c == '"' || c == '\'') {
            const qint64 close = w.find(i + 1, char(c));
            if (close < 0 || w.hasNul(i, close))
                return std::nullopt;
            i = close;
            slash = false;
        } else if (c == '>') {
            return TagEnd{i, slash};
        } else {
            slash = c == '/';
        }
    }
}

// The offset just past a construct that starts at from and ends with terminator; -1 when the
// document ends first or a NUL is in it.
qint64 pastTerminator(Window& w, qint64 from, std::string_view terminator) {
    const qint64 at = w.find(from, terminator);
    if (at < 0 || w.hasNul(from, at))
        return -1;
    return at + qint64(terminator.size());
}

bool startsWith(Window& w, qint64 o, std::string_view s) {
    for (size_t i = 0; i < s.size(); ++i) {
        if (w.at(o + qint64(i)) != uchar(s[i]))
            return false;
    }
    return true;
}

// A comment at o ("<!--"): the offset past it, or -1.
qint64 pastComment(Window& w, qint64 o) {
    return pastTerminator(w, o + 4, "-->");
}

// The value of the encoding a declaration [from, to) names, lower-cased; empty when it names none.
QByteArray declaredEncoding(const QByteArray& declaration) {
    const qsizetype at = declaration.indexOf("encoding");
    if (at < 0)
        return {};
    qsizetype i = at + 8;
    while (i < declaration.size() && (isSpace(declaration[i]) || declaration[i] == '='))
        ++i;
    if (i >= declaration.size() || (declaration[i] != '"' && declaration[i] != '\''))
        return "?";
    const qsizetype close = declaration.indexOf(declaration[i], i + 1);
    return close < 0 ? QByteArray("?") : declaration.mid(i + 1, close - i - 1).toLower();
}

// The offset just past the start tag of the root array (inside <plist> or bare), when everything
// before it is what the scan knows: a byte order mark, a UTF-8 declaration, comments, a document
// type without declarations of its own, white space. Nothing when the document must be read whole.
std::optional<qint64> rootArrayBody(Window& w) {
    qint64 p = startsWith(w, 0, "\xEF\xBB\xBF") ? 3 : 0;
    bool inPlist = false;
    while (true) {
        while (isSpace(w.at(p)))
            ++p;
        if (w.at(p) != '<')
            return std::nullopt;
        const int c = w.at(p + 1);
        if (c == '?') {
            const qint64 past = pastTerminator(w, p + 2, "?>");
            if (past < 0 || inPlist)
                return std::nullopt;
            const QByteArray encoding = declaredEncoding(w.bytes(p, past));
            if (!encoding.isEmpty() && encoding != "utf-8" && encoding != "utf8")
                return std::nullopt;
            p = past;
        } else if (startsWith(w, p, "<!--")) {
            p = pastComment(w, p);
            if (p < 0)
                return std::nullopt;
        } else if (startsWith(w, p, "<!DOCTYPE") && !inPlist) {
            const auto end = startTagEnd(w, p);
            if (!end || w.bytes(p, end->gt).contains('['))
                return std::nullopt;
            p = end->gt + 1;
        } else if (isNameStart(c)) {
            const bool plist = startsWith(w, p + 1, "plist") && !inPlist;
            if (!plist && !startsWith(w, p + 1, "array"))
                return std::nullopt;
            const int after = w.at(p + 6); // past "<plist" or "<array"
            if (!isSpace(after) && after != '>')
                return std::nullopt;
            const auto end = startTagEnd(w, p);
            if (!end || end->empty)
                return std::nullopt;
            if (!plist)
                return end->gt + 1;
            inPlist = true;
            p = end->gt + 1;
        } else {
            return std::nullopt;
        }
    }
}

// The offset of the root array's name: its start tag ends just before body.
qint64 rootNameAt(const QByteArray& prologue) {
    return prologue.lastIndexOf("<array") + 1;
}

// Where the run of the root array's elements that starts at from should end: at the first
// boundary between two elements at least pieceBytes on, or nothing when the rest of the document
// is to be read as one (the array ends first, or the scan meets what it does not know).
std::optional<qint64> runEnd(Window& w, qint64 from, qsizetype pieceBytes) {
    qint64 p = from;
    int depth = 0; // of the elements inside the root array
    const auto boundary = [&](qint64 at) { return depth == 0 && at - from >= pieceBytes; };
    while (true) {
        const qint64 lt = w.find(p, '<');
        if (lt < 0 || w.hasNul(p, lt))
            return std::nullopt;
        const int c = w.at(lt + 1);
        if (c == '/') {
            const qint64 gt = pastTerminator(w, lt + 2, std::string_view(">"));
            if (gt < 0 || depth == 0) // the root array's own end
                return std::nullopt;
            --depth;
            p = gt;
        } else if (c == '!') {
            if (startsWith(w, lt, "<!--"))
                p = pastComment(w, lt);
            else if (startsWith(w, lt, "<![CDATA["))
                p = pastTerminator(w, lt + 9, "]]>");
            else
                return std::nullopt;
            if (p < 0)
                return std::nullopt;
            continue; // not a boundary of its own
        } else if (isNameStart(c)) {
            const auto end = startTagEnd(w, lt);
            if (!end)
                return std::nullopt;
            if (!end->empty)
                ++depth;
            p = end->gt + 1;
        } else {
            return std::nullopt;
        }
        if (boundary(p))
            return p;
    }
}

const QByteArray kOpen = QByteArrayLiteral("<array>");
const QByteArray kClose = QByteArrayLiteral("</array>");

// Hands over a document in memory a block at a time.
class MemoryInput final : public XmlInput {
public:
    MemoryInput(QByteArray data, qsizetype block)
        : m_data(std::move(data))
        , m_block(std::max<qsizetype>(block, 1)) {}
    bool readMore(QByteArray& buffer) override {
        if (m_next >= m_data.size())
            return false;
        const qsizetype n = std::min(m_block, m_data.size() - m_next);
        buffer.append(m_data.constData() + m_next, n);
        m_next += n;
        return true;
    }

private:
    const QByteArray m_data;
    const qsizetype m_block;
    qsizetype m_next = 0;
};

} // namespace

void forEachXmlArrayElement(XmlInput& input, const PropertyList::Limits& limits,
                            PropertyListElementVisitor& visitor, qsizetype pieceBytes) {
    Window w(input);
    XmlArrayPieces pieces(limits, visitor);
    const std::optional<qint64> body = rootArrayBody(w);
    if (!body) {
        w.readAll();
        QByteArray whole = w.take();
        pieces.document(whole, {});
        return;
    }
    const QByteArray prologue = w.bytes(0, *body);
    qint64 from = *body;
    while (const std::optional<qint64> to = runEnd(w, from, pieceBytes)) {
        QByteArray run;
        run.reserve(kOpen.size() + (*to - from) + kClose.size());
        run.append(kOpen);
        w.appendTo(run, from, *to);
        run.append(kClose);
        pieces.run(run, {0, from - kOpen.size()}, from == *body ? rootNameAt(prologue) : -1);
        from = *to;
        w.drop(from);
    }
    // What is left of the array, its end and what follows it, after the prologue.
    w.readAll();
    QByteArray rest = prologue;
    w.appendTo(rest, from, w.end());
    pieces.document(rest, {prologue.size(), from - prologue.size()});
}

void forEachXmlArrayElement(QByteArray data, const PropertyList::Limits& limits,
                            PropertyListElementVisitor& visitor, qsizetype pieceBytes) {
    checkInputSize(data.size(), limits);
    MemoryInput input(std::move(data), pieceBytes);
    forEachXmlArrayElement(input, limits, visitor, pieceBytes);
}

} // namespace velmora::plist
