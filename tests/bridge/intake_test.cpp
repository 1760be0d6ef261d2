// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "ImageSamples.h"
#include "TestSupport.h"
#include "bridge/ExtensionUtilities.h"
#include "bridge/ShareFolder.h"
#include "message/ExtensionMessage.h"
#include "platform/DispatchQueue.h"
#include "platform/ExtensionContext.h"
#include "platform/ItemProviders.h"
#include "platform/Log.h"

#include <QDir>
#include <QImageReader>
#include <QRandomGenerator>
#include <QSet>

#include <atomic>
#include <future>
#include <thread>

using namespace velmora;
using namespace velmora::test;

namespace {

// Answers from a thread of its own (which outlives the provider) once `before` has returned.
class ScriptedProvider final : public ItemProvider {
public:
    ScriptedProvider(
        QString type, QVariant item, std::optional<Error> error = {},
        std::function<void()> before = [] {})
        : m_type(std::move(type))
        , m_item(std::move(item))
        , m_error(std::move(error))
        , m_before(std::move(before)) {}

    bool hasItemConformingToTypeIdentifier(const QString& type) const override {
        return type == m_type;
    }
    void loadItemForTypeIdentifier(const QString&, const QVariantMap&,
                                   CompletionHandler completion) override {
        std::thread([item = m_item, error = m_error, before = m_before, done = m_done,
                     completion = std::move(completion)] {
            before();
            completion(item, error);
            done->set_value();
        }).detach();
    }
    void waitUntilAnswered() const { m_answered.wait(); }

private:
    QString m_type;
    QVariant m_item;
    std::optional<Error> m_error;
    std::function<void()> m_before;
    std::shared_ptr<std::promise<void>> m_done = std::make_shared<std::promise<void>>();
    std::shared_future<void> m_answered = m_done->get_future().share();
};

std::function<void()> delay(int ms) {
    return [ms] { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); };
}

std::shared_ptr<ExtensionItem> item(ExtensionItem::Attachments attachments,
                                    std::optional<QString> title = {},
                                    std::optional<RichText> text = {}) {
    auto result = std::make_shared<ExtensionItem>();
    result->setAttachments(std::move(attachments));
    if (title)
        result->setAttributedTitle(RichText::fromPlainText(*title));
    result->setAttributedContentText(std::move(text));
    return result;
}

std::shared_ptr<ScriptedProvider> link(
    const QString& url, std::function<void()> before = [] {}) {
    return std::make_shared<ScriptedProvider>(kUTTypeURL, QUrl(url), std::nullopt, before);
}

QString anchor(const QString& url) {
    return QStringLiteral("<a href=\"%1\">%1</a>").arg(url);
}

class Intake : public ::testing::Test {
protected:
    void SetUp() override {
        ExtensionUtilities::ShareInit(QStringLiteral("ShareFull"));
        log.clear();
    }

    // Runs intake to its one completion, off this thread, without error; instant waits count.
    std::shared_ptr<ExtensionMessage> run(ExtensionContext::Items items, bool instant = false) {
        std::promise<std::shared_ptr<ExtensionMessage>> delivered;
        ExtensionUtilities::GetItemForExtension(
            std::make_shared<ExtensionContext>(std::move(items)), QStringLiteral("ShareFull"),
            [&](const auto& message, const auto& error) {
                EXPECT_FALSE(error);
                EXPECT_NE(std::this_thread::get_id(), testThread);
                delivered.set_value(message);
            },
            [this, instant](std::chrono::duration<double> interval) {
                EXPECT_EQ(interval.count(), 0.10000000149011612);
                ++sleeps;
                if (!instant)
                    std::this_thread::sleep_for(interval);
            });
        return delivered.get_future().get();
    }

    QString staged(const QString& name = {}) const {
        // This share's own folder in the staging folder.
        return ShareFolder::current(QStringLiteral("ShareFull"))->path() + u'/' + name;
    }
    QSet<QString> attachments(const ExtensionMessage& message) const {
        QSet<QString> paths;
        message.withLock([&] {
            for (const QVariant& a : *message.attachments())
                paths << a.toString();
        });
        return paths;
    }

    TempContainer container;
    QTemporaryDir sources;
    LogCapture log;
    std::atomic<int> sleeps = 0;
    const std::thread::id testThread = std::this_thread::get_id();
};

TEST_F(Intake, NothingSharedIsDeliveredEmptyAfterOneWait) {
    const auto message = run({}, true);
    EXPECT_EQ(sleeps, 1);
    EXPECT_EQ(message->htmlBody(), QStringLiteral(""));
    EXPECT_FALSE(message->htmlBody().isNull());
    EXPECT_TRUE(message->subject().isNull() && message->attachments()->isEmpty());
}

TEST_F(Intake, AProviderThatNeverAnswersRunsTheWaitOutAndLateAnswersStillCount) {
    std::promise<void> release;
    const auto late = std::make_shared<ScriptedProvider>(
        kUTTypeImage, QVariant(twoColourImage(4, 4)), std::nullopt,
        [released = release.get_future().share()] { released.wait(); });
    const auto message =
        run({item({ItemProviders::plainText(QStringLiteral("words")), late})}, true);
    EXPECT_EQ(sleeps, 101);
    EXPECT_TRUE(message->attachments()->isEmpty());
    release.set_value();
    late->waitUntilAnswered();
    EXPECT_EQ(attachments(*message), QSet<QString>{staged(QStringLiteral("image.png"))});
    EXPECT_EQ(message->htmlBody(), QStringLiteral(""));
}

