// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Stages COUNT image buffers of SIZE bytes, each filled with its own tag, and prints the staged
// paths one per line. The container and bundle identifier come from the environment.
#include "bridge/ConstVars.h"
#include "bridge/ExtensionUtilities.h"

#include <QCoreApplication>
#include <QTextStream>

#include <unistd.h>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() != 3)
        return 2;
    const int count = args.at(1).toInt();
    const int size = args.at(2).toInt();
    QTextStream out(stdout);
    for (int i = 0; i < count; ++i) {
        const QByteArray tag = QByteArray::number(::getpid()) + '-' + QByteArray::number(i) + ';';
        QByteArray bytes = tag.repeated(size / tag.size() + 1);
        bytes.truncate(size);
        const QStringList paths = velmora::ExtensionUtilities::ShareDatas(
            QString(velmora::ConstVars::shareService), {bytes});
        for (const QString& p : paths)
            out << p << '\n';
    }
    return 0;
}
