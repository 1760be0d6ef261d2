// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "ImageSamples.h"
#include "TestSupport.h"
#include "platform/PngConversion.h"

using namespace velmora;
using namespace velmora::test;

namespace {

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
