// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "TestSupport.h"

#include <QStringList>

namespace velmora::test {

// A private desktop (XDG data folders in a temporary folder, no session bus) whose only
// applications are entries written here; each runs a recorder of its tokens and arguments.
class RecordingDesktop {
public:
    RecordingDesktop();

    // Writes "<id>.desktop" into the private applications folder.
    void addApplication(const QString& id);
    QString entryPath(const QString& id) const;
    QString dataHome() const { return m_dir.filePath(QStringLiteral("home")); }

    // id's launch record, polled for up to timeoutMs, taken away; empty when it did not run.
    // Lines: "startup=<token or unset>", "activation=<token or unset>", "arg=<argument>"...
    QStringList takeRecord(const QString& id, int timeoutMs = 20000);
    // Only the arguments of takeRecord.
    QStringList takeArguments(const QString& id, int timeoutMs = 20000);
    // The ids whose launches have been recorded and not taken.
    QStringList recorded() const;

private:
    QString records() const { return m_dir.filePath(QStringLiteral("records")); }
    QString recorder() const { return m_dir.filePath(QStringLiteral("recorder.sh")); }

    QTemporaryDir m_dir;
    ScopedEnv m_home;
    ScopedEnv m_system;
    ScopedEnv m_bus;
};

} // namespace velmora::test
