// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace velmora {

// File names as the kernel has them: bytes, usually but not always UTF-8. A name from the
// command line is decoded losslessly (each byte that is not part of valid UTF-8 becomes the lone
// surrogate U+DC80 + byte), so the file it names can still be opened, and encoded back exactly
// when it reaches a system call. QUrl::fromLocalFile and toLocalFile carry such names unchanged;
// QFile and QFileInfo cannot open them (they encode through QFile::encodeName).
namespace FileNames {

// The bytes as a name; valid UTF-8 decodes as UTF-8.
QString decode(QByteArrayView bytes);
// The bytes a decoded name stands for; anything else encodes as UTF-8.
QByteArray encode(QStringView name);
// The name for showing or sending: each undecodable byte becomes U+FFFD, so the result encodes
// as valid UTF-8.
QString displayable(QString name);

// Whether something exists at path (a dangling symbolic link does not).
bool exists(const QString& path);
// Whether path is a regular file, or a symbolic link to one.
bool isRegularFile(const QString& path);

} // namespace FileNames

} // namespace velmora
