#include "ImageSamples.h"
#include "TestSupport.h"
#include "platform/ItemProviders.h"
#include "platform/PngConversion.h"
#include "platform/RichText.h"

#include <QBuffer>
#include <QImageReader>
#include <QTextDocument>

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
    auto answer = promise.get_future();
    provider.loadItemForTypeIdentifier(type, {},
                                       [&](const QVariant& item, const std::optional<Error>& e) {
                                           promise.set_value({item, e, std::this_thread::get_id()});
                                       });
    EXPECT_EQ(answer.wait_for(std::chrono::seconds(30)), std::future_status::ready);
    return answer.get();
}

QImage decode(const QByteArray& bytes) {
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer, "png");
    return reader.read();
}

TEST(ItemProviders, OfferTheirItemUnderTheirTypesOnly) {
    const QImage image = twoColourImage(4, 2);
    const QByteArray bytes = encoded(image, "png");
    const struct {
        const char* name;
        std::shared_ptr<ItemProvider> provider;
        bool url;
        bool image;
        QString type;
        QVariant item;
    } rows[] = {
        {"file", ItemProviders::file(QStringLiteral("/tmp/../tmp/a b.txt")), true, false,
         kUTTypeFileURL, QUrl::fromLocalFile(QStringLiteral("/tmp/a b.txt"))},
        {"link", ItemProviders::link(QUrl(QStringLiteral("https://example.org/x?y=1"))), true,
         false, kUTTypeURL, QUrl(QStringLiteral("https://example.org/x?y=1"))},
        {"image data", ItemProviders::imageData(bytes), false, true, kUTTypeImage, bytes},
        {"image", ItemProviders::image(image), false, true, kUTTypeImage, image},
        {"text", ItemProviders::plainText(QStringLiteral("hi")), false, false, kUTTypePlainText,
         QStringLiteral("hi")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.provider->hasItemConformingToTypeIdentifier(kUTTypeURL), row.url);
        EXPECT_EQ(row.provider->hasItemConformingToTypeIdentifier(kUTTypeImage), row.image);
        const Answer answer = load(*row.provider, row.type);
        EXPECT_FALSE(answer.error);
        EXPECT_EQ(answer.item, row.item);
        EXPECT_NE(answer.thread, std::this_thread::get_id());

        const Answer refused = load(*row.provider, QStringLiteral("com.adobe.pdf"));
        ASSERT_TRUE(refused.error);
        EXPECT_EQ(refused.error->domain, QString::fromLatin1(kItemProviderErrorDomain));
        EXPECT_EQ(refused.error->code, kItemProviderUnavailableCoercionError);
        EXPECT_FALSE(refused.item.isValid());
    }
}

TEST(PngConversion, DecodesWhatQtReadsAndAppliesTheExifOrientation) {
    const QImage wide = twoColourImage(40, 20);
    for (const auto& [name, bytes] :
         {std::pair{"png", encoded(wide, "png")}, std::pair{"jpeg", encoded(wide, "jpg")},
          std::pair{"jpeg upright", jpegWithOrientation(wide, 1)}}) {
        SCOPED_TRACE(name);
        const auto png = PngConversion::fromData(bytes);
        ASSERT_TRUE(std::holds_alternative<QByteArray>(png));
        const QImage decoded = decode(std::get<QByteArray>(png));
        ASSERT_EQ(decoded.size(), QSize(40, 20));
        EXPECT_TRUE(nearColour(decoded.pixelColor(5, 10), Qt::red));
        EXPECT_TRUE(nearColour(decoded.pixelColor(35, 10), Qt::blue));
    }

    // Orientation 6: the picture is shown turned a quarter clockwise, its left half on top.
    const auto turned = PngConversion::fromData(jpegWithOrientation(wide, 6));
    ASSERT_TRUE(std::holds_alternative<QByteArray>(turned));
    const QImage upright = decode(std::get<QByteArray>(turned));
    ASSERT_EQ(upright.size(), QSize(20, 40));
    EXPECT_TRUE(nearColour(upright.pixelColor(10, 5), Qt::red));
    EXPECT_TRUE(nearColour(upright.pixelColor(10, 35), Qt::blue));

    const auto fromImage = PngConversion::fromItem(QVariant::fromValue(wide));
    ASSERT_TRUE(std::holds_alternative<QByteArray>(fromImage));
    EXPECT_EQ(decode(std::get<QByteArray>(fromImage)), wide.convertToFormat(QImage::Format_RGB32));
}

TEST(PngConversion, RefusesCorruptDataBombsAndNonImages) {
    const QByteArray truncated = encoded(twoColourImage(40, 20), "png").left(40);
    const struct {
        const char* name;
        QVariant item;
        const char* says;
    } rows[] = {
        {"garbage", QByteArray("\x89PNG\r\n\x1a\n not really a PNG"), "cannot decode"},
        {"truncated", truncated, "cannot decode"},
        {"empty", QByteArray(), "cannot decode"},
        {"bomb", pngDeclaringSize(100000, 100000), "exceeds the limit of 256 MB"},
        {"null image", QImage(), "empty image"},
        {"text", QStringLiteral("hello"), "not an image"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto result = PngConversion::fromItem(row.item);
        ASSERT_TRUE(std::holds_alternative<Error>(result));
        EXPECT_TRUE(std::get<Error>(result).text().contains(QLatin1String(row.says)))
            << std::get<Error>(result).text().toStdString();
    }
}

TEST(RichText, KeepsTheDocumentsHtmlExportAndPlainString) {
    const RichText text =
        RichText::fromHtml(QStringLiteral("<p>Caf\u00e9 <b>bold</b> \U0001F600</p>"));
    EXPECT_EQ(text.string(), QStringLiteral("Caf\u00e9 bold \U0001F600"));
    EXPECT_EQ(text.length(), 12); // the emoji is two UTF-16 units
    EXPECT_TRUE(text.toHtml().startsWith(QLatin1String("<!DOCTYPE HTML")));
    EXPECT_TRUE(text.toHtml().contains(QLatin1String("font-weight:700;\">bold</span>")));

    QTextDocument document;
    document.setPlainText(QStringLiteral("a < b"));
    EXPECT_EQ(RichText::fromDocument(document).toHtml(), document.toHtml());
    EXPECT_TRUE(RichText::fromPlainText(QStringLiteral("a < b")).toHtml().contains(u"a &lt; b"));
    EXPECT_EQ(RichText().length(), 0);
}

} // namespace
