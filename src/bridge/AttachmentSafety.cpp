// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "bridge/AttachmentSafety.h"

#include "platform/LocalizedString.h"

#include <QDir>
#include <QFileInfo>

#include <array>

namespace velmora {

namespace {

// Folders of the system and of running processes: nothing in them is a user's document, and
// some of them (keys, tokens, other processes' memory) must never leave the machine.
constexpr std::array<QStringView, 7> kSystemFolders = {u"/proc", u"/sys",  u"/dev", u"/run",
                                                       u"/etc",  u"/boot", u"/var"};

bool isInside(const QString& path, QStringView folder) {
    return path == folder ||
           (path.startsWith(folder) && path.size() > folder.size() && path[folder.size()] == u'/');
}

bool hasHiddenComponent(const QString& path) {
    for (const QStringView component : QStringView(path).split(u'/')) {
        if (component.startsWith(u'.'))
            return true;
    }
    return false;
}

AttachmentSafety::Verdict refused(const QString& reason) {
    return {QString(), reason};
}

} // namespace

AttachmentSafety::Verdict AttachmentSafety::check(const QString& path, const QString& container) {
    if (!path.startsWith(u'/'))
        return refused(LocalizedString("not an absolute path"));
    // "." and ".." count as hidden too: a request has no business walking around with them.
    if (hasHiddenComponent(path))
        return refused(LocalizedString("a hidden file or folder"));
    const QFileInfo given(path);
    const QString resolved = given.canonicalFilePath();
    if (resolved.isEmpty())
        return refused(LocalizedString("no such file or folder"));
    if (hasHiddenComponent(resolved))
        return refused(LocalizedString("a link to a hidden file or folder"));
    for (const QStringView folder : kSystemFolders) {
        if (isInside(resolved, folder))
            return refused(LocalizedString("in the system folder %1").arg(folder));
    }
    if (!container.isNull()) {
        const QString root = QFileInfo(container).canonicalFilePath();
        if (!root.isEmpty() && isInside(resolved, root))
            return refused(LocalizedString("in the shared container"));
    }
    const QFileInfo target(resolved);
    if (!target.isFile() && !target.isDir())
        return refused(LocalizedString("not a regular file or folder"));
    if (!target.isReadable())
        return refused(LocalizedString("not readable"));
    return {resolved, QString()};
}

} // namespace velmora
