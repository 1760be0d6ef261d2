// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace velmora {

// An error as the host layer reports it: a domain, a code within it, and a sentence for the log.
struct Error {
    QString domain;
    qint64 code = 0;
    QString description;

    // The error of a failed system call: the POSIX domain, errno and "<what>: <strerror>".
    static Error posix(int errnum, const QString& what);
    // The error with which a request is cancelled because the user chose Cancel.
    static Error userCancelled();

    // The text that stands for the error in a log line.
    QString text() const { return description; }

    friend bool operator==(const Error&, const Error&) = default;
};

inline constexpr auto kPosixErrorDomain = "NSPOSIXErrorDomain";
inline constexpr auto kCocoaErrorDomain = "NSCocoaErrorDomain";
// The code of userCancelled() in the Cocoa domain, as the main application knows it.
inline constexpr qint64 kUserCancelledErrorCode = 3072;

} // namespace velmora
