// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <ostream>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

void PrintTo(const QByteArray& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

namespace velmora::test {

ScopedEnv::ScopedEnv(const char* name, const QByteArray& value)
    : m_name(name) {
    if (qEnvironmentVariableIsSet(name))
        m_old = qgetenv(name);
    qputenv(name, value);
}

ScopedEnv::~ScopedEnv() {
    if (m_old)
        qputenv(m_name.constData(), *m_old);
    else
        qunsetenv(m_name.constData());
}

TempContainer::TempContainer(const QByteArray& bundleId)
    : m_container("VELMORA_GROUP_CONTAINER", QFile::encodeName(m_dir.path()))
    , m_bundle("VELMORA_BUNDLE_ID", bundleId) {}

QString TempContainer::dataFolder() const {
    const bool beta =
        qEnvironmentVariable("VELMORA_BUNDLE_ID").startsWith(u"it.zemlo.velmora.beta");
    return root() + (beta ? QStringLiteral("/SharedDataBeta") : QStringLiteral("/SharedData"));
}

QString TempContainer::writeData(const QString& relativePath, const QByteArray& bytes) const {
    const QString path = dataFolder() + u'/' + relativePath;
    writeFile(path, bytes);
    return path;
}

QByteArray readFile(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return f.readAll();
}

void writeFile(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(bytes) != bytes.size())
        ADD_FAILURE() << "cannot write " << path.toStdString();
}

namespace {

// Runs program with args and waits for it, at most timeoutMs; its standard error goes to *errors.
// Started with posix_spawn rather than QProcess: Qt starts children with clone(CLONE_VM), and the
// thread sanitizer's handling of that clone runs its after-fork code for the child on the
// parent's own thread state, which leaves the thread that started the child with its locks
// unseen (every later hand-over through a mutex looks like a race) and forbids new threads.
// posix_spawn clones inside the C library, where the sanitizer does not step in.
bool runProgram(const QString& program, const QStringList& args, int timeoutMs,
                QByteArray* errors) {
    std::vector<QByteArray> words{QFile::encodeName(program)};
    for (const QString& arg : args)
        words.push_back(arg.toUtf8());
    std::vector<char*> argv;
    for (QByteArray& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    int pipe[2];
    if (::pipe2(pipe, O_CLOEXEC) != 0)
        return false;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipe[1], STDERR_FILENO);
    pid_t pid = -1;
    const int spawned = posix_spawn(&pid, argv.front(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(pipe[1]);
    if (spawned != 0) {
        ::close(pipe[0]);
        *errors = QByteArray("cannot start ") + argv.front() + ": " + std::strerror(spawned);
        return false;
    }

    QDeadlineTimer deadline(timeoutMs);
    bool timedOut = false;
    char buffer[4096];
    for (;;) {
        pollfd readable{pipe[0], POLLIN, 0};
        const int ready = ::poll(&readable, 1, int(deadline.remainingTime()));
        if (ready == 0) {
            timedOut = true;
            ::kill(pid, SIGKILL);
            break;
        }
        if (ready < 0 && errno == EINTR)
            continue;
        const ssize_t n = ready < 0 ? -1 : ::read(pipe[0], buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        errors->append(buffer, n);
    }
    ::close(pipe[0]);
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    if (timedOut)
        errors->append("timed out");
    return !timedOut && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

bool runPython(const QString& script, const QStringList& args) {
    QString python = QStringLiteral(VELMORA_TEST_PYTHON);
    if (python.isEmpty() || !QFileInfo(python).isExecutable())
        python = QStandardPaths::findExecutable(QStringLiteral("python3"));
    if (python.isEmpty())
        return false;
    QByteArray errors;
    if (!runProgram(python, QStringList{QStringLiteral("-c"), script} + args, 120000, &errors)) {
        ADD_FAILURE() << "python3 failed: " << errors.toStdString();
        return false;
    }
    return true;
}

bool writePlist(const QString& path, const QByteArray& json, bool binary) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    static const QString script = QStringLiteral(
        "import json, plistlib, sys\n"
        "value = json.loads(sys.argv[2])\n"
        "fmt = plistlib.FMT_BINARY if sys.argv[3] == 'binary' else plistlib.FMT_XML\n"
        "open(sys.argv[1], 'wb').write(plistlib.dumps(value, fmt=fmt))\n");
    return runPython(script, {path, QString::fromUtf8(json),
                              binary ? QStringLiteral("binary") : QStringLiteral("xml")});
}

} // namespace velmora::test
