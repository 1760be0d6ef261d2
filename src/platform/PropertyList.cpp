// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/PropertyList.h"

#include "platform/FileDescriptor.h"
#include "platform/Log.h"
#include "platform/PropertyListPrivate.h"
#include "platform/RegularFile.h"

#include <QVariantMap>

#include <algorithm>
#include <cerrno>
#include <unistd.h>
#include <utility>

namespace velmora {

namespace plist {

void checkInputSize(qsizetype size, const PropertyList::Limits& limits) {
    if (size > limits.maxInputBytes)
        throw Malformed{QStringLiteral("the input is %1 bytes, above the limit of %2 bytes")
                            .arg(size)
                            .arg(limits.maxInputBytes)};
}

void TreeVisitor::dictionary(std::span<const PropertyListEntry> entries) {
    QVariantMap map;
    for (const PropertyListEntry& e : entries)
        map.insert(map.cend(), *e.key, *e.value);
    m_visit(map);
}

} // namespace plist

QVariant PropertyList::fromData(const QByteArray& data, QString* error, const Limits& limits) {
    if (data.startsWith("bplist00"))
        return fromBinary(data, error, limits);
    return fromXml(data, error, limits);
}

namespace {

constexpr qsizetype kReadBlock = qsizetype(1) << 20;

// A file read a block at a time; the first block is read ahead to tell the format.
class FileInput final : public plist::XmlInput {
public:
    FileInput(int fd, const PropertyList::Limits& limits)
        : m_fd(fd)
        , m_limits(limits) {}

    bool readMore(QByteArray& buffer) override {
        if (!m_ahead.isEmpty()) {
            buffer.append(std::exchange(m_ahead, {}));
            return true;
        }
        const qsizetype start = buffer.size();
        buffer.resize(start + kReadBlock);
        ssize_t n = -1;
        do {
            n = ::read(m_fd.get(), buffer.data() + start, size_t(kReadBlock));
        } while (n < 0 && errno == EINTR);
        buffer.resize(start + std::max<ssize_t>(n, 0));
        if (n < 0)
            throw plist::Malformed{QStringLiteral("the file cannot be read")};
        // A file that grew since it was opened is held to the limit as well.
        m_read += n;
        plist::checkInputSize(m_read, m_limits);
        return n > 0;
    }

    // The first block, kept to be handed over again by the first readMore.
    const QByteArray& readAhead() {
        readMore(m_ahead);
        return m_ahead;
    }

    // The rest of the file after what was read ahead, with it.
    QByteArray readAll() {
        QByteArray all = std::exchange(m_ahead, {});
        while (readMore(all)) {
        }
        return all;
    }

private:
    FileDescriptor m_fd;
    const PropertyList::Limits& m_limits;
    QByteArray m_ahead;
    qint64 m_read = 0;
};

} // namespace

bool PropertyList::forEachArrayElementInFile(const QString& path,
                                             PropertyListElementVisitor& visitor,
                                             const Limits& limits) {
    // A named pipe or a device in the file's place is refused without waiting and logged: the
    // main application never writes one, and reading it would hold the file's lock forever.
    RegularFile::Opened opened = RegularFile::open(path, limits.maxInputBytes);
    if (const Error* error = std::get_if<Error>(&opened)) {
        if (error->code == EINVAL)
            Log::error(u"[%@] arrayWithContentsOfFile %@", error->text());
        return false;
    }
    FileInput input(std::get<int>(opened), limits);
    try {
        // A binary list is read whole: its objects refer to each other from anywhere in the
        // file. An XML one is read a block at a time.
        if (input.readAhead().startsWith("bplist00"))
            plist::forEachBinaryArrayElement(input.readAll(), limits, visitor);
        else
            plist::forEachXmlArrayElement(input, limits, visitor);
        return true;
    } catch (const plist::Malformed&) {
        return false;
    }
}

bool PropertyList::forEachArrayElementInFile(const QString& path,
                                             const std::function<void(const QVariant&)>& visit,
                                             const Limits& limits) {
    plist::TreeVisitor visitor(visit);
    return forEachArrayElementInFile(path, visitor, limits);
}

QVariant PropertyList::arrayWithContentsOfFile(const QString& path, const Limits& limits) {
    QVariantList elements;
    if (!forEachArrayElementInFile(
            path, [&](const QVariant& e) { elements.append(e); }, limits))
        return {};
    return elements;
}

} // namespace velmora
