#pragma once

#include "platform/Error.h"

#include <QByteArray>
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

    struct Result {
        QString path;               // the staged path on success
        std::optional<Error> error; // set on failure; nothing is left behind then
    };

    // Copies a regular file or a whole folder (recursively; links inside it are copied as
    // links). A link given as source is followed. Data is copied by the kernel (a reflink
    // clone where the file system offers one, else copy_file_range).
    static Result copyItem(const QString& source, const QString& folder,
                           const NameChooser& chooseName);

    // Writes bytes as a new file.
    static Result writeData(const QByteArray& bytes, const QString& folder,
                            const NameChooser& chooseName);

    // Removes a file, link or folder tree; an error when nothing is there or removal fails.
    static std::optional<Error> removeItem(const QString& path);
    // Creates the folder and any missing parents.
    static std::optional<Error> createFolder(const QString& path);
};

} // namespace velmora
