// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "recipients/BackgroundDelay.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QThread>

#include <memory>

using namespace velmora;
using namespace std::chrono_literals;

namespace {

// Runs the event loop until done says so or five seconds have passed.
bool runUntil(const std::function<bool()>& done) {
    const QDeadlineTimer deadline(5000);
    while (!done() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    return done();
}

TEST(AfterDelayInBackground, RunsOnTheMainThreadAfterTheDelayAndNeverForAReceiverGone) {
    QThread* const main = QThread::currentThread();
    QElapsedTimer clock;
    clock.start();
    QObject kept;
    auto gone = std::make_unique<QObject>();
    qint64 ranAfter = -1;
    QThread* ranOn = nullptr;
    int goneCalls = 0;
    afterDelayInBackground(200ms, &kept, [&] {
        ranAfter = clock.elapsed();
        ranOn = QThread::currentThread();
    });
    // A far shorter wait, so that it is over long before the one above.
    afterDelayInBackground(10ms, gone.get(), [&] { ++goneCalls; });
    gone.reset();
    // The main thread does not wait: nothing has run, not even the short one.
    EXPECT_LT(clock.elapsed(), 200);
    EXPECT_EQ(ranAfter, -1);

    ASSERT_TRUE(runUntil([&] { return ranAfter >= 0; }));
    EXPECT_GE(ranAfter, 200);
    EXPECT_EQ(ranOn, main);
    EXPECT_EQ(goneCalls, 0);
}

} // namespace
