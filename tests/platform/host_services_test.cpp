#include "TestSupport.h"
#include "platform/DispatchQueue.h"
#include "platform/ExtensionContext.h"
#include "platform/NotificationCenter.h"

#include <QMutex>

#include <atomic>
#include <future>
#include <thread>
#include <vector>

using namespace velmora;

namespace {

TEST(ExtensionContext, EndsOnceWithTheReturnedItemsOrTheCancelError) {
    std::vector<ExtensionContext::Outcome> told;
    const auto item = std::make_shared<ExtensionItem>();
    ExtensionContext completed({item}, [&](const auto& outcome) { told.push_back(outcome); });
    EXPECT_EQ(completed.inputItems(), ExtensionContext::Items{item});

    std::vector<bool> handled;
    const auto returned = std::make_shared<ExtensionItem>();
    completed.completeRequestReturningItems({returned},
                                            [&](bool expired) { handled.push_back(expired); });
    // Neither a second completion nor a late cancel reaches the host again.
    completed.completeRequestReturningItems({}, [&](bool expired) { handled.push_back(expired); });
    completed.cancelRequestWithError(Error::userCancelled());
    ASSERT_EQ(told.size(), 1u);
    EXPECT_FALSE(told[0].cancelled());
    EXPECT_EQ(told[0].returnedItems, ExtensionContext::Items{returned});
    EXPECT_EQ(handled, std::vector<bool>{false});
    EXPECT_TRUE(completed.hasEnded());

    told.clear();
    ExtensionContext cancelled({}, [&](const auto& outcome) { told.push_back(outcome); });
    EXPECT_FALSE(cancelled.hasEnded());
    cancelled.cancelRequestWithError(Error::userCancelled());
    cancelled.completeRequestReturningItems({}, {});
    ASSERT_EQ(told.size(), 1u);
    ASSERT_TRUE(told[0].cancelled());
    EXPECT_EQ(told[0].error->domain, QStringLiteral("NSCocoaErrorDomain"));
    EXPECT_EQ(told[0].error->code, 3072);
}

TEST(ExtensionContext, RacingEndsFromManyThreadsTellTheHostOnce) {
    std::atomic<int> told = 0;
    ExtensionContext context({}, [&](const auto&) { ++told; });
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&context, i] {
            if (i % 2)
                context.cancelRequestWithError(Error::userCancelled());
            else
                context.completeRequestReturningItems({});
        });
    }
    for (auto& t : threads)
        t.join();
    EXPECT_EQ(told, 1);
}

TEST(NotificationCenter, DeliversByNameInOrderUntilRemoved) {
    NotificationCenter center;
    QStringList seen;
    const int a = center.addObserver(QStringLiteral("A"), [&](const Notification& n) {
        seen << QStringLiteral("a:") + n.object.toString();
    });
    center.addObserver(QString(),
                       [&](const Notification& n) { seen << QStringLiteral("all:") + n.name; });
    center.postNotificationName(QStringLiteral("A"), QStringLiteral("1"));
    center.postNotificationName(QStringLiteral("B"), QStringLiteral("2"));
    center.removeObserver(a);
    center.postNotificationName(QStringLiteral("A"), QStringLiteral("3"));
    EXPECT_EQ(seen, (QStringList{"a:1", "all:A", "all:B", "all:A"}));
}

TEST(NotificationCenter, ObserversMayBeAddedAndRemovedWhilePostsRunOnOtherThreads) {
    NotificationCenter center;
    std::atomic<int> delivered = 0;
    std::atomic<bool> stop = false;
    std::vector<std::thread> posters;
    for (int i = 0; i < 3; ++i) {
        posters.emplace_back([&] {
            while (!stop)
                center.postNotificationName(QStringLiteral("tick"), {});
        });
    }
    for (int i = 0; i < 200; ++i) {
        const int handle = center.addObserver(QStringLiteral("tick"), [&](const Notification&) {
            ++delivered;
            // An observer may post in turn without deadlocking.
            center.postNotificationName(QStringLiteral("nested"), {});
        });
        center.removeObserver(handle);
    }
    const int kept =
        center.addObserver(QStringLiteral("tick"), [&](const Notification&) { ++delivered; });
    while (delivered < 1000)
        std::this_thread::yield();
    stop = true;
    for (auto& t : posters)
        t.join();
    center.removeObserver(kept);
    EXPECT_GE(delivered, 1000);
}

TEST(DispatchQueue, ABlockedWorkItemDoesNotHoldUpTheNext) {
    DispatchQueue queue(DispatchQueue::Priority::Background);
    std::promise<void> second;
    std::promise<std::thread::id> first;
    // The first item can only finish once the second has run: with one thread they would wait
    // for each other forever.
    queue.async([&, ran = second.get_future().share()] {
        ran.wait();
        first.set_value(std::this_thread::get_id());
    });
    queue.async([&] { second.set_value(); });
    auto done = first.get_future();
    ASSERT_EQ(done.wait_for(std::chrono::seconds(30)), std::future_status::ready);
    EXPECT_NE(done.get(), std::this_thread::get_id());
}

} // namespace
