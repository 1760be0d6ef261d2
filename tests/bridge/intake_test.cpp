#include "ImageSamples.h"
#include "TestSupport.h"
#include "bridge/ExtensionUtilities.h"
#include "message/ExtensionMessage.h"
#include "platform/ExtensionContext.h"
#include "platform/ItemProviders.h"
#include "platform/Log.h"

#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QRandomGenerator>
#include <QSet>

#include <atomic>
#include <future>
#include <thread>

using namespace velmora;
using namespace velmora::test;

namespace {

const QString kService = QStringLiteral("ShareFull");

// Answers from a thread of its own: after `after` is ready (when given) and a delay; answered()
// is ready once the completion has returned.
class ScriptedProvider final : public ItemProvider {
public:
    ScriptedProvider(QString type, QVariant item, std::optional<Error> error = {},
                     std::chrono::milliseconds delay = {}, std::shared_future<void> after = {})
        : m_type(std::move(type))
        , m_item(std::move(item))
        , m_error(std::move(error))
        , m_delay(delay)
        , m_after(std::move(after)) {}

    bool hasItemConformingToTypeIdentifier(const QString& type) const override {
        return type == m_type;
    }
    void loadItemForTypeIdentifier(const QString&, const QVariantMap&,
                                   CompletionHandler completion) override {
        std::thread([item = m_item, error = m_error, delay = m_delay, after = m_after,
                     done = m_done, completion = std::move(completion)] {
            if (after.valid())
                after.wait();
            std::this_thread::sleep_for(delay);
            completion(item, error);
            done->set_value();
        }).detach();
    }
    std::shared_future<void> answered() const { return m_answered; }

private:
    QString m_type;
    QVariant m_item;
    std::optional<Error> m_error;
    std::chrono::milliseconds m_delay;
    std::shared_future<void> m_after;
    std::shared_ptr<std::promise<void>> m_done = std::make_shared<std::promise<void>>();
    std::shared_future<void> m_answered = m_done->get_future().share();
};

std::shared_ptr<ExtensionItem> item(ExtensionItem::Attachments attachments,
                                    std::optional<RichText> text = {},
                                    std::optional<RichText> title = {}) {
    auto result = std::make_shared<ExtensionItem>();
    result->setAttachments(std::move(attachments));
    result->setAttributedContentText(std::move(text));
    result->setAttributedTitle(std::move(title));
    return result;
}

QString anchor(const QString& url) {
    return QStringLiteral("<a href=\"%1\">%1</a>").arg(url);
}

QStringList attachmentPaths(const ExtensionMessage& message) {
    QStringList paths;
    message.withLock([&] {
        for (const QVariant& a : *message.attachments())
            paths << a.toString();
    });
    return paths;
}

class Intake : public ::testing::Test {
protected:
    void SetUp() override {
        ExtensionUtilities::ShareInit(kService);
        log.clear();
    }

    struct Delivery {
        std::shared_ptr<ExtensionMessage> message;
        std::optional<Error> error;
        std::thread::id thread;
    };

    enum class Wait { Real, Instant };

    // Runs intake over the items and waits for its one completion. Its waits are counted;
    // Instant ones take no time.
    Delivery run(ExtensionContext::Items items, Wait wait = Wait::Real) {
        const auto context = std::make_shared<ExtensionContext>(std::move(items));
        std::promise<Delivery> promise;
        auto delivered = promise.get_future();
        const ExtensionUtilities::Sleep sleep = [this,
                                                 wait](std::chrono::duration<double> interval) {
            EXPECT_EQ(interval.count(), 0.10000000149011612);
            ++sleeps;
            if (wait == Wait::Real)
                std::this_thread::sleep_for(interval);
        };
        ExtensionUtilities::GetItemForExtension(
            context, kService,
            [&promise, this](const auto& message, const auto& error) {
                ++completions;
                promise.set_value({message, error, std::this_thread::get_id()});
            },
            sleep);
        EXPECT_EQ(delivered.wait_for(std::chrono::seconds(60)), std::future_status::ready);
        Delivery d = delivered.get();
        EXPECT_FALSE(d.error);
        EXPECT_NE(d.thread, std::this_thread::get_id());
        return d;
    }

    QString staged(const QString& name) const {
        return container.dataFolder() + QStringLiteral("/ShareFull/") + name;
    }

