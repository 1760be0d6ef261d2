// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QTemporaryDir>
#include <QUrlQuery>

#include <gtest/gtest.h>
#include <optional>

// Prints Qt strings in gtest messages.
void PrintTo(const QString& s, std::ostream* os);
void PrintTo(const QByteArray& s, std::ostream* os);

namespace velmora::test {

// Sets an environment variable for the lifetime of the object and restores it afterwards.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const QByteArray& value);
    ~ScopedEnv();
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    QByteArray m_name;
    std::optional<QByteArray> m_old;
};

// A fresh shared container in a temporary directory, with the bundle identifier set.
class TempContainer {
public:
    explicit TempContainer(const QByteArray& bundleId = "it.zemlo.velmora.share");

    QString root() const { return m_dir.path(); }
    QString dataFolder() const;
    // Writes bytes to a path relative to the data folder, creating folders on the way.
    QString writeData(const QString& relativePath, const QByteArray& bytes) const;

private:
    QTemporaryDir m_dir;
    ScopedEnv m_container;
    ScopedEnv m_bundle;
};

QByteArray readFile(const QString& path);
void writeFile(const QString& path, const QByteArray& bytes);

// The attachment paths a send URL's query names (attachment_0, attachment_1, ...), in order.
QStringList attachmentPaths(const QUrlQuery& query);

// Writes the JSON value as a property list through Python's plistlib; false when python3 is
// missing (the caller skips) or failed (the test fails).
bool writePlist(const QString& path, const QByteArray& json, bool binary);

} // namespace velmora::test
