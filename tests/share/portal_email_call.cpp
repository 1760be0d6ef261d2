// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Asks the Email portal on the session bus to compose a message, as a sandboxed application's
// "Send by email" does: usage: portal_email_call ADDRESS SUBJECT FILE. Waits for the portal's
// answer and exits with its response code (0: the mail handler was started), or 100 when the
// call failed and 101 when no answer came.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusUnixFileDescriptor>
#include <QTimer>

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

class ResponseWaiter : public QObject {
    Q_OBJECT
public Q_SLOTS:
    void response(uint code, const QVariantMap&) { QCoreApplication::exit(int(code)); }
};

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    if (argc != 4)
        return 2;
    // The portal reads the file's path from the descriptor: it must be opened O_PATH.
    const int fd = open(argv[3], O_PATH | O_CLOEXEC);
    if (fd < 0)
        return 100;
    qDBusRegisterMetaType<QList<QDBusUnixFileDescriptor>>();
    QDBusConnection bus = QDBusConnection::sessionBus();
    const QString token = QStringLiteral("velmora_test");
    const QString sender = bus.baseService().mid(1).replace(u'.', u'_');
    const QString handle =
        QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token);
    ResponseWaiter waiter;
    bus.connect(QString(), handle, QStringLiteral("org.freedesktop.portal.Request"),
                QStringLiteral("Response"), &waiter, SLOT(response(uint, QVariantMap)));

    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"),
        QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Email"), QStringLiteral("ComposeEmail"));
    QVariantMap options;
    options.insert(QStringLiteral("handle_token"), token);
    options.insert(QStringLiteral("addresses"), QStringList{QString::fromUtf8(argv[1])});
    options.insert(QStringLiteral("subject"), QString::fromUtf8(argv[2]));
    options.insert(
        QStringLiteral("attachment_fds"),
        QVariant::fromValue(QList<QDBusUnixFileDescriptor>{QDBusUnixFileDescriptor(fd)}));
    call << QString() << options;
    const QDBusReply<QDBusObjectPath> reply = bus.call(call, QDBus::Block, 30000);
    close(fd);
    if (!reply.isValid()) {
        std::fprintf(stderr, "ComposeEmail: %s\n", qPrintable(reply.error().message()));
        return 100;
    }
    QTimer::singleShot(30000, &app, [] { QCoreApplication::exit(101); });
    return app.exec();
}

#include "portal_email_call.moc"
