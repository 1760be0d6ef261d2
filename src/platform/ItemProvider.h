// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Error.h"

#include <QLatin1String>
#include <QString>
#include <QVariant>

#include <functional>
#include <optional>

namespace velmora {

// Type identifiers under which shared items are offered.
inline constexpr QLatin1String kUTTypeURL("public.url");
inline constexpr QLatin1String kUTTypeFileURL("public.file-url");
inline constexpr QLatin1String kUTTypeImage("public.image");
inline constexpr QLatin1String kUTTypePlainText("public.plain-text");

// The domain of the errors an item provider reports itself.
inline constexpr auto kItemProviderErrorDomain = "NSItemProviderErrorDomain";
// The item cannot be had under the type asked for.
inline constexpr qint64 kItemProviderUnavailableCoercionError = -1000;

// One shared item that can be delivered under the type identifiers it conforms to.
class ItemProvider {
public:
    // The item (a QUrl, image bytes as a QByteArray, a QImage, or a QString), or an error.
    using CompletionHandler =
        std::function<void(const QVariant& item, const std::optional<Error>& error)>;

    virtual ~ItemProvider() = default;

    virtual bool hasItemConformingToTypeIdentifier(const QString& typeIdentifier) const = 0;

    // Returns at once; completion runs exactly once, later, on a thread of the provider's
    // choosing, which may be another one for every request.
    virtual void loadItemForTypeIdentifier(const QString& typeIdentifier,
                                           const QVariantMap& options,
                                           CompletionHandler completion) = 0;
};

} // namespace velmora
