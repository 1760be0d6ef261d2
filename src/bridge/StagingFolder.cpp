// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "bridge/ExtensionUtilities.h"
#include "bridge/FileNaming.h"
#include "bridge/FileStaging.h"
#include "bridge/ShareFolder.h"
#include "bridge/StagingSweep.h"
#include "platform/FileCoordinator.h"
#include "platform/Log.h"

#include <QDir>
#include <QFileInfo>

#include <exception>

namespace velmora {

namespace {

QString stagingFolder(const QString& service) {
    const QString data = ExtensionUtilities::GroupDataPath();
    return data.isNull() ? QString() : data + u'/' + service;
}

// Runs one staging operation inside the coordinated access to the staging folder, with its log
// lines. stageOne stages one input into this share's own folder and reports the staged path or
// the error; name gives an input's name for the observer.
template <typename Input, typename StageOne, typename Name>
QStringList stageAll(const QString& service, const QList<Input>& inputs, StageOne stageOne,
                     Name name, const ExtensionUtilities::StagingObserver& observer,
                     QStringView writeErrorLine, QStringView exceptionLine,
                     QStringView coordinationLine) {
    QStringList result;
    qsizetype next = 0; // the first input not yet dealt with
    const auto leaveOut = [&](const QString& what, const QString& reason) {
        if (observer.leftOut)
            observer.leftOut(what, reason);
    };
    const auto coordinationError = FileCoordinator::coordinateWritingItemAtPath(
        stagingFolder(service), [&](const QString& staging) {
            // Made here when no share was started in this staging folder (a tool that only
            // stages).
            const ShareFolder::Made share = ShareFolder::currentOrMake(service, staging);
            try {
                for (; next < inputs.size(); ++next) {
                    const FileStaging::Result staged =
                        share.folder ? stageOne(next, inputs.at(next), share.folder->path())
                                     : FileStaging::Result{{}, share.error, {}};
                    if (staged.error) {
                        Log::error(writeErrorLine, staged.error->text());
                        leaveOut(name(inputs.at(next)), staged.error->text());
                        continue;
                    }
                    // A folder is staged with what could be copied of it.
                    for (const FileStaging::LeftOut& entry : staged.leftOut) {
                        Log::error(writeErrorLine, entry.error.text());
                        leaveOut(entry.path, entry.error.text());
                    }
                    result.append(staged.path);
                }
            } catch (const std::exception& e) {
                // What is staged so far stays staged and reported.
                Log::error(exceptionLine, QString::fromLocal8Bit(e.what()));
                for (; next < inputs.size(); ++next)
                    leaveOut(name(inputs.at(next)), QString::fromLocal8Bit(e.what()));
            }
        });
    if (coordinationError) {
        Log::error(coordinationLine, coordinationError->text());
        for (; next < inputs.size(); ++next)
            leaveOut(name(inputs.at(next)), coordinationError->text());
    }
    return result;
}

} // namespace

void ExtensionUtilities::ShareInit(const QString& service) {
    // A new share: a folder this process staged into before is now a finished share's.
    ShareFolder::release(service);
    const auto coordinationError = FileCoordinator::coordinateWritingItemAtPath(
        stagingFolder(service), [&service](const QString& folder) {
            // One error slot for both steps, never cleared: when a removal fails (the folder
            // is not there on the first share) the creation step reports that error again.
            std::optional<Error> error;
            const auto removalFailed = [&error](const Error& removal) {
                error = removal;
                Log::error(u"[%@] shareInit delete %@", removal.text());
            };
            const QFileInfo info(folder);
            if (info.isDir() && !info.isSymLink()) {
                // Other shares' folders stay while they run, while the main application reads
                // them, and for the grace period after.
                for (const Error& removal :
                     StagingSweep::removeStaleEntries(folder, ShareFolder::kGracePeriod))
                    removalFailed(removal);
            } else if (auto removal = FileStaging::removeItem(folder)) {
                // Missing on the first share; a file or a link in its place goes.
                removalFailed(*removal);
            }
            if (auto creation = FileStaging::createFolder(folder))
                error = creation;
            const ShareFolder::Made share = ShareFolder::currentOrMake(service, folder);
            if (share.error)
                error = share.error;
            if (error)
                Log::error(u"[%@] shareInit create %@", error->text());
        });
    if (coordinationError)
        Log::error(u"[%@] shareInit %@", coordinationError->text());
}

QStringList ExtensionUtilities::ShareFiles(const QString& service, const QStringList& paths,
                                           const StagingObserver& observer) {
    return stageAll(
        service, paths,
        [&observer](qsizetype index, const QString& source, const QString& folder) {
            // The clean path's last component is the name; "/a/b/.." names "a", not "..".
            const QString clean = QDir::cleanPath(QDir(source).absolutePath());
            const QString name = clean.section(u'/', -1);
            return FileStaging::copyItem(
                clean, folder, [&] { return Zemlo_Fs::GetGoodPath(name, folder); },
                [&](qint64 done, qint64 total) {
                    if (observer.progress)
                        observer.progress(index, done, total);
                });
        },
        [](const QString& source) { return source; }, observer,
        u"[%@] Error writing file shareFiles %@", u"[%@] Exception shareFiles %@",
        u"[%@] Error shareFiles %@");
}

QStringList ExtensionUtilities::ShareDatas(const QString& service, const QList<QByteArray>& datas,
                                           const StagingObserver& observer) {
    return stageAll(
        service, datas,
        [](qsizetype, const QByteArray& data, const QString& folder) {
            return FileStaging::writeData(data, folder, [&] {
                return Zemlo_Fs::GetGoodPath(QStringLiteral("image.png"), folder);
            });
        },
        [](const QByteArray&) { return QStringLiteral("image.png"); }, observer,
        u"[%@] Error writing file shareDatas %@", u"[%@] Exception shareDatas %@",
        u"[%@] Error shareDatas %@");
}

} // namespace velmora
