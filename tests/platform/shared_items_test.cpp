// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "ImageSamples.h"
#include "TestSupport.h"
#include "platform/ItemProviders.h"
#include "platform/PngConversion.h"

#include <future>
#include <thread>

using namespace velmora;
using namespace velmora::test;

namespace {

struct Answer {
    QVariant item;
    std::optional<Error> error;
    std::thread::id thread;
};

Answer load(ItemProvider& provider, const QString& type) {
    std::promise<Answer> promise;
    provider.loadItemForTypeIdentifier(type, {}, [&](const QVariant& item, const auto& error) {
        promise.set_value({item, error, std::this_thread::get_id()});
    });
    return promise.get_future().get();
}

// What each provider delivers is seen through intake; here, what intake never asks for.
TEST(ItemProviders, AnswerOnAnotherThreadAndRefuseTypesTheyDoNotOffer) {
    const auto text = ItemProviders::plainText(QStringLiteral("hi"));
    EXPECT_FALSE(text->hasItemConformingToTypeIdentifier(kUTTypeURL));
    EXPECT_FALSE(text->hasItemConformingToTypeIdentifier(kUTTypeImage));
    const Answer answer = load(*text, kUTTypePlainText);
    EXPECT_EQ(answer.item, QStringLiteral("hi"));
    EXPECT_NE(answer.thread, std::this_thread::get_id());

    const Answer refused = load(*ItemProviders::file(QStringLiteral("/tmp/a")), kUTTypeImage);
    ASSERT_TRUE(refused.error);
    EXPECT_EQ(refused.error->code, kItemProviderUnavailableCoercionError);
    EXPECT_FALSE(refused.item.isValid());
}

TEST(PngConversion, RefusesCorruptDataBombsAndNonImages) {
    const struct {
        const char* name;
        QVariant item;
        const char* says;
    } rows[] = {
        {"garbage", QByteArray("\x89PNG\r\n\x1a\n not really a PNG"), "cannot decode"},
        {"truncated", encoded(twoColourImage(40, 20), "png").left(60), "cannot decode"},
        {"bomb", pngDeclaringSize(100000, 100000), "100000 x 100000 pixels exceeds the limit"},
        {"null image", QImage(), "empty image"},
        {"text", QStringLiteral("hello"), "not an image"},
    };
    for (const auto& row : rows) {
        const auto result = PngConversion::fromItem(row.item);
        ASSERT_TRUE(std::holds_alternative<Error>(result)) << row.name;
        EXPECT_TRUE(std::get<Error>(result).text().contains(QLatin1String(row.says)))
            << row.name << ": " << std::get<Error>(result).text().toStdString();
    }
}

} // namespace
