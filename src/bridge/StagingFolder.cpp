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
#include <optional>
#include <utility>

namespace velmora {

namespace {

QString stagingFolder(const QString& service) {
    const QString data = ExtensionUtilities::GroupDataPath();
    return data.isNull() ? QString() : data + u'/' + service;
}

// How one staging operation reports itself: its inputs' names for the observer, and its log
// lines.
template <typename Input> struct Operation {
    const QList<Input>& inputs;
    const ExtensionUtilities::StagingObserver& observer;
    QStringView writeErrorLine;
    QStringView exceptionLine;
    QStringView coordinationLine;

    void leaveOut(const QString& what, const QString& reason) const {
        if (observer.leftOut)
            observer.leftOut(what, reason);
    }
};

QString nameOf(const QString& source) {
    return source;
}

QString nameOf(const QByteArray&) {
    return QStringLiteral("image.png");
}

// Stages an operation's inputs into this share's own folder, inside the coordinated access to
// the staging folder that the caller holds, with its log lines. stageOne stages one input into
// the folder and reports the staged path or the error. Returns the staged paths; next is the
// first input not dealt with.
template <typename Input, typename StageOne>
QStringList stageInside(const QString& service, const QString& staging, const Operation<Input>& op,
                        StageOne stageOne, qsizetype& next) {
    QStringList result;
    // Made here when no share was started in this staging folder (a tool that only stages).
    const ShareFolder::Made share = ShareFolder::currentOrMake(service, staging);
    try {
        for (; next < op.inputs.size(); ++next) {
            const FileStaging::Result staged =
                share.folder ? stageOne(next, op.inputs.at(next), share.folder->path())
                             : FileStaging::Result{{}, share.error, {}};
            if (staged.error) {
                Log::error(op.writeErrorLine, staged.error->text());
                op.leaveOut(nameOf(op.inputs.at(next)), staged.error->text());
                continue;
            }
            // A folder is staged with what could be copied of it.
            for (const FileStaging::LeftOut& entry : staged.leftOut) {
                Log::error(op.writeErrorLine, entry.error.text());
                op.leaveOut(entry.path, entry.error.text());
            }
            result.append(staged.path);
        }
    } catch (const std::exception& e) {
        // What is staged so far stays staged and reported.
        Log::error(op.exceptionLine, QString::fromLocal8Bit(e.what()));
        for (; next < op.inputs.size(); ++next)
            op.leaveOut(nameOf(op.inputs.at(next)), QString::fromLocal8Bit(e.what()));
    }
    return result;
}

// The inputs an operation could not stage because the staging folder's lock was not had.
template <typename Input>
void coordinationFailed(const Operation<Input>& op, const Error& error, qsizetype next) {
    Log::error(op.coordinationLine, error.text());
    for (; next < op.inputs.size(); ++next)
        op.leaveOut(nameOf(op.inputs.at(next)), error.text());
}

FileStaging::Result copyOne(qsizetype index, const QString& source, const QString& folder,
                            const ExtensionUtilities::StagingObserver& observer) {
    // The clean path's last component is the name; "/a/b/.." names "a", not "..".
    const QString clean = QDir::cleanPath(QDir(source).absolutePath());
    const QString name = clean.section(u'/', -1);
    return FileStaging::copyItem(
        clean, folder, [&] { return Zemlo_Fs::GetGoodPath(name, folder); },
        [&](qint64 done, qint64 total) {
            if (observer.progress)
                observer.progress(index, done, total);
        });
}

FileStaging::Result writeOne(const QByteArray& data, const QString& folder) {
    return FileStaging::writeData(
        data, folder, [&] { return Zemlo_Fs::GetGoodPath(QStringLiteral("image.png"), folder); });
}

Operation<QString> filesOperation(const QStringList& paths,
                                  const ExtensionUtilities::StagingObserver& observer) {
    return {paths, observer, u"[%@] Error writing file shareFiles %@",
            u"[%@] Exception shareFiles %@", u"[%@] Error shareFiles %@"};
}

Operation<QByteArray> datasOperation(const QList<QByteArray>& datas,
                                     const ExtensionUtilities::StagingObserver& observer) {
    return {datas, observer, u"[%@] Error writing file shareDatas %@",
            u"[%@] Exception shareDatas %@", u"[%@] Error shareDatas %@"};
}

// Stages one request inside the held access: its files, or else its image data.
QStringList stageRequest(const QString& service, const QString& staging,
                         const ExtensionUtilities::StagingRequest& request, qsizetype& next) {
    if (!request.paths.isEmpty())
        return stageInside(
            service, staging, filesOperation(request.paths, request.observer),
            [&](qsizetype index, const QString& source, const QString& folder) {
                return copyOne(index, source, folder, request.observer);
            },
            next);
    return stageInside(
        service, staging, datasOperation(request.datas, request.observer),
        [](qsizetype, const QByteArray& data, const QString& folder) {
            return writeOne(data, folder);
        },
        next);
}

void requestCoordinationFailed(const ExtensionUtilities::StagingRequest& request,
                               const Error& error, qsizetype next) {
    if (!request.paths.isEmpty())
        coordinationFailed(filesOperation(request.paths, request.observer), error, next);
    else
        coordinationFailed(datasOperation(request.datas, request.observer), error, next);
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
    QStringList staged;
    ShareBatch(service,
               [request = std::optional<StagingRequest>(StagingRequest{
                    paths, {}, observer, [&](const QStringList& s) { staged = s; }})]() mutable {
                   return std::exchange(request, std::nullopt);
               });
    return staged;
}

QStringList ExtensionUtilities::ShareDatas(const QString& service, const QList<QByteArray>& datas,
                                           const StagingObserver& observer) {
    QStringList staged;
    ShareBatch(service,
               [request = std::optional<StagingRequest>(StagingRequest{
                    {}, datas, observer, [&](const QStringList& s) { staged = s; }})]() mutable {
                   return std::exchange(request, std::nullopt);
               });
    return staged;
}

void ExtensionUtilities::ShareBatch(const QString& service,
                                    const std::function<std::optional<StagingRequest>()>& take) {
    std::optional<StagingRequest> request; // the request under way
    qsizetype next = 0;                    // its first input not yet dealt with
    QStringList staged;                    // and what it has staged so far
    const auto coordinationError = FileCoordinator::coordinateWritingItemAtPath(
        stagingFolder(service), [&](const QString& staging) {
            while ((request = take())) {
                next = 0;
                staged = stageRequest(service, staging, *request, next);
                if (request->done)
                    request->done(staged);
            }
        });
    if (!coordinationError)
        return;
    // Without the lock nothing is staged: every request is told so, with its own log line,
    // as if it had asked for the lock alone.
    if (!request)
        request = take();
    for (; request; request = take(), next = 0, staged.clear()) {
        requestCoordinationFailed(*request, *coordinationError, next);
        if (request->done)
            request->done(staged);
    }
}

} // namespace velmora
