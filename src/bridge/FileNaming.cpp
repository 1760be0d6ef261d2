// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "bridge/FileNaming.h"

#include "platform/FileNames.h"

#include <QFileInfo>

namespace velmora {

QString Zemlo_Fs::SafeFileName(const QString& name) {
    // A name that is not valid UTF-8 is staged under a valid one, so that the command URL that
    // carries the staged path is valid UTF-8 too.
    QString safe = FileNames::displayable(name);
    safe.replace(u'/', u'_');
    safe.replace(QChar(u'\0'), u'_');
    if (safe.isEmpty() || safe == u"." || safe == u"..")
        return QStringLiteral("file");
    return safe;
}

QString Zemlo_Fs::GetGoodPath(const QString& name, const QString& folder) {
    // lstat semantics: a dangling link still takes its name.
    return GetGoodPath(name, folder, [](const QString& path) {
        const QFileInfo info(path);
        return info.exists() || info.isSymLink();
    });
}

QString Zemlo_Fs::GetGoodPath(const QString& name, const QString& folder,
                              const ExistsFunction& exists) {
    const QString safe = SafeFileName(name);
    // The extension follows the last dot, unless that dot starts or ends the name.
    const qsizetype dot = safe.lastIndexOf(u'.');
    const bool hasExtension = dot > 0 && dot < safe.size() - 1;
    const QString base = hasExtension ? safe.left(dot) : safe;
    const QString ext = hasExtension ? safe.mid(dot + 1) : QString();
    const QString prefix = folder.endsWith(u'/') ? folder : folder + u'/';

    QString candidate = base;
    for (quint64 counter = 1;; ++counter) {
        QString path = prefix + candidate;
        if (!ext.isEmpty())
            path += u'.' + ext;
        if (!exists(path))
            return path;
        candidate = base + u'_' + QString::number(counter);
    }
}

} // namespace velmora
