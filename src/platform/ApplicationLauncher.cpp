// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/ApplicationLauncher.h"

#include "platform/Log.h"

#include <QFile>
#include <QStandardPaths>

#include <climits>
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>
#include <memory>
#include <unistd.h>
#include <vector>

namespace velmora {

namespace {

struct GObjectRelease {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T> using GObjectPtr = std::unique_ptr<T, GObjectRelease>;

// GIO starts the program through its launch helper, which exits on its own when the kernel
// refuses the program, and reports the launch as done. A script whose interpreter is missing or
// not executable is the case that gets that far (GIO itself checks the program is there and
// executable), so it is checked here before launching.
bool scriptCannotStart(GAppInfo* app) {
    // The program as the Exec line names it, unquoted (g_app_info_get_executable keeps quotes).
    const char* commandLine = g_app_info_get_commandline(app);
    gchar** argv = nullptr;
    if (!commandLine || !g_shell_parse_argv(commandLine, nullptr, &argv, nullptr))
        return false;
    gchar* found = g_find_program_in_path(argv[0]);
    g_strfreev(argv);
    if (!found)
        return true;
    QFile script(QFile::decodeName(found));
    g_free(found);
    if (!script.open(QIODevice::ReadOnly))
        return false; // the kernel may still run it; let the launch tell
    const QByteArray first = script.readLine(PATH_MAX + 2);
    if (!first.startsWith("#!"))
        return false;
    const QByteArray interpreter = first.mid(2).trimmed().split(' ').value(0).split('\t').value(0);
    return !interpreter.isEmpty() && ::access(interpreter.constData(), X_OK) != 0;
}

} // namespace

QString ApplicationLauncher::desktopEntryPath(const QString& bundleIdentifier) {
    // Looked up afresh on every launch rather than through GIO's index, which is built once per
    // process and refreshed only when its file monitors report a change.
    return QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                  QStringLiteral("applications/") + bundleIdentifier +
                                      QStringLiteral(".desktop"));
}

bool ApplicationLauncher::openUrls(const QStringList& urls, const QString& bundleIdentifier,
                                   Activation activation) {
    const QString entry = desktopEntryPath(bundleIdentifier);
    if (entry.isEmpty())
        return false;
    // Null for an entry whose program is missing. A hidden entry counts as deleted, as the
    // desktop entry rules have it: one in $XDG_DATA_HOME hides the system's entry of that name.
    const GObjectPtr<GDesktopAppInfo> app(
        g_desktop_app_info_new_from_filename(QFile::encodeName(entry).constData()));
    if (!app || g_desktop_app_info_get_is_hidden(app.get()))
        return false;
    if (scriptCannotStart(G_APP_INFO(app.get()))) {
        qCDebug(lcCore).noquote() << "cannot launch" << entry << ": its program cannot start";
        return false;
    }

    const GObjectPtr<GAppLaunchContext> context(g_app_launch_context_new());
    if (activation == Activation::WithoutActivation) {
        // Tokens this process was started with must not reach the application either.
        g_app_launch_context_unsetenv(context.get(), "DESKTOP_STARTUP_ID");
        g_app_launch_context_unsetenv(context.get(), "XDG_ACTIVATION_TOKEN");
    }

    std::vector<QByteArray> texts;
    texts.reserve(urls.size());
    GList* list = nullptr;
    for (const QString& url : urls) {
        texts.push_back(url.toUtf8());
        list = g_list_prepend(list, texts.back().data());
    }
    list = g_list_reverse(list);

    GError* error = nullptr;
    const bool launched =
        g_app_info_launch_uris(G_APP_INFO(app.get()), list, context.get(), &error);
    g_list_free(list);
    if (error) {
        qCDebug(lcCore).noquote() << "cannot launch" << entry << ":" << error->message;
        g_error_free(error);
    }
    return launched;
}

} // namespace velmora
