// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

// Shared by the XML and the binary property-list readers; not part of the library's API.

#include "platform/PropertyList.h"

#include <QString>

#include <functional>

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

// Visit each element of the root array in turn; throw Malformed when the data is malformed or
// its root is not an array (elements before the fault have been visited then).
// The XML reader parses data in place: it takes the buffer.
void forEachXmlArrayElement(QByteArray data, const PropertyList::Limits& limits,
                            PropertyListElementVisitor& visitor);
void forEachBinaryArrayElement(const QByteArray& data, const PropertyList::Limits& limits,
                               PropertyListElementVisitor& visitor);
// The same with every element as its tree: a dictionary's entries become its QVariantMap.
void forEachXmlArrayElement(QByteArray data, const PropertyList::Limits& limits,
                            const ElementVisitor& visit);
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