    TempContainer container;
    QTemporaryDir sources;
    LogCapture log;
    std::atomic<int> sleeps = 0;
    std::atomic<int> completions = 0;
};

TEST_F(Intake, NothingSharedGivesAnEmptyMessageAfterOneWait) {
    const Delivery d = run({}, Wait::Instant);
    EXPECT_EQ(sleeps, 1);
    EXPECT_EQ(completions, 1);
    EXPECT_EQ(d.message->htmlBody(), QStringLiteral(""));
    EXPECT_FALSE(d.message->htmlBody().isNull());
    EXPECT_TRUE(d.message->subject().isNull());
    EXPECT_TRUE(d.message->attachments()->isEmpty());
}

TEST_F(Intake, PlainTextNeverAnswersAndTheWaitRunsOutAfter101Sleeps) {
    const Delivery d =
        run({item({ItemProviders::plainText(QStringLiteral("just words"))})}, Wait::Instant);
    EXPECT_EQ(sleeps, 101);
    EXPECT_EQ(d.message->htmlBody(), QStringLiteral(""));
    EXPECT_TRUE(d.message->attachments()->isEmpty());
    EXPECT_TRUE(log.lines().isEmpty()) << log.lines().join(u'\n').toStdString();
}

TEST_F(Intake, RichTextThenTitledLinkFillBodyAndSubject) {
    const RichText text = RichText::fromHtml(QStringLiteral("Look at <i>this</i>"));
    const Delivery d = run(
        {item({ItemProviders::link(QUrl(QStringLiteral("https://example.org/a b?q=1&r=\"x\"")))},
              text, RichText::fromPlainText(QStringLiteral("Example page")))});
    const QString link = QStringLiteral("https://example.org/a%20b?q=1&r=%22x%22");
    EXPECT_EQ(d.message->htmlBody(), text.toHtml() + QStringLiteral("<br/>") + anchor(link));
    EXPECT_EQ(d.message->subject(), QStringLiteral("Example page"));
    EXPECT_TRUE(d.message->attachments()->isEmpty());

    // Without a title the subject is null; empty text adds nothing to the body.
    const Delivery untitled =
        run({item({ItemProviders::link(QUrl(QStringLiteral("https://a.example")))},
                  RichText::fromPlainText(QString()))});
    EXPECT_TRUE(untitled.message->subject().isNull());
    EXPECT_EQ(untitled.message->htmlBody(), anchor(QStringLiteral("https://a.example")));
}

TEST_F(Intake, TwoLinksAppendInCallbackOrderAndTheLastCallbackSetsTheSubject) {
    const auto second =
        std::make_shared<ScriptedProvider>(kUTTypeURL, QUrl(QStringLiteral("https://two.example")));
    const auto first = std::make_shared<ScriptedProvider>(
        kUTTypeURL, QUrl(QStringLiteral("https://one.example")), std::nullopt,
        std::chrono::milliseconds(0), second->answered());
    const Delivery d = run({item({first}, {}, RichText::fromPlainText(QStringLiteral("One"))),
                            item({second}, {}, RichText::fromPlainText(QStringLiteral("Two")))});
    EXPECT_EQ(d.message->htmlBody(), anchor(QStringLiteral("https://two.example")) +
                                         anchor(QStringLiteral("https://one.example")));
    EXPECT_EQ(d.message->subject(), QStringLiteral("One"));
}

TEST_F(Intake, FilesFoldersAndImagesAreStagedAsAttachments) {
    const QString file = sources.filePath(QStringLiteral("notes.txt"));
    writeFile(file, "some notes");
    writeFile(sources.filePath(QStringLiteral("album/one.txt")), "1");
    const QImage image = twoColourImage(40, 20);
    const Delivery d = run({item({ItemProviders::file(file),
                                  ItemProviders::file(sources.filePath(QStringLiteral("album"))),
                                  ItemProviders::imageData(encoded(image, "png")),
                                  ItemProviders::imageData(jpegWithOrientation(image, 6))}),
                            item({ItemProviders::image(image)})});
    const QStringList paths = attachmentPaths(*d.message);
    EXPECT_EQ(
        QSet<QString>(paths.begin(), paths.end()),
        (QSet<QString>{staged(QStringLiteral("notes.txt")), staged(QStringLiteral("album")),
                       staged(QStringLiteral("image.png")), staged(QStringLiteral("image_1.png")),
                       staged(QStringLiteral("image_2.png"))}));
    EXPECT_EQ(readFile(staged(QStringLiteral("notes.txt"))), "some notes");
    EXPECT_EQ(readFile(staged(QStringLiteral("album/one.txt"))), "1");
    QList<QSize> sizes;
    for (const char* name : {"image.png", "image_1.png", "image_2.png"}) {
        QImageReader reader(staged(QString::fromLatin1(name)));
        EXPECT_EQ(reader.format(), "png");
        sizes << reader.size();
    }
    // The JPEG turned upright by its orientation tag is the one image standing on end.
    EXPECT_EQ(sizes.count(QSize(20, 40)), 1);
    EXPECT_EQ(sizes.count(QSize(40, 20)), 2);
    EXPECT_EQ(d.message->htmlBody(), QStringLiteral(""));
}

TEST_F(Intake, FailedItemsAreLoggedAndLeftOut) {
    const Delivery d = run({item({
        std::make_shared<ScriptedProvider>(
            kUTTypeURL, QVariant(), Error{QStringLiteral("Test"), 1, QStringLiteral("gone")}),
        std::make_shared<ScriptedProvider>(
            kUTTypeImage, QVariant(), Error{QStringLiteral("Test"), 2, QStringLiteral("lost")}),
        ItemProviders::imageData("not an image at all"),
        ItemProviders::imageData(pngDeclaringSize(60000, 60000)),
    })});
    EXPECT_LT(sleeps, 101); // every provider answered, badly
    EXPECT_TRUE(d.message->attachments()->isEmpty());
    EXPECT_TRUE(QDir(staged(QString())).isEmpty());
    const QStringList lines = log.lines();
    EXPECT_TRUE(lines.contains(u"[***ERROR***] GetItemForExtension kUTTypeURL gone"));
    EXPECT_TRUE(lines.contains(u"[***ERROR***] GetItemForExtension kUTTypeImage lost"));
    EXPECT_EQ(log.linesStartingWith(u"[***ERROR***] GetItemForExtension kUTTypeImage cannot decode")
                  .size(),
              1);
    EXPECT_EQ(log.linesStartingWith(
                     u"[***ERROR***] GetItemForExtension kUTTypeImage image of 60000 x 60000")
                  .size(),
              1);
}

TEST_F(Intake, ProvidersAnsweringFromManyThreadsInScrambledOrderAllArrive) {
    constexpr int kEach = 8;
    ExtensionContext::Items items;
    QList<std::shared_ptr<ScriptedProvider>> providers;
    QSet<QString> expectedFiles;
    QStringList expectedAnchors;
    auto delay = [] { return std::chrono::milliseconds(QRandomGenerator::global()->bounded(40)); };
    for (int i = 0; i < kEach; ++i) {
        const QString name = QStringLiteral("file%1.txt").arg(i);
        writeFile(sources.filePath(name), QByteArray::number(i));
        const QString link = QStringLiteral("https://example.org/%1").arg(i);
        const QList<std::shared_ptr<ScriptedProvider>> three = {
            std::make_shared<ScriptedProvider>(
                kUTTypeURL, QUrl::fromLocalFile(sources.filePath(name)), std::nullopt, delay()),
            std::make_shared<ScriptedProvider>(kUTTypeURL, QUrl(link), std::nullopt, delay()),
            std::make_shared<ScriptedProvider>(
                kUTTypeImage, QVariant::fromValue(twoColourImage(8, 8)), std::nullopt, delay())};
        providers += three;
        items << item({three.begin(), three.end()}, {},
                      RichText::fromPlainText(QStringLiteral("Title %1").arg(i)));
        expectedFiles << staged(name);
        expectedAnchors << anchor(link);
    }
    const Delivery d = run(items);
    for (const auto& p : providers)
        p->answered().wait();

    const QStringList paths = attachmentPaths(*d.message);
    EXPECT_EQ(paths.size(), 2 * kEach);
    const QSet<QString> files(paths.begin(), paths.end());
    EXPECT_EQ(files.size(), 2 * kEach) << "two images got one name";
    EXPECT_TRUE(files.contains(expectedFiles));
    QString body = d.message->htmlBody();
    for (const QString& a : expectedAnchors) {
        EXPECT_EQ(body.count(a), 1) << a.toStdString();
        body.remove(a);
    }
    EXPECT_EQ(body, QString()) << "anchors were torn";
    EXPECT_TRUE(d.message->subject().startsWith(u"Title "));
}

TEST_F(Intake, AnswersAfterDeliveryStillChangeTheMessage) {
    std::promise<void> release;
    const auto late = std::make_shared<ScriptedProvider>(
        kUTTypeImage, QVariant::fromValue(twoColourImage(4, 4)), std::nullopt,
        std::chrono::milliseconds(0), release.get_future().share());
    const Delivery d = run({item({late})}, Wait::Instant);
    EXPECT_EQ(sleeps, 101);
    EXPECT_TRUE(d.message->attachments()->isEmpty());
    release.set_value();
    late->answered().wait();
    EXPECT_EQ(attachmentPaths(*d.message), QStringList{staged(QStringLiteral("image.png"))});
}

} // namespace
