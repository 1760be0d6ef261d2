// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "RecordingDesktop.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <chrono>
#include <thread>

namespace velmora::test {

RecordingDesktop::RecordingDesktop()
    : m_home("XDG_DATA_HOME", QFile::encodeName(m_dir.filePath(QStringLiteral("home"))))
    , m_system("XDG_DATA_DIRS", QFile::encodeName(m_dir.filePath(QStringLiteral("system"))))
    // No session bus: GIO would otherwise announce the launch on the developer's desktop.
    , m_bus("DBUS_SESSION_BUS_ADDRESS",
            "unix:path=" + QFile::encodeName(m_dir.filePath(QStringLiteral("no-bus")))) {
    // Written to a temporary name and moved, so a poll never reads half a record.
    writeFile(recorder(), QByteArray(R"(#!/bin/sh
out="RECORDS/$1"; shift
{ echo "startup=${DESKTOP_STARTUP_ID-unset}"; echo "activation=${XDG_ACTIVATION_TOKEN-unset}"
  for a in "$@"; do printf 'arg=%s\n' "$a"; done; } > "$out.tmp" && mv "$out.tmp" "$out"
)")
                              .replace("RECORDS", QFile::encodeName(records())));
    QFile::setPermissions(recorder(), QFile::permissions(recorder()) | QFile::ExeOwner);
    QDir().mkpath(records());
    QDir().mkpath(m_dir.filePath(QStringLiteral("system")));
}

void RecordingDesktop::addApplication(const QString& id) {
    writeFile(entryPath(id), "[Desktop Entry]\nType=Application\nName=" + id.toUtf8() +
                                 "\nExec=\"" + QFile::encodeName(recorder()) + "\" " + id.toUtf8() +
                                 " %U\n");
}

QString RecordingDesktop::entryPath(const QString& id) const {
    return dataHome() + QStringLiteral("/applications/") + id + QStringLiteral(".desktop");
}

QStringList RecordingDesktop::takeRecord(const QString& id, int timeoutMs) {
    // The launched program is not our child, so there is nothing to wait on but the file.
    const QString path = records() + u'/' + id;
    const QDeadlineTimer deadline(timeoutMs);
    while (!QFileInfo::exists(path) && !deadline.hasExpired()) {
        if (QCoreApplication::instance())
            QCoreApplication::processEvents();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    QStringList lines = QString::fromUtf8(readFile(path)).split(u'\n', Qt::SkipEmptyParts);
    QFile::remove(path);
    return lines;
}

QStringList RecordingDesktop::takeArguments(const QString& id, int timeoutMs) {
    QStringList arguments =
        takeRecord(id, timeoutMs).filter(QRegularExpression(QStringLiteral("^arg=")));
    for (QString& argument : arguments)
        argument.remove(0, 4);
    return arguments;
}

QStringList RecordingDesktop::recorded() const {
    return QDir(records()).entryList(QDir::Files);
}

} // namespace velmora::test
