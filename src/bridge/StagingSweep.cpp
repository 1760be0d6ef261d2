// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "bridge/StagingSweep.h"

#include "platform/FileDescriptor.h"

#include <QFile>

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <optional>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace velmora {

namespace {

// Staged folders are never deeper than this; a deeper tree is left for a person to look at.
constexpr int kMaxDepth = 512;

Error removalError(int errnum, const QString& path) {
    return Error::posix(errnum, QStringLiteral("cannot remove \"%1\"").arg(path));
}

// The names in an open folder, "." and ".." left out.
std::optional<QList<QByteArray>> entryNames(int folder) {
    const int copy = ::dup(folder);
    if (copy < 0)
        return std::nullopt;
    DIR* dir = ::fdopendir(copy);
    if (!dir) {
        ::close(copy);
        return std::nullopt;
    }
    ::rewinddir(dir);
    QList<QByteArray> names;
    while (const dirent* entry = ::readdir(dir)) {
        const QByteArray name(entry->d_name);
        if (name != "." && name != "..")
            names.append(name);
    }
    ::closedir(dir);
    return names;
}

// Removes everything inside the open folder, relative to its descriptor so that a link is
// removed as a link and never followed. Keeps going past failures; returns the first.
std::optional<Error> removeContents(int folder, const QString& path, int depth) {
    const auto names = entryNames(folder);
    if (!names)
        return removalError(errno, path);
    std::optional<Error> first;
    const auto failed = [&first](Error error) {
        if (!first)
            first = std::move(error);
    };
    for (const QByteArray& name : *names) {
        const QString child = path + u'/' + QFile::decodeName(name);
        struct stat st {};
        if (::fstatat(folder, name.constData(), &st, AT_SYMLINK_NOFOLLOW) != 0) {
            if (errno != ENOENT)
                failed(removalError(errno, child));
            continue;
        }
        if (S_ISDIR(st.st_mode)) {
            if (depth >= kMaxDepth) {
                failed(removalError(ELOOP, child));
                continue;
            }
            const FileDescriptor inner(::openat(folder, name.constData(),
                                                O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
            if (inner.get() < 0) {
                failed(removalError(errno, child));
                continue;
            }
            if (auto error = removeContents(inner.get(), child, depth + 1)) {
                failed(std::move(*error));
                continue;
            }
        }
        if (::unlinkat(folder, name.constData(), S_ISDIR(st.st_mode) ? AT_REMOVEDIR : 0) != 0 &&
            errno != ENOENT)
            failed(removalError(errno, child));
    }
    return first;
}

bool olderThan(const struct stat& st, std::chrono::seconds gracePeriod) {
    using namespace std::chrono;
    const auto modified = system_clock::time_point(duration_cast<system_clock::duration>(
        seconds(st.st_mtim.tv_sec) + nanoseconds(st.st_mtim.tv_nsec)));
    // A time in the future (the clock was set back) counts as recent.
    return system_clock::now() - modified > gracePeriod;
}

} // namespace

QList<Error> StagingSweep::removeStaleEntries(const QString& stagingFolder,
                                              std::chrono::seconds gracePeriod) {
    const FileDescriptor folder(::open(QFile::encodeName(stagingFolder).constData(),
                                       O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (folder.get() < 0)
        return {removalError(errno, stagingFolder)};
    const auto names = entryNames(folder.get());
    if (!names)
        return {removalError(errno, stagingFolder)};

    QList<Error> errors;
    for (const QByteArray& name : *names) {
        const QString path = stagingFolder + u'/' + QFile::decodeName(name);
        struct stat st {};
        if (::fstatat(folder.get(), name.constData(), &st, AT_SYMLINK_NOFOLLOW) != 0) {
            if (errno != ENOENT)
                errors.append(removalError(errno, path));
            continue;
        }
        if (!S_ISDIR(st.st_mode)) {
            // A loose entry of an older version, or a link: removed itself, never its target.
            if (olderThan(st, gracePeriod) && ::unlinkat(folder.get(), name.constData(), 0) != 0 &&
                errno != ENOENT)
                errors.append(removalError(errno, path));
            continue;
        }
        const FileDescriptor share(::openat(folder.get(), name.constData(),
                                            O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (share.get() < 0) {
            if (errno != ENOENT)
                errors.append(removalError(errno, path));
            continue;
        }
        // Not at once: a running share, or a reader, holds it.
        if (::flock(share.get(), LOCK_EX | LOCK_NB) != 0)
            continue;
        // Its time is read under the lock, after any reader has let go of it.
        if (::fstat(share.get(), &st) != 0 || !olderThan(st, gracePeriod))
            continue;
        if (auto error = removeContents(share.get(), path, 1)) {
            errors.append(*error);
            continue;
        }
        if (::unlinkat(folder.get(), name.constData(), AT_REMOVEDIR) != 0 && errno != ENOENT)
            errors.append(removalError(errno, path));
    }
    return errors;
}

} // namespace velmora
