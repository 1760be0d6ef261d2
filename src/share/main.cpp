#include "share/StagingCommand.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("velmora-share"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VELMORA_VERSION));
    QTextStream out(stdout);
    QTextStream err(stderr);
    return velmora::StagingCommand::run(app.arguments().mid(1), out, err);
}
