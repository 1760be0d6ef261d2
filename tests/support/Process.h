// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>
#include <QTemporaryDir>

#include <csignal>
#include <optional>
#include <sys/types.h>

namespace velmora::test {

// A child program started with posix_spawn (see Process.cpp), its output in files so children
// it leaves behind never write into a closed pipe; killed if still running at the end.
class Process {
public:
    // Arguments as bytes, so that a file name that is no UTF-8 reaches the program unchanged.
    Process(const QString& program, const QList<QByteArray>& args, const QByteArray& input = {},
            const QString& workingDirectory = {});
    Process(const QString& program, const QStringList& args, const QByteArray& input = {});
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    pid_t pid() const { return m_pid; }
    bool running();
    void terminate() const { ::kill(m_pid, SIGTERM); }
    // Waits for the end; false when it did not end in time (it is left running).
    bool finish(int timeoutMs);
    // -1 while it runs, or when a signal ended it.
    int exitCode() const { return m_exitCode.value_or(-1); }
    QString out() const;
    QString err() const;

private:
    QTemporaryDir m_files;
    pid_t m_pid = -1;
    std::optional<int> m_exitCode;
};

// A finished run of a program.
struct Ran {
    int exitCode = -1; // -1 also when it did not end in time and was killed
    QString out;
    QString err;
};

Ran run(const QString& program, const QStringList& args, const QByteArray& input = {},
        int timeoutMs = 60000);

} // namespace velmora::test
