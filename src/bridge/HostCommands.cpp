// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "bridge/ConstVars.h"
#include "bridge/ExtensionUtilities.h"
#include "message/ExtensionMessage.h"
#include "message/PrintedText.h"
#include "platform/ApplicationLauncher.h"
#include "platform/HostEnvironment.h"
#include "platform/NotificationCenter.h"
#include "request/RequestUtils.h"

#include <array>

namespace velmora {

namespace {

// "velmora://<command>?mail=<account, encoded>&messageid=<id as it stands>&folderstandardid=<n>";
// a missing value prints as "(null)".
QString messageCommandText(const ExtensionMessage& message, const QString& command) {
    const QVariant folder = message.folderStandardId();
    return QStringLiteral("velmora://") + printedText(command) + QStringLiteral("?mail=") +
           printedText(RequestUtils::URLEncodedString(message.account())) +
           QStringLiteral("&messageid=") + printedText(message.messageId()) +
           QStringLiteral("&folderstandardid=") +
           printedText(folder.isValid() ? folder.toString() : QString());
}

} // namespace

QString ExtensionUtilities::TargetApplication() {
    // The first row whose prefix starts this program's own bundle identifier, else the release
    // build.
    static constexpr std::array kTargets = {ConstVars::it_zemlo_velmora_beta8,
                                            ConstVars::it_zemlo_velmora_beta10,
                                            ConstVars::it_zemlo_velmora_2};
    const QString self = HostEnvironment::bundleIdentifier();
    for (const QLatin1String target : kTargets) {
        if (self.startsWith(target))
            return target;
    }
    return ConstVars::it_zemlo_velmora;
}

bool ExtensionUtilities::LaunchCommands(const QList<UrlText>& urls, bool background) {
    QStringList texts;
    texts.reserve(urls.size());
    for (const UrlText& url : urls) {
        // A null URL is no command; the main application must never be handed an empty one.
        if (!url.isNull())
            texts.append(url.toString());
    }
    if (texts.isEmpty())
        return false;
    return ApplicationLauncher::openUrls(texts, TargetApplication(),
                                         background
                                             ? ApplicationLauncher::Activation::WithoutActivation
                                             : ApplicationLauncher::Activation::Activate);
}

bool ExtensionUtilities::LaunchCommandForMessages(
    const QList<std::shared_ptr<ExtensionMessage>>& messages, const QString& command,
    bool background) {
    QList<UrlText> urls;
    for (const auto& message : messages) {
        const UrlText url = UrlText::fromString(messageCommandText(*message, command));
        if (url.isNull())
            continue;
        NotificationCenter::defaultCenter().postNotificationName(
            ConstVars::actionCalledExtension,
            QVariantMap{{QStringLiteral("message"), QVariant::fromValue(message)},
                        {QStringLiteral("command"), command}});
        urls.append(url);
    }
    return LaunchCommands(urls, background);
}

} // namespace velmora
