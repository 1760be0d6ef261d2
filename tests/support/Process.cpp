// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "Process.h"

#include "TestSupport.h"

#include <QDeadlineTimer>
#include <QFile>

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace velmora::test {

// Not QProcess: the thread sanitizer's handling of Qt's clone(CLONE_VM) leaves the starting
// thread's locks unseen (docs/development.md); posix_spawn clones where it does not step in.
Process::Process(const QString& program, const QList<QByteArray>& args, const QByteArray& input,
                 const QString& workingDirectory) {
    std::vector<QByteArray> words{QFile::encodeName(program)};
    words.insert(words.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (QByteArray& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    writeFile(m_files.filePath(QStringLiteral("in")), input);
    const auto name = [this](const char* file) {
        return QFile::encodeName(m_files.filePath(QString::fromLatin1(file)));
    };
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, name("in").constData(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, name("out").constData(),
                                     O_WRONLY | O_CREAT, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, name("err").constData(),
                                     O_WRONLY | O_CREAT, 0600);
    if (!workingDirectory.isEmpty())
        posix_spawn_file_actions_addchdir_np(&actions,
                                             QFile::encodeName(workingDirectory).constData());
    if (posix_spawnp(&m_pid, argv.front(), &actions, nullptr, argv.data(), environ) != 0)
        m_pid = -1;
    posix_spawn_file_actions_destroy(&actions);
}

Process::Process(const QString& program, const QStringList& args, const QByteArray& input)
    : Process(program, // each argument encoded: joined at NULs, which no argument holds
              args.isEmpty() ? QList<QByteArray>()
                             : QFile::encodeName(args.join(u'\0')).split('\0'),
              input) {}

Process::~Process() {
    if (running()) {
        ::kill(m_pid, SIGKILL);
        ::waitpid(m_pid, nullptr, 0);
    }
}

bool Process::running() {
    int status = 0;
    if (m_pid <= 0 || m_exitCode || ::waitpid(m_pid, &status, WNOHANG) != m_pid)
        return m_pid > 0 && !m_exitCode;
    m_exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return false;
}

bool Process::finish(int timeoutMs) {
    const QDeadlineTimer deadline(timeoutMs);
    while (running() && !deadline.hasExpired())
        ::usleep(5000); // polled against the deadline
    return !running();
}

QString Process::out() const {
    return QString::fromUtf8(readFile(m_files.filePath(QStringLiteral("out"))));
}

QString Process::err() const {
    return QString::fromUtf8(readFile(m_files.filePath(QStringLiteral("err"))));
}

Ran run(const QString& program, const QStringList& args, const QByteArray& input, int timeoutMs) {
    Process process(program, args, input);
    if (!process.finish(timeoutMs))
        return {-1, process.out(), process.err() + QStringLiteral("timed out")};
    return {process.exitCode(), process.out(), process.err()};
}

} // namespace velmora::test
