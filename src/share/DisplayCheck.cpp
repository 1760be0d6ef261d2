// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "share/DisplayCheck.h"

#include "platform/LocalizedString.h"

#include <QDir>
#include <QFile>
#include <QStringList>
#include <QtGlobal>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace velmora {

namespace {

// Whether a local stream socket accepts a connection; the connection is closed at once.
bool socketAnswers(const QString& path) {
    const QByteArray encoded = QFile::encodeName(path);
    sockaddr_un address{};
    if (encoded.isEmpty() || size_t(encoded.size()) >= sizeof address.sun_path)
        return false;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, encoded.constData(), size_t(encoded.size()));
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return false;
    const bool answered =
        ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(fd);
    return answered;
}

QString waylandProblem() {
    if (qEnvironmentVariableIsSet("WAYLAND_SOCKET"))
        return {}; // a socket handed over by the compositor that started us
    QString name = qEnvironmentVariable("WAYLAND_DISPLAY");
    if (name.isEmpty())
        name = QStringLiteral("wayland-0");
    const QString path =
        QDir::isAbsolutePath(name) ? name : qEnvironmentVariable("XDG_RUNTIME_DIR") + u'/' + name;
    if (socketAnswers(path))
        return {};
    return LocalizedString("no Wayland compositor answers at %1").arg(path);
}

QString x11Problem() {
    const QString display = qEnvironmentVariable("DISPLAY");
    if (display.isEmpty())
        return LocalizedString("DISPLAY is not set");
    // ":1", ":1.0" and "unix:1" are local sockets; a host name means TCP, left to Qt to try.
    QString local = display;
    if (local.startsWith(u"unix:"))
        local = local.mid(4);
    if (!local.startsWith(u':'))
        return {};
    const QString number = local.mid(1).section(u'.', 0, 0);
    const QString path = QStringLiteral("/tmp/.X11-unix/X") + number;
    if (socketAnswers(path))
        return {};
    return LocalizedString("no X server answers at %1 (DISPLAY=%2)").arg(path, display);
}

QStringList platformsToTry() {
    const QString chosen = qEnvironmentVariable("QT_QPA_PLATFORM");
    if (!chosen.isEmpty())
        return chosen.split(u';', Qt::SkipEmptyParts);
    // As Qt picks when nothing is chosen: Wayland first in a Wayland session, else X11.
    if (qEnvironmentVariable("XDG_SESSION_TYPE") == u"wayland" ||
        (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && qEnvironmentVariableIsEmpty("DISPLAY")))
        return {QStringLiteral("wayland"), QStringLiteral("xcb")};
    return {QStringLiteral("xcb")};
}

// The handler that was in place before FatalAsUsageError; every other message goes there. Only
// the main thread sets it, before and after the application object is made.
QtMessageHandler previousHandler = nullptr;

void fatalAsUsageError(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type != QtFatalMsg) {
        if (previousHandler)
            previousHandler(type, context, message);
        return;
    }
    std::fprintf(stderr, "velmora-share: %s\nvelmora-share: %s\n",
                 qPrintable(LocalizedString("the composer's window cannot be opened")),
                 qPrintable(message.trimmed()));
    std::fflush(stderr);
    std::_Exit(2);
}

} // namespace

QString DisplayCheck::problem() {
    QStringList problems;
    for (const QString& platform : platformsToTry()) {
        const QString name = platform.section(u':', 0, 0); // "wayland:option=..."
        QString problem;
        if (name.startsWith(u"wayland"))
            problem = waylandProblem();
        else if (name == u"xcb")
            problem = x11Problem();
        if (problem.isNull())
            return {}; // offscreen, vnc, eglfs and the like need nothing to be checked here
        problems.append(problem);
    }
    return problems.join(QStringLiteral("; "));
}

DisplayCheck::FatalAsUsageError::FatalAsUsageError() {
    previousHandler = qInstallMessageHandler(fatalAsUsageError);
}

DisplayCheck::FatalAsUsageError::~FatalAsUsageError() {
    qInstallMessageHandler(previousHandler);
}

} // namespace velmora
