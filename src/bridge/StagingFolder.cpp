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
// the error.
template <typename Input, typename StageOne>
QStringList stageAll(const QString& service, const QList<Input>& inputs, StageOne stageOne,
                     QStringView writeErrorLine, QStringView exceptionLine,
                     QStringView coordinationLine) {
    QStringList result;
    const auto coordinationError = FileCoordinator::coordinateWritingItemAtPath(
        stagingFolder(service), [&](const QString& staging) {
            // Made here when no share was started in this staging folder (a tool that only
            // stages).
            const ShareFolder::Made share = ShareFolder::currentOrMake(service, staging);
            try {
                for (const Input& input : inputs) {
                    const FileStaging::Result staged = share.folder
                                                           ? stageOne(input, share.folder->path())
                                                           : FileStaging::Result{{}, share.error};
                    if (staged.error)
                        Log::error(writeErrorLine, staged.error->text());
                    else
                        result.append(staged.path);
                }
            } catch (const std::exception& e) {
                // What is staged so far stays staged and reported.
                Log::error(exceptionLine, QString::fromLocal8Bit(e.what()));
            }
        });
    if (coordinationError)
        Log::error(coordinationLine, coordinationError->text());
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

QStringList ExtensionUtilities::ShareFiles(const QString& service, const QStringList& paths) {
    return stageAll(
        service, paths,
        [](const QString& source, const QString& folder) {
            // The clean path's last component is the name; "/a/b/.." names "a", not "..".
            const QString clean = QDir::cleanPath(QDir(source).absolutePath());
            const QString name = clean.section(u'/', -1);
            return FileStaging::copyItem(clean, folder,
                                         [&] { return Zemlo_Fs::GetGoodPath(name, folder); });
        },
        u"[%@] Error writing file shareFiles %@", u"[%@] Exception shareFiles %@",
        u"[%@] Error shareFiles %@");
}

QStringList ExtensionUtilities::ShareDatas(const QString& service, const QList<QByteArray>& datas) {
    return stageAll(
        service, datas,
        [](const QByteArray& data, const QString& folder) {
            return FileStaging::writeData(data, folder, [&] {
                return Zemlo_Fs::GetGoodPath(QStringLiteral("image.png"), folder);
            });
        },
        u"[%@] Error writing file shareDatas %@", u"[%@] Exception shareDatas %@",
        u"[%@] Error shareDatas %@");
}

} // namespace velmora
