// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "bridge/FileStaging.h"

#include "platform/FileDescriptor.h"
#include "platform/FileNames.h"

#include <QFile>
#include <QtGlobal>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <linux/fs.h>
#include <memory>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace velmora {

namespace {

constexpr int kMaxFolderDepth = 256;
constexpr int kMaxRenameAttempts = 1000;

QString quoted(const QString& path) {
    return u'"' + path + u'"';
}

// A shared file's name may be any bytes; FileNames gives them back exactly.
QByteArray encoded(const QString& path) {
    return FileNames::encode(path);
}

// Removes a temporary entry unless it was renamed into place.
class TemporaryEntry {
public:
    explicit TemporaryEntry(QByteArray path)
        : m_path(std::move(path)) {}
    ~TemporaryEntry() {
        if (!m_path.isEmpty()) {
            std::error_code ec;
            std::filesystem::remove_all(m_path.toStdString(), ec);
        }
    }
    TemporaryEntry(const TemporaryEntry&) = delete;
    TemporaryEntry& operator=(const TemporaryEntry&) = delete;
    const QByteArray& path() const { return m_path; }
    void keep() { m_path.clear(); }

private:
    QByteArray m_path;
};

constexpr off_t kChunk = off_t(1) << 20;

// A pipe, socket or device: no content to attach, and reading one could wait for ever.
Error notFileOrFolder(const QString& path) {
    return {QString::fromLatin1(kPosixErrorDomain), EINVAL,
            QStringLiteral("cannot copy %1: not a file or folder").arg(quoted(path))};
}

// One copy under way: what it reports and what it could not copy.
struct Copy {
    const FileStaging::Progress& progress;
    qint64 total = -1;
    qint64 done = 0;
    QList<FileStaging::LeftOut> leftOut;

