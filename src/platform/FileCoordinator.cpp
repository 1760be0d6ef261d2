// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/FileCoordinator.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace velmora {

namespace {

// Owns the descriptor of a held lock; closing it releases the lock.
class HeldLock {
public:
    explicit HeldLock(int fd)
        : m_fd(fd) {}
    ~HeldLock() { ::close(m_fd); }
    HeldLock(const HeldLock&) = delete;
    HeldLock& operator=(const HeldLock&) = delete;

private:
    int m_fd;
};

} // namespace

QString FileCoordinator::lockPathFor(const QString& itemPath) {
    const QFileInfo info(QDir::cleanPath(itemPath));
    return info.absolutePath() + QStringLiteral("/.") + info.fileName() + QStringLiteral(".lock");
}

std::optional<Error> FileCoordinator::coordinateWritingItemAtPath(
    const QString& itemPath, const std::function<void(const QString& path)>& accessor) {
    if (itemPath.isEmpty())
        return Error{QString::fromLatin1(kCocoaErrorDomain), 4,
                     QStringLiteral("no item to coordinate (the shared container is missing)")};

    const QString lockPath = lockPathFor(itemPath);
    const QString folder = QFileInfo(lockPath).absolutePath();
    if (!QDir().mkpath(folder))
        return Error::posix(EACCES, QStringLiteral("cannot create \"%1\"").arg(folder));

    const QByteArray encoded = QFile::encodeName(lockPath);
    int fd = -1;
    do {
        fd = ::open(encoded.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    } while (fd < 0 && errno == EINTR);
    if (fd < 0)
        return Error::posix(errno, QStringLiteral("cannot open the lock \"%1\"").arg(lockPath));
    const HeldLock held(fd);

    int rc = -1;
    do {
        rc = ::flock(fd, LOCK_EX);
    } while (rc < 0 && errno == EINTR);
    if (rc < 0)
        return Error::posix(errno, QStringLiteral("cannot lock \"%1\"").arg(lockPath));

    accessor(QDir::cleanPath(itemPath));
    return std::nullopt;
}

} // namespace velmora
