// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "RecipientsHost.h"
#include "platform/FileCoordinator.h"

#include <condition_variable>
#include <mutex>
#include <thread>

using namespace velmora;

namespace {

// Holds the contacts folder's lock from another thread, as the main application does while it
// writes the book, until released.
class HeldLock {
public:
    explicit HeldLock(const QString& folder)
        : m_thread([this, folder] {
            FileCoordinator::coordinateWritingItemAtPath(folder, [this](const QString&) {
                std::unique_lock lock(m_mutex);
                m_held = true;
                m_changed.notify_all();
                m_changed.wait(lock, [this] { return m_released; });
            });
        }) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_held; });
    }
    ~HeldLock() {
        release();
        m_thread.join();
    }
    void release() {
        const std::lock_guard lock(m_mutex);
        m_released = true;
        m_changed.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_held = false;
    bool m_released = false;
    std::thread m_thread;
};

// The composer is shown while the contacts are still being read: the keys typed meanwhile are
// kept, and once the book is ready the list answers the text the field holds by then.
TEST(ContactsLoading, KeysTypedBeforeTheContactsAreReadAreAnsweredOnceTheyAre) {
    test::TempContainer container;
    const QString folder = container.dataFolder() + QStringLiteral("/Contacts");
    if (!test::writePlist(folder + QStringLiteral("/Addresses.plist"), R"([
            {"mail": "ann.smith@x.test", "firstName": "Ann", "lastName": "Smith", "rank": 3},
            {"mail": "annie@y.test", "firstName": "Annie", "lastName": "Hall", "rank": 9},
            {"mail": "andrew@z.test", "firstName": "Andrew", "rank": 5}])",
                          true))
        GTEST_SKIP() << "python3 is needed to write property lists";

    auto lock = std::make_unique<HeldLock>(folder);
    test::RecipientsHost host;
    host.show();
    host.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&host));
    host.field->setFocus();
    ASSERT_TRUE(QTest::qWaitFor([&] { return host.field->hasFocus(); }, 5000));

    // The window answers keys while the book is locked; nothing is offered yet.
    QTest::keyClicks(host.field, QStringLiteral("an"));
    QTest::qWait(100);
    EXPECT_FALSE(host.controller->contactsReady());
    EXPECT_EQ(host.rowCount(), 0);
    QTest::keyClicks(host.field, QStringLiteral("n"));

    lock.reset();
    ASSERT_TRUE(host.waitForRows(2)) << "rows: " << host.rowCount();
    EXPECT_TRUE(host.controller->contactsReady());
    // "ann", not "an": Andrew is not among them.
    EXPECT_EQ(host.rowTexts(), (QStringList{QStringLiteral("Annie Hall <annie@y.test>(9)"),
                                            QStringLiteral("Ann Smith <ann.smith@x.test>(3)")}));
    EXPECT_TRUE(host.controller->visible());
    EXPECT_EQ(host.tokens(), QStringList{QStringLiteral("ann")});
}

} // namespace
