// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Error.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace velmora {

// Puts files into a folder without ever showing a partial one under its final name: the
// content is written to a hidden temporary entry of the same folder and renamed into place.
class FileStaging {
public:
    // Gives the final path for an entry of the folder; asked again when another writer took the
    // previous answer between the choice and the rename.
    using NameChooser = std::function<QString()>;

    // An entry of a folder that could not be copied; the rest of the folder still is.
    struct LeftOut {
        QString path; // the entry's source path
        Error error;
    };
    struct Result {
        QString path;               // the staged path on success
        std::optional<Error> error; // set on failure; nothing is left behind then
        QList<LeftOut> leftOut;     // entries of a staged folder that it lacks
    };
    // Bytes copied so far of the bytes to copy (-1 when unknown, as for a folder). Called on the
    // copying thread, about once per MiB.
    using Progress = std::function<void(qint64 done, qint64 total)>;

    // Copies a regular file or a whole folder (recursively; links inside it are copied as
    // links, pipes, sockets and devices are left out). A link given as source is followed. Data
    // is copied by the kernel (a reflink clone where the file system offers one, else
    // copy_file_range over the data extents only, so a sparse file stays sparse).
    //
    // For tests only: $VELMORA_TEST_COPY_DELAY_MS makes every copy wait that long before it
    // opens its source and before each MiB it copies, and skips the reflink clone.
    static Result copyItem(const QString& source, const QString& folder,
                           const NameChooser& chooseName, const Progress& progress = {});

    // Writes bytes as a new file.
    static Result writeData(const QByteArray& bytes, const QString& folder,
                            const NameChooser& chooseName);

    // Removes a file, link or folder tree; an error when nothing is there or removal fails.
    static std::optional<Error> removeItem(const QString& path);
    // Creates the folder and any missing parents.
    static std::optional<Error> createFolder(const QString& path);
};

} // namespace velmora
