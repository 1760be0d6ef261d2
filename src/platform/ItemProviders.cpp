// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/ItemProviders.h"

#include "platform/DispatchQueue.h"

#include <QDir>
#include <QStringList>

namespace velmora::ItemProviders {

namespace {

// An item that is already at hand, offered under a fixed list of type identifiers.
class ValueProvider final : public ItemProvider {
public:
    ValueProvider(QStringList types, QVariant item)
        : m_types(std::move(types))
        , m_item(std::move(item)) {}

    bool hasItemConformingToTypeIdentifier(const QString& typeIdentifier) const override {
        return m_types.contains(typeIdentifier);
    }

    void loadItemForTypeIdentifier(const QString& typeIdentifier, const QVariantMap&,
                                   CompletionHandler completion) override {
        std::optional<Error> error;
        if (!hasItemConformingToTypeIdentifier(typeIdentifier)) {
            error = Error{QString::fromLatin1(kItemProviderErrorDomain),
                          kItemProviderUnavailableCoercionError,
                          QStringLiteral("Cannot load representation of type ") + typeIdentifier};
        }
        DispatchQueue::global(DispatchQueue::Priority::Default)
            .async([item = error ? QVariant() : m_item, error, completion = std::move(completion)] {
                completion(item, error);
            });
    }

private:
    const QStringList m_types;
    const QVariant m_item;
};

std::shared_ptr<ItemProvider> provider(QStringList types, QVariant item) {
    return std::make_shared<ValueProvider>(std::move(types), std::move(item));
}

} // namespace

std::shared_ptr<ItemProvider> file(const QString& path) {
    const QString absolute = QDir::cleanPath(QDir::current().absoluteFilePath(path));
    return provider({kUTTypeURL, kUTTypeFileURL}, QUrl::fromLocalFile(absolute));
}

std::shared_ptr<ItemProvider> link(const QUrl& url) {
    return provider({kUTTypeURL}, url);
}

std::shared_ptr<ItemProvider> imageData(const QByteArray& bytes) {
    return provider({kUTTypeImage}, bytes);
}

std::shared_ptr<ItemProvider> image(const QImage& image) {
    return provider({kUTTypeImage}, image);
}

std::shared_ptr<ItemProvider> plainText(const QString& text) {
    return provider({kUTTypePlainText}, text);
}

} // namespace velmora::ItemProviders
