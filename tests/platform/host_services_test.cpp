// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "ImageSamples.h"
#include "TestSupport.h"
#include "platform/ExtensionContext.h"
#include "platform/PngConversion.h"

#include <vector>

using namespace velmora;
using namespace velmora::test;

namespace {

TEST(ExtensionContext, TellsTheHostOnceWithTheReturnedItemsOrTheCancelError) {
    std::vector<ExtensionContext::Outcome> told;
    std::vector<bool> handled;
    const auto returned = std::make_shared<ExtensionItem>();
    ExtensionContext completed({}, [&](const auto& outcome) { told.push_back(outcome); });
    completed.completeRequestReturningItems({returned}, [&](bool e) { handled.push_back(e); });
    completed.completeRequestReturningItems({}, [&](bool e) { handled.push_back(e); });
    completed.cancelRequestWithError(Error::userCancelled());
    ASSERT_EQ(told.size(), 1u);
    EXPECT_FALSE(told[0].cancelled());
    EXPECT_EQ(told[0].returnedItems, ExtensionContext::Items{returned});
    EXPECT_EQ(handled, std::vector<bool>{false});

    ExtensionContext cancelled({}, [&](const auto& outcome) { told.push_back(outcome); });
    EXPECT_FALSE(cancelled.hasEnded());
    cancelled.cancelRequestWithError(Error::userCancelled());
    cancelled.completeRequestReturningItems({});
    EXPECT_TRUE(cancelled.hasEnded());
    ASSERT_EQ(told.size(), 2u);
    ASSERT_TRUE(told[1].cancelled());
    EXPECT_EQ(told[1].error->domain, QStringLiteral("NSCocoaErrorDomain"));
    EXPECT_EQ(told[1].error->code, 3072);
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
