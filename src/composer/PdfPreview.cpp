// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/PdfPreview.h"

#include "views/UiLogging.h"

#include <QCoreApplication>
#include <QFile>

#include <dlfcn.h>
#include <mutex>

namespace velmora {

namespace {

using Render = void (*)(const QString*, const QSize*, QImage*);

// The renderer's module: beside the installed program, else where the build made it.
Render loadRenderer() {
    QStringList candidates;
    if (QCoreApplication::instance()) {
        candidates.append(QCoreApplication::applicationDirPath() +
                          QStringLiteral("/" VELMORA_PDF_MODULE_FROM_BIN));
    }
    candidates.append(QStringLiteral(VELMORA_PDF_MODULE_BUILT));
    for (const QString& path : candidates) {
        if (!QFile::exists(path))
            continue;
        // Kept loaded for the rest of the run.
        void* module = dlopen(QFile::encodeName(path).constData(), RTLD_NOW | RTLD_LOCAL);
        if (!module) {
            qCWarning(lcUi) << "the PDF renderer cannot be loaded:" << dlerror();
            continue;
        }
        if (void* entry = dlsym(module, "velmoraFirstPageOfPdf"))
            return reinterpret_cast<Render>(entry);
    }
    qCWarning(lcUi) << "no PDF renderer found; PDF files are shown by their icon";
    return nullptr;
}

} // namespace

QImage firstPageOfPdf(const QString& path, const QSize& size) {
    if (size.isEmpty())
        return {};
    static std::once_flag once;
    static Render render = nullptr;
    std::call_once(once, [] { render = loadRenderer(); });
    QImage image;
    if (render)
        render(&path, &size, &image);
    return image;
}

} // namespace velmora
