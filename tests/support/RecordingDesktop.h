// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "TestSupport.h"

#include <QStringList>
#include <QTemporaryDir>

namespace velmora::test {

// A desktop of its own for launches: XDG_DATA_HOME and XDG_DATA_DIRS point into a temporary
// folder and the session bus nowhere, so the desktop entries written here are the only
// applications there are. Each entry runs a recorder script that writes the activation tokens
// it inherited and its arguments to a record named after the entry. Processes started from the
// test inherit the same environment.
class RecordingDesktop {
public:
    RecordingDesktop();

    // Writes "<id>.desktop" into the private applications folder.
    void addApplication(const QString& id);
    QString entryPath(const QString& id) const;
    QString dataHome() const { return m_dir.filePath(QStringLiteral("home")); }

    // The record of id's launch once the recorder has run, polled for up to timeoutMs (events
    // are processed meanwhile); empty when it did not run. Lines: "startup=<token or unset>",
    // "activation=<token or unset>", then "arg=<argument>" for each argument. The record is
    // taken away, so that a later launch writes a new one.
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
