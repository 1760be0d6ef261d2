// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Error.h"

#include <QString>

#include <chrono>
#include <memory>
#include <optional>

namespace velmora {

// This share's own folder inside a staging folder: a new subfolder that no other share uses,
// named "share-<pid>-<random>", held with a shared flock(2) on its directory for as long as the
// object lives, so that no other share removes it meanwhile (see docs/container.md). The
// folders of the running process are kept per service in a process-wide registry: one share
// runs per process.
class ShareFolder {
public:
    // How long the folder of a share that has ended is kept after its last use: the main
    // application may still be reading its files.
    static constexpr std::chrono::minutes kGracePeriod{10};

    struct Made {
        std::shared_ptr<ShareFolder> folder; // null when it could not be made
        std::optional<Error> error;
    };
    // Makes a new folder inside stagingFolder (created when missing) and takes its lock.
    static Made make(const QString& stagingFolder);

    // Marks the last use and releases the lock.
    ~ShareFolder();
    ShareFolder(const ShareFolder&) = delete;
    ShareFolder& operator=(const ShareFolder&) = delete;

    const QString& path() const { return m_path; }
    const QString& stagingFolder() const { return m_stagingFolder; }
    // Marks the folder as used now: the grace period counts from its last use.
    void markUsed() const;

    // The folder the service's files are staged into by this process; null before the first.
    static std::shared_ptr<ShareFolder> current(const QString& service);
    // The service's folder in stagingFolder: the current one when it lies there, else a new one
    // made there, which becomes the current one.
    static Made currentOrMake(const QString& service, const QString& stagingFolder);
    // Ends the service's current folder's use by this process: it becomes a finished share's.
    static void release(const QString& service);
    // Marks the service's current folder as used now (when the share hands over its message).
    static void markUsed(const QString& service);

private:
    ShareFolder(QString stagingFolder, QString path, int fd);

    const QString m_stagingFolder;
    const QString m_path;
    const int m_fd; // the open directory that holds the lock
};

} // namespace velmora
