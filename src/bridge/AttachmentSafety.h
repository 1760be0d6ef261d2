// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace velmora {

// Decides whether a file that a mailto: URI asks to attach may be attached. Web pages can write
// mailto: links, so the request is not the user's own: only plain user files pass.
class AttachmentSafety {
public:
    // The verdict on one path: the resolved path to stage, or why it is left out.
    struct Verdict {
        QString path;   // links resolved; null when refused
        QString reason; // null when accepted
        bool accepted() const { return !path.isNull(); }
    };

    // Accepts path when, after resolving links, it is an existing regular file or folder the
    // user can read; no component of the path as given or as resolved starts with "."; and it
    // lies outside /proc, /sys, /dev, /run, /etc, /boot, /var and container (the shared
    // container's root; ignored when null).
    static Verdict check(const QString& path, const QString& container);
};

} // namespace velmora
