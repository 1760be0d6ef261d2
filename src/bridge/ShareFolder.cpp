// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "bridge/ShareFolder.h"

#include <QFile>
#include <QHash>
#include <QRandomGenerator>

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <mutex>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora {

namespace {

constexpr int kMaxNameAttempts = 100;

QString randomSuffix() {
    static constexpr char kLetters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
    QString suffix;
    for (int i = 0; i < 6; ++i)
        suffix += QLatin1Char(kLetters[QRandomGenerator::system()->bounded(36)]);
    return suffix;
}

// The process-wide registry of the current folder per service. Never destroyed: intake
// workers that answer late may still stage while the process exits.
struct Registry {
    std::mutex mutex;
    QHash<QString, std::shared_ptr<ShareFolder>> folders;
};

Registry& registry() {
    static Registry* const instance = new Registry; // NOLINT: intentionally immortal
    return *instance;
}

} // namespace

ShareFolder::ShareFolder(QString stagingFolder, QString path, int fd)
    : m_stagingFolder(std::move(stagingFolder))
    , m_path(std::move(path))
    , m_fd(fd) {}

ShareFolder::~ShareFolder() {
    // Last use first: once the lock is gone the grace period is all that keeps the folder.
    markUsed();
    ::close(m_fd);
}

void ShareFolder::markUsed() const {
    ::futimens(m_fd, nullptr);
}

ShareFolder::Made ShareFolder::make(const QString& stagingFolder) {
    std::error_code ec;
    std::filesystem::create_directories(QFile::encodeName(stagingFolder).toStdString(), ec);
    if (ec)
        return {nullptr, Error::posix(ec.value(),
                                      QStringLiteral("cannot create \"%1\"").arg(stagingFolder))};
    // mkdir either makes a new folder or fails: a name is never shared between processes.
    // The pid keeps a folder recognisable in logs and listings.
    const QString prefix =
        stagingFolder + QStringLiteral("/share-") + QString::number(::getpid()) + u'-';
    for (int attempt = 0; attempt < kMaxNameAttempts; ++attempt) {
        const QString path = prefix + randomSuffix();
        const QByteArray encoded = QFile::encodeName(path);
        if (::mkdir(encoded.constData(), 0777) != 0) {
            if (errno == EEXIST)
                continue;
            return {nullptr, Error::posix(errno, QStringLiteral("cannot create \"%1\"").arg(path))};
        }
        const int fd = ::open(encoded.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        // Shared: the main application's shared lock while it reads goes along with it, and
        // only a remover's exclusive lock is kept out.
        if (fd < 0 || ::flock(fd, LOCK_SH) != 0) {
            const Error error = Error::posix(errno, QStringLiteral("cannot lock \"%1\"").arg(path));
            if (fd >= 0)
                ::close(fd);
            ::rmdir(encoded.constData());
            return {nullptr, error};
        }
        return {std::shared_ptr<ShareFolder>(new ShareFolder(stagingFolder, path, fd)),
                std::nullopt};
    }
    return {nullptr,
            Error::posix(
                EEXIST, QStringLiteral("cannot choose a new folder in \"%1\"").arg(stagingFolder))};
}

std::shared_ptr<ShareFolder> ShareFolder::current(const QString& service) {
    Registry& r = registry();
    const std::lock_guard lock(r.mutex);
    return r.folders.value(service);
}

ShareFolder::Made ShareFolder::currentOrMake(const QString& service, const QString& stagingFolder) {
    Registry& r = registry();
    std::shared_ptr<ShareFolder> replaced;
    const std::lock_guard lock(r.mutex);
    std::shared_ptr<ShareFolder>& slot = r.folders[service];
    if (slot && slot->stagingFolder() == stagingFolder)
        return {slot, std::nullopt};
    Made made = make(stagingFolder);
    if (made.folder)
        replaced = std::exchange(slot, made.folder);
    return made;
}

void ShareFolder::release(const QString& service) {
    Registry& r = registry();
    std::shared_ptr<ShareFolder> released;
    const std::lock_guard lock(r.mutex);
    released = r.folders.take(service);
}

void ShareFolder::markUsed(const QString& service) {
    if (const auto folder = current(service))
        folder->markUsed();
}

} // namespace velmora
