// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/RegularFile.h"

#include "platform/FileNames.h"
#include "platform/LocalizedString.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora::RegularFile {

Result read(const QString& path, qint64 maxBytes) {
    const QString what = u'"' + FileNames::displayable(path) + u'"';
    const int fd =
        ::open(FileNames::encode(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0)
        return Error::posix(errno, LocalizedString("cannot open %1").arg(what));
    QFile file;
    // The QFile closes the descriptor from here on, on every path out.
    if (!file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(fd);
        return Error::posix(EIO, LocalizedString("cannot read %1").arg(what));
    }
    struct stat st {};
    if (::fstat(fd, &st) < 0)
        return Error::posix(errno, LocalizedString("cannot read %1").arg(what));
    if (!S_ISREG(st.st_mode))
        return Error::posix(EINVAL,
                            LocalizedString("cannot read %1: not a regular file").arg(what));
    if (st.st_size > maxBytes)
        return Error::posix(EFBIG, LocalizedString("cannot read %1").arg(what));
    // Reads of a regular file ignore O_NONBLOCK.
    QByteArray data = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return Error::posix(EIO,
                            LocalizedString("cannot read %1: %2").arg(what, file.errorString()));
    if (data.size() > maxBytes)
        return Error::posix(EFBIG, LocalizedString("cannot read %1").arg(what));
    return data;
}

} // namespace velmora::RegularFile
