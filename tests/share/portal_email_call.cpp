// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// A sandboxed application's "Send by email": portal_email_call ADDRESS SUBJECT FILE exits with
// the Email portal's response (0: the handler started), 100 on a failed call, 101 on no answer.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusUnixFileDescriptor>
#include <QTimer>

#include <fcntl.h>

class ResponseWaiter : public QObject {
    Q_OBJECT
public Q_SLOTS:
    void response(uint code, const QVariantMap&) { QCoreApplication::exit(int(code)); }
};

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    qDBusRegisterMetaType<QList<QDBusUnixFileDescriptor>>();
    QDBusConnection bus = QDBusConnection::sessionBus();
    // The portal reads the file's path from the descriptor: it must be opened O_PATH.
    const QDBusUnixFileDescriptor fd(open(argv[3], O_PATH | O_CLOEXEC));
    const QString sender = bus.baseService().mid(1).replace(u'.', u'_');
    ResponseWaiter waiter;
    bus.connect({}, QStringLiteral("/org/freedesktop/portal/desktop/request/%1/t").arg(sender),
                QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"),
                &waiter, SLOT(response(uint, QVariantMap)));
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"),
        QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Email"), QStringLiteral("ComposeEmail"));
    call << QString()
         << QVariantMap{{QStringLiteral("handle_token"), QStringLiteral("t")},
                        {QStringLiteral("addresses"), QStringList{QString::fromUtf8(argv[1])}},
                        {QStringLiteral("subject"), QString::fromUtf8(argv[2])},
                        {QStringLiteral("attachment_fds"),
                         QVariant::fromValue(QList<QDBusUnixFileDescriptor>{fd})}};
    const QDBusMessage reply = bus.call(call, QDBus::Block, 30000);
    if (!fd.isValid() || reply.type() == QDBusMessage::ErrorMessage) {
        qWarning("ComposeEmail: %s", qPrintable(reply.errorMessage()));
        return 100;
    }
    QTimer::singleShot(30000, &app, [] { QCoreApplication::exit(101); });
    return app.exec();
}

#include "portal_email_call.moc"
