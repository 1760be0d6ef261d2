// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Error.h"

#include <QByteArray>
#include <QString>

#include <variant>

namespace velmora {

// Reads a file that must be a plain file. Opening never waits (a named pipe with no writer would
// block an ordinary open forever), and a pipe, socket, device or folder is refused before a
// single byte is read. The path is a name as FileNames decodes it.
namespace RegularFile {

using Result = std::variant<QByteArray, Error>;

// The whole file, or an error in the POSIX domain: ENOENT when nothing is there, EINVAL when it
// is not a regular file, EFBIG when it holds more than maxBytes.
Result read(const QString& path, qint64 maxBytes);

} // namespace RegularFile

} // namespace velmora
