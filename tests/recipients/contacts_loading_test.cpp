// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "RecipientsHost.h"
#include "platform/FileCoordinator.h"

#include <future>
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
                m_held.set_value();
                m_released.get_future().wait();
            });
        }) {
        m_held.get_future().wait();
    }
    ~HeldLock() {
        m_released.set_value();
        m_thread.join();
    }

private:
    std::promise<void> m_held;
    std::promise<void> m_released;
    std::thread m_thread;
};

// The contacts as in the other tests, but the stand-in composer is shown by the test itself.
class ContactsLoading : public test::RecipientsTest {
protected:
    void SetUp() override { writeContacts(); }
};

// The composer is shown while the contacts are still being read: the keys typed meanwhile are
// kept, and once the book is ready the list answers the text the field holds by then.
TEST_F(ContactsLoading, KeysTypedBeforeTheContactsAreReadAreAnsweredOnceTheyAre) {
    auto lock = std::make_unique<HeldLock>(container.dataFolder() + QStringLiteral("/Contacts"));
    showHost();

    // The window answers keys while the book is locked; nothing is offered yet.
    QTest::keyClicks(host->field, QStringLiteral("ann"));
    QTest::qWait(100);
    EXPECT_FALSE(host->controller->contactsReady());
    EXPECT_EQ(host->rowCount(), 0);
    QTest::keyClicks(host->field, QStringLiteral("i"));

    lock.reset();
    // "anni", not "ann": only Annie.
    ASSERT_TRUE(host->waitForRows(1)) << "rows: " << host->rowCount();
    EXPECT_TRUE(host->controller->contactsReady());
    EXPECT_EQ(host->rowTexts(), QStringList{QStringLiteral("Annie Hall <annie@y.test>(9)")});
    EXPECT_TRUE(host->controller->visible());
    EXPECT_EQ(host->tokens(), QStringList{QStringLiteral("anni")});
}

} // namespace
