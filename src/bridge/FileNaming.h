// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <functional>

namespace velmora {

// Chooses file names in the staging folder.
class Zemlo_Fs {
public:
    using ExistsFunction = std::function<bool(const QString& path)>;

    // The first of folder/name, folder/base_1.ext, folder/base_2.ext ... that does not exist.
    // "a.tar.gz" becomes "a.tar_1.gz"; a name with no extension ("README", ".profile")
    // becomes "README_1". A name that could leave the folder ("..", "a/b", "") is made safe
    // first, so the result always lies directly inside folder.
    static QString GetGoodPath(const QString& name, const QString& folder);
    static QString GetGoodPath(const QString& name, const QString& folder,
                               const ExistsFunction& exists);

    // name with path separators, NUL and the special names "." and ".." replaced so that it is
    // one plain entry of a folder, and bytes that are not UTF-8 (FileNames) as U+FFFD.
    static QString SafeFileName(const QString& name);
};

} // namespace velmora