    void advance(qint64 bytes) {
        done += bytes;
        if (progress)
            progress(done, total);
    }
};

// The test hook's wait, read once: tests set it before the program starts.
std::chrono::milliseconds testDelay() {
    static const std::chrono::milliseconds delay(
        qEnvironmentVariableIntValue("VELMORA_TEST_COPY_DELAY_MS"));
    return delay;
}

void pauseForTests() {
    if (testDelay().count() > 0)
        std::this_thread::sleep_for(testDelay());
}

// Copies the bytes [from, to) to the same offsets of out. False in reached when the source
// ended early (it shrank while we copied).
std::optional<Error> copyRange(int in, int out, off_t from, off_t to, bool& kernelCopy,
                               off_t& reached, Copy& copy, const QString& path) {
    std::vector<char> buffer;
    reached = from;
    while (reached < to) {
        pauseForTests();
        const size_t want = size_t(std::min(to - reached, kChunk));
        ssize_t n = 0;
        if (kernelCopy) {
            off_t inOffset = reached;
            off_t outOffset = reached;
            n = ::copy_file_range(in, &inOffset, out, &outOffset, want, 0);
            if (n < 0 &&
                (errno == EXDEV || errno == ENOSYS || errno == EINVAL || errno == EOPNOTSUPP)) {
                kernelCopy = false; // file systems that cannot: copy through a buffer
                continue;
            }
        } else {
            buffer.resize(size_t(kChunk));
            n = ::pread(in, buffer.data(), want, reached);
            for (ssize_t written = 0; n > 0 && written < n;) {
                const ssize_t w =
                    ::pwrite(out, buffer.data() + written, size_t(n - written), reached + written);
                if (w < 0 && errno == EINTR)
                    continue;
                if (w < 0)
                    return Error::posix(errno, QStringLiteral("cannot write %1").arg(quoted(path)));
                written += w;
            }
        }
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return Error::posix(errno, QStringLiteral("cannot copy %1").arg(quoted(path)));
        if (n == 0)
            return std::nullopt; // the file shrank while we copied: what is there is copied
        reached += n;
        copy.advance(n);
    }
    return std::nullopt;
}

std::optional<Error> copyFileData(int in, int out, off_t size, Copy& copy, const QString& path) {
    // A clone shares the blocks: instant where the file system can do it (btrfs, xfs).
    if (testDelay().count() == 0 && ::ioctl(out, FICLONE, in) == 0) {
        copy.advance(size);
        return std::nullopt;
    }
    // Only the data extents are copied; the holes between them stay holes, and the final
    // truncation gives the copy the source's size even where the source ends in a hole.
    bool kernelCopy = true;
    off_t end = size;
    off_t written = 0; // the end of the last extent written
    for (off_t position = 0; position < size;) {
        off_t data = ::lseek(in, position, SEEK_DATA);
        off_t hole = size;
        if (data < 0 && errno == ENXIO) {
            copy.advance(size - position); // a hole up to the end
            break;
        }
        if (data < 0) {
            data = position; // no extent map here: everything counts as data
        } else {
            hole = ::lseek(in, data, SEEK_HOLE);
            hole = hole < 0 ? size : std::min(hole, size);
        }
        if (data > position)
            copy.advance(std::min(data, size) - position);
        if (data >= size)
            break;
        off_t reached = data;
        if (auto error = copyRange(in, out, data, hole, kernelCopy, reached, copy, path))
            return error;
        written = reached;
        if (reached < hole) {
            end = reached;
            break;
        }
        position = hole;
    }
    // Only a copy that ends in a hole needs its size set: truncating costs a journal
    // transaction on some file systems, which thousands of small files would feel.
    if (written < end && ::ftruncate(out, end) < 0)
        return Error::posix(errno, QStringLiteral("cannot write %1").arg(quoted(path)));
    return std::nullopt;
}

std::optional<Error> copyInto(int srcFd, const struct stat& st, int dstDirFd, const char* dstName,
                              const QString& path, int depth, Copy& copy);

// Copies one entry of a folder; a failure leaves the entry out and the copy goes on.
void copyEntry(int srcDirFd, int dstDirFd, const char* name, const QString& path, int depth,
               Copy& copy) {
    const auto leaveOut = [&](int err, const QString& what) {
        copy.leftOut.append({path, Error::posix(err, what.arg(quoted(path)))});
    };
    struct stat est {};
    if (::fstatat(srcDirFd, name, &est, AT_SYMLINK_NOFOLLOW) < 0)
        return leaveOut(errno, QStringLiteral("cannot read %1"));
    if (S_ISLNK(est.st_mode)) {
        char target[PATH_MAX];
        const ssize_t len = ::readlinkat(srcDirFd, name, target, sizeof target - 1);
        if (len < 0)
            return leaveOut(errno, QStringLiteral("cannot read %1"));
        target[len] = '\0';
        if (::symlinkat(target, dstDirFd, name) < 0)
            return leaveOut(errno, QStringLiteral("cannot copy %1"));
        return;
    }
    if (!S_ISREG(est.st_mode) && !S_ISDIR(est.st_mode))
        return copy.leftOut.append({path, notFileOrFolder(path)});
    FileDescriptor child(::openat(srcDirFd, name, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (child.get() < 0)
        return leaveOut(errno, QStringLiteral("cannot open %1"));
    if (auto error = copyInto(child.get(), est, dstDirFd, name, path, depth + 1, copy)) {
        copy.leftOut.append({path, *error});
        // A half-made copy goes; a folder that could not be made empty stays.
        ::unlinkat(dstDirFd, name, S_ISDIR(est.st_mode) ? AT_REMOVEDIR : 0);
    }
}

std::optional<Error> copyFolderContents(int srcDirFd, int dstDirFd, const QString& path, int depth,
                                        Copy& copy) {
    if (depth > kMaxFolderDepth)
        return Error::posix(
            ELOOP, QStringLiteral("cannot copy %1: folders nested too deep").arg(quoted(path)));
    const int dupFd = ::dup(srcDirFd);
    if (dupFd < 0)
        return Error::posix(errno, QStringLiteral("cannot read %1").arg(quoted(path)));
    DIR* dir = ::fdopendir(dupFd);
    if (!dir) {
        const int err = errno;
        ::close(dupFd);
        return Error::posix(err, QStringLiteral("cannot read %1").arg(quoted(path)));
    }
    const std::unique_ptr<DIR, int (*)(DIR*)> closer(dir, ::closedir);
    ::rewinddir(dir);
    while (true) {
        errno = 0;
        const dirent* entry = ::readdir(dir);
        if (!entry) {
            if (errno != 0)
                return Error::posix(errno, QStringLiteral("cannot read %1").arg(quoted(path)));
            return std::nullopt;
        }
        const char* name = entry->d_name;
        if (std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0)
            continue;
        copyEntry(srcDirFd, dstDirFd, name, path + u'/' + QFile::decodeName(name), depth, copy);
    }
}

// Copies the open source (a file or folder) to dstName inside dstDirFd.
std::optional<Error> copyInto(int srcFd, const struct stat& st, int dstDirFd, const char* dstName,
                              const QString& path, int depth, Copy& copy) {
    if (S_ISDIR(st.st_mode)) {
        if (::mkdirat(dstDirFd, dstName, 0700) < 0)
            return Error::posix(errno,
                                QStringLiteral("cannot create a folder for %1").arg(quoted(path)));
        FileDescriptor out(::openat(dstDirFd, dstName, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (out.get() < 0)
            return Error::posix(errno,
                                QStringLiteral("cannot open the copy of %1").arg(quoted(path)));
        if (auto error = copyFolderContents(srcFd, out.get(), path, depth, copy))
            return error;
        ::fchmod(out.get(), (st.st_mode & 0777) | S_IRWXU);
        return std::nullopt;
    }
    FileDescriptor out(::openat(dstDirFd, dstName, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (out.get() < 0)
        return Error::posix(errno,
                            QStringLiteral("cannot create the copy of %1").arg(quoted(path)));
    if (auto error = copyFileData(srcFd, out.get(), st.st_size, copy, path))
        return error;
    ::fchmod(out.get(), (st.st_mode & 0777) | S_IRUSR | S_IWUSR);
    return std::nullopt;
}

// Moves the finished temporary entry to a name of the chooser's, never replacing an entry that
// appeared there meanwhile.
FileStaging::Result publish(TemporaryEntry& temporary, const FileStaging::NameChooser& chooseName) {
    for (int attempt = 0; attempt < kMaxRenameAttempts; ++attempt) {
        const QString path = chooseName();
        const QByteArray target = encoded(path);
        if (::renameat2(AT_FDCWD, temporary.path().constData(), AT_FDCWD, target.constData(),
                        RENAME_NOREPLACE) == 0) {
            temporary.keep();
            return {path, std::nullopt, {}};
        }
        if (errno == EEXIST)
            continue;
        if (errno == EINVAL || errno == ENOSYS) {
            // A file system without RENAME_NOREPLACE: a hard link fails atomically when the
            // name is taken; a folder falls back to a test and a rename.
            if (::link(temporary.path().constData(), target.constData()) == 0) {
                ::unlink(temporary.path().constData());
                temporary.keep();
                return {path, std::nullopt, {}};
            }
            if (errno == EEXIST)
                continue;
            if (::access(target.constData(), F_OK) != 0 &&
                ::rename(temporary.path().constData(), target.constData()) == 0) {
                temporary.keep();
                return {path, std::nullopt, {}};
            }
        }
        return {{},
                Error::posix(errno, QStringLiteral("cannot move the copy to %1").arg(quoted(path))),
                {}};
    }
    return {{}, Error::posix(EEXIST, QStringLiteral("no free name for the copy")), {}};
}

QByteArray temporaryTemplate(const QString& folder) {
    return encoded(folder + QStringLiteral("/.velmora-staging-XXXXXX"));
}

// The failure of the call that just set errno while making or filling an entry in folder.
FileStaging::Result cannotWriteInto(const QString& folder) {
    const int error = errno;
    return {
        {}, Error::posix(error, QStringLiteral("cannot write into %1").arg(quoted(folder))), {}};
}

} // namespace

FileStaging::Result FileStaging::copyItem(const QString& source, const QString& folder,
                                          const NameChooser& chooseName, const Progress& progress) {
    const QString what = quoted(source);
    pauseForTests();
    // O_NONBLOCK: opening a named pipe must not wait for a writer; it is refused below.
    FileDescriptor in(::open(encoded(source).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (in.get() < 0)
        return {{}, Error::posix(errno, QStringLiteral("cannot open %1").arg(what)), {}};
    struct stat st {};
    if (::fstat(in.get(), &st) < 0)
        return {{}, Error::posix(errno, QStringLiteral("cannot read %1").arg(what)), {}};
    if (!S_ISREG(st.st_mode) && !S_ISDIR(st.st_mode))
        return {{}, notFileOrFolder(source), {}};
    if (S_ISREG(st.st_mode)) {
        // Reads block from here on; the flag only mattered for the open.
        ::fcntl(in.get(), F_SETFL, ::fcntl(in.get(), F_GETFL) & ~O_NONBLOCK);
        // A file is written under a hidden temporary name of the folder itself, which no one
        // takes for a staged file, and renamed into place: no folder to make and remove per file.
        QByteArray templ = temporaryTemplate(folder);
        FileDescriptor out(::mkostemp(templ.data(), O_CLOEXEC));
        if (out.get() < 0)
            return cannotWriteInto(folder);
        TemporaryEntry temporary(templ);
        Copy copy{progress, qint64(st.st_size), 0, {}};
        if (auto error = copyFileData(in.get(), out.get(), st.st_size, copy, source))
            return {{}, error, {}};
        ::fchmod(out.get(), (st.st_mode & 0777) | S_IRUSR | S_IWUSR);
        return publish(temporary, chooseName);
    }

    FileDescriptor folderFd(
        ::open(encoded(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folderFd.get() < 0)
        return {
            {},
            Error::posix(errno, QStringLiteral("cannot open the folder %1").arg(quoted(folder))),
            {}};

    QByteArray templ = temporaryTemplate(folder);
    if (!::mkdtemp(templ.data()))
        return cannotWriteInto(folder);
    // A folder's copy is built inside a private temporary folder, so a half-made copy never has
    // a name that anybody could take for a staged file; the finished entry is then moved into
    // place.
    TemporaryEntry holder(templ);
    FileDescriptor holderFd(::open(templ.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (holderFd.get() < 0)
        return cannotWriteInto(folder);
    Copy copy{progress, -1, 0, {}};
    if (auto error = copyInto(in.get(), st, holderFd.get(), "item", source, 0, copy))
        return {{}, error, {}};

    TemporaryEntry item(templ + "/item");
    Result result = publish(item, chooseName);
    if (!result.error)
        result.leftOut = std::move(copy.leftOut);
    return result;
}

FileStaging::Result FileStaging::writeData(const QByteArray& bytes, const QString& folder,
                                           const NameChooser& chooseName) {
    QByteArray templ = temporaryTemplate(folder);
    FileDescriptor out(::mkostemp(templ.data(), O_CLOEXEC));
    if (out.get() < 0)
        return cannotWriteInto(folder);
    TemporaryEntry temporary(templ);
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t w = ::write(out.get(), bytes.constData() + done, size_t(bytes.size() - done));
        if (w < 0 && errno == EINTR)
            continue;
        if (w < 0)
            return cannotWriteInto(folder);
        done += w;
    }
    // mkstemp makes the file private; a staged file is as readable as any the user writes.
    const mode_t mask = ::umask(0);
    ::umask(mask);
    ::fchmod(out.get(), 0666 & ~mask);
    return publish(temporary, chooseName);
}

std::optional<Error> FileStaging::removeItem(const QString& path) {
    const std::filesystem::path p(encoded(path).toStdString());
    std::error_code ec;
    const auto status = std::filesystem::symlink_status(p, ec);
    if (ec || !std::filesystem::exists(status))
        return Error::posix(ec ? ec.value() : ENOENT,
                            QStringLiteral("cannot remove %1").arg(quoted(path)));
    std::filesystem::remove_all(p, ec);
    if (ec)
        return Error::posix(ec.value(), QStringLiteral("cannot remove %1").arg(quoted(path)));
    return std::nullopt;
}

std::optional<Error> FileStaging::createFolder(const QString& path) {
    std::error_code ec;
    std::filesystem::create_directories(encoded(path).toStdString(), ec);
    if (ec)
        return Error::posix(ec.value(), QStringLiteral("cannot create %1").arg(quoted(path)));
    return std::nullopt;
}

} // namespace velmora
