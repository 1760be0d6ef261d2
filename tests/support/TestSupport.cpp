// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"

#include "Process.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <ostream>

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

QStringList attachmentPaths(const QUrlQuery& query) {
    QStringList paths;
    for (int i = 0; query.hasQueryItem(QStringLiteral("attachment_%1").arg(i)); ++i)
        paths.append(
            query.queryItemValue(QStringLiteral("attachment_%1").arg(i), QUrl::FullyDecoded));
    return paths;
}

static bool runPython(const QString& script, const QStringList& args) {
    QString python = QStringLiteral(VELMORA_TEST_PYTHON);
    if (python.isEmpty() || !QFileInfo(python).isExecutable())
        python = QStandardPaths::findExecutable(QStringLiteral("python3"));
    if (python.isEmpty())
        return false;
    const Ran ran = run(python, QStringList{QStringLiteral("-c"), script} + args, {}, 120000);
    if (ran.exitCode != 0) {
        ADD_FAILURE() << "python3 failed: " << ran.err.toStdString();
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
