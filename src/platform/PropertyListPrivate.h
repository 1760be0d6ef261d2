// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

// Shared by the XML and the binary property-list readers; not part of the library's API.

#include "platform/PropertyList.h"

#include <QString>

#include <functional>
#include <memory>

namespace velmora::plist {

// Thrown by a reader when the input is malformed or over a limit; caught at its entry point,
// which turns it into a null result and the error text. Unwinding out of a deep recursion
// this way keeps every decoding step free of result checks.
struct Malformed {
    QString message;
};

// Refuses input larger than the limit before any of it is parsed.
void checkInputSize(qsizetype size, const PropertyList::Limits& limits);

using ElementVisitor = std::function<void(const QVariant&)>;

// Where the bytes of a buffer that holds pieces of a document lie in the document: a byte at
// offset o of the buffer is at o below split, and at o + shift from split on.
struct OffsetMap {
    qint64 split = 0;
    qint64 shift = 0;
    qint64 operator()(qint64 o) const { return o < split ? o : o + shift; }
};

// Reads the root array of an XML document from pieces of it, one after the other, with the
// limits, the count of values and the shared texts carried from piece to piece. Each buffer is
// parsed in place.
class XmlArrayPieces {
public:
    XmlArrayPieces(const PropertyList::Limits& limits, PropertyListElementVisitor& visitor);
    ~XmlArrayPieces();
    XmlArrayPieces(const XmlArrayPieces&) = delete;
    XmlArrayPieces& operator=(const XmlArrayPieces&) = delete;

    // A run of whole elements of the root array, with the text between them, wrapped as
    // "<array>" run "</array>". rootAt is the offset of the root's name when the run is the
    // first, else -1.
    void run(QByteArray& buffer, OffsetMap map, qint64 rootAt);
    // A whole document, its root array holding the elements not yet read: read and checked as
    // the whole read checks a document.
    void document(QByteArray& buffer, OffsetMap map);

private:
    struct Reader;
    const PropertyList::Limits& m_limits;
    PropertyListElementVisitor& m_visitor;
    std::unique_ptr<Reader> m_reader;
};

// Gives the bytes of an XML document a block at a time.
class XmlInput {
public:
    virtual ~XmlInput() = default;
    // Appends the next block to buffer; false at the end. Throws Malformed when reading fails
    // or the input grows past the limit.
    virtual bool readMore(QByteArray& buffer) = 0;
};

// How much of the root array one piece holds at least, unless the array ends first.
constexpr qsizetype kXmlPieceBytes = qsizetype(1) << 20;

// Visit each element of the root array in turn; throw Malformed when the data is malformed or
// its root is not an array (elements before the fault have been visited then).
// The XML reader reads a piece of the document at a time (pieceBytes, for tests), never the
// whole document's tree, and parses each piece in place.
void forEachXmlArrayElement(XmlInput& input, const PropertyList::Limits& limits,
                            PropertyListElementVisitor& visitor,
                            qsizetype pieceBytes = kXmlPieceBytes);
// The same for a document in memory, handed over in blocks of pieceBytes.
void forEachXmlArrayElement(QByteArray data, const PropertyList::Limits& limits,
                            PropertyListElementVisitor& visitor,
                            qsizetype pieceBytes = kXmlPieceBytes);
void forEachBinaryArrayElement(const QByteArray& data, const PropertyList::Limits& limits,
                               PropertyListElementVisitor& visitor);
// The same with every element as its tree: a dictionary's entries become its QVariantMap.
void forEachXmlArrayElement(QByteArray data, const PropertyList::Limits& limits,
                            const ElementVisitor& visit, qsizetype pieceBytes = kXmlPieceBytes);
void forEachBinaryArrayElement(const QByteArray& data, const PropertyList::Limits& limits,
                               const ElementVisitor& visit);

// Hands every element on as a tree; dictionaries handed over as entries are made into maps.
class TreeVisitor final : public PropertyListElementVisitor {
public:
    explicit TreeVisitor(const ElementVisitor& visit)
        : m_visit(visit) {}
    void dictionary(std::span<const PropertyListEntry> entries) override;
    void value(const QVariant& element) override { m_visit(element); }

private:
    const ElementVisitor& m_visit;
};

// Runs a reader: the value it returns, or a null QVariant and the error text when it throws.
template <typename Read> QVariant guarded(const QString& format, QString* error, Read&& read) {
    try {
        QVariant result = read();
        if (error)
            error->clear();
        return result;
    } catch (const Malformed& e) {
        if (error)
            *error = format + QStringLiteral(": ") + e.message;
        return {};
    }
}

} // namespace velmora::plist