TEST_F(Intake, RichTextAndWebLinksFillTheBodyAndTheLastLinkToAnswerGivesTheSubject) {
    const RichText text = RichText::fromHtml(QStringLiteral("Look at <i>this</i>"));
    const auto first = link("https://example.org/a b?q=1&r=\"x\"");
    // The second link answers only after the first, whatever the threads do.
    const auto second = link("https://two.example", [first] { first->waitUntilAnswered(); });
    const auto message = run({item({second}, QStringLiteral("Two"), text),
                              item({first}, QStringLiteral("One"), RichText::fromPlainText({}))});
    EXPECT_EQ(message->htmlBody(),
              text.toHtml() + QStringLiteral("<br/>") +
                  anchor(QStringLiteral("https://example.org/a%20b?q=1&r=%22x%22")) +
                  anchor(QStringLiteral("https://two.example")));
    EXPECT_EQ(message->subject(), QStringLiteral("Two"));

    EXPECT_TRUE(run({item({link("https://a.example")})})->subject().isNull()) << "no title";
}

TEST_F(Intake, FailedItemsAreLoggedAndLeftOut) {
    const auto message = run({item({
        std::make_shared<ScriptedProvider>(kUTTypeURL, QVariant(), Error{"Test", 1, "gone"}),
        std::make_shared<ScriptedProvider>(kUTTypeImage, QVariant(), Error{"Test", 2, "lost"}),
        ItemProviders::imageData("not an image at all"),
        ItemProviders::imageData(pngDeclaringSize(60000, 60000)),
    })});
    EXPECT_LT(sleeps, 101) << "every provider answered";
    EXPECT_TRUE(message->attachments()->isEmpty());
    EXPECT_TRUE(QDir(staged()).isEmpty());
    const QString prefix = QStringLiteral("[***ERROR***] GetItemForExtension ");
    for (const char* line : {"kUTTypeURL gone", "kUTTypeImage lost", "kUTTypeImage cannot decode",
                             "kUTTypeImage image of 60000 x 60000"})
        EXPECT_EQ(log.linesStartingWith(prefix + QLatin1String(line)).size(), 1) << line;
}

// Items answering in scrambled order all arrive, no link torn, while the background queue is held.
TEST_F(Intake, ManyProvidersAnsweringInScrambledOrderOnFewThreadsAllArrive) {
    std::promise<void> release;
    const std::shared_future<void> released = release.get_future().share();
    DispatchQueue& background = DispatchQueue::global(DispatchQueue::Priority::Background);
    for (int i = 0; i < DispatchQueue::defaultWidth(); ++i)
        background.async([released] { released.wait(); });

    ExtensionContext::Items items;
    QSet<QString> files;
    QStringList anchors;
    const auto randomDelay = [] { return delay(QRandomGenerator::global()->bounded(40)); };
    const auto scripted = [&](const QString& type, const QVariant& item) {
        return std::make_shared<ScriptedProvider>(type, item, std::nullopt, randomDelay());
    };
    for (int i = 0; i < 60; ++i) {
        const QString name = QStringLiteral("f%1.txt").arg(i);
        writeFile(sources.filePath(name), QByteArray::number(i));
        const QUrl web(QStringLiteral("https://example.org/%1").arg(i));
        // The last link to answer gives the subject: every item has a title.
        const QString title = QStringLiteral("Title %1").arg(i);
        if (i < 8) {
            items << item({scripted(kUTTypeURL, QUrl::fromLocalFile(sources.filePath(name))),
                           link(web.toString(), randomDelay()),
                           scripted(kUTTypeImage, twoColourImage(8, 8))},
                          title);
        } else {
            items << item({ItemProviders::file(sources.filePath(name)), ItemProviders::link(web)},
                          title);
        }
        files << staged(name);
        anchors << anchor(web.toString());
    }
    // A folder, image data (a JPEG turned by its orientation tag among them) and an image.
    writeFile(sources.filePath(QStringLiteral("album/one.txt")), "1");
    const QImage image = twoColourImage(40, 20);
    items << item({ItemProviders::file(sources.filePath(QStringLiteral("album"))),
                   ItemProviders::imageData(encoded(image, "png")),
                   ItemProviders::imageData(jpegWithOrientation(image, 6)),
                   ItemProviders::image(image)},
                  QStringLiteral("Title"));
    files << staged(QStringLiteral("album"));
    QStringList images{staged(QStringLiteral("image.png"))};
    for (int i = 1; i < 11; ++i)
        images << staged(QStringLiteral("image_%1.png").arg(i));
    files.unite(QSet<QString>(images.begin(), images.end()));
    const auto message = run(items);
    release.set_value();
    EXPECT_LT(sleeps, 101) << "every provider answered";
    EXPECT_EQ(attachments(*message), files);
    EXPECT_EQ(readFile(staged(QStringLiteral("album/one.txt"))), "1");
    for (const QString& staged : images)
        EXPECT_EQ(QImageReader(staged).format(), "png") << staged.toStdString();
    const QString body = message->htmlBody();
    qsizetype length = 0;
    for (const QString& a : anchors) {
        EXPECT_EQ(body.count(a), 1) << a.toStdString();
        length += a.size();
    }
    EXPECT_EQ(body.size(), length) << "anchors were torn: " << body.toStdString();
    EXPECT_TRUE(message->subject().startsWith(u"Title "));
    EXPECT_LE(DispatchQueue::global(DispatchQueue::Priority::Default).threadCount(),
              DispatchQueue::defaultWidth());
}

} // namespace
