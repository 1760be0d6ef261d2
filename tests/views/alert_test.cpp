// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "views/AlertViewcontroller.h"
#include "views/FlippedView.h"
#include "views/SynchronousSheet.h"

#include <QApplication>
#include <QImage>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <atomic>
#include <functional>
#include <thread>

using namespace velmora;

namespace {

TEST(AlertViewcontroller, ViewIsAFullyRedPanelOf400By200) {
    AlertViewcontroller controller;
    EXPECT_FALSE(controller.isViewLoaded());
    FlippedView* view = controller.view();
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(controller.view(), view); // loaded once
    QImage image(QSize(400, 200), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QImage red = image;
    red.fill(Qt::red);
    view->render(&image);
    EXPECT_EQ(view->size(), image.size());
    EXPECT_EQ(image, red);
}

// A window with one button of its own, to see whether it takes input.
struct Window {
    QWidget widget;
    QPushButton* own = new QPushButton(QStringLiteral("Own"), &widget);
    int ownClicks = 0;
    Window() {
        widget.resize(400, 300);
        own->setGeometry(10, 250, 80, 30);
        QObject::connect(own, &QPushButton::clicked, [this] { ++ownClicks; });
        widget.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&widget));
    }
    // Through the window system, as a user's click comes, so that modality applies.
    void clickOwn() {
        QTest::mouseClick(widget.windowHandle(), Qt::LeftButton, {}, own->geometry().center());
    }
};

// Once the alert shows, clicks the window's own button (which the sheet must block) and then
// the alert's button; runs from the event loop the sheet runs.
void pressWhenShown(QMessageBox& alert, QAbstractButton* button, Window& window,
                    std::atomic<int>& clicksWhileShown) {
    auto* poll = new QTimer(&alert);
    QObject::connect(poll, &QTimer::timeout, poll, [&, poll, button] {
        if (!alert.isVisible())
            return;
        poll->deleteLater();
        window.clickOwn();
        clicksWhileShown = window.ownClicks;
        QTest::mouseClick(button, Qt::LeftButton);
    });
    poll->start(5);
}

// Buttons added as Cancel first, then Send Anyway: the button box lays them out (and lists
// them) by role, the codes follow the order they were added.
struct Alert {
    QMessageBox box;
    QPushButton* cancel;
    QPushButton* send;
    Alert() {
        box.setText(QStringLiteral("Empty subject"));
        cancel = box.addButton(QStringLiteral("Cancel"), QMessageBox::RejectRole);
        send = box.addButton(QStringLiteral("Send Anyway"), QMessageBox::AcceptRole);
    }
};

// Each way of running the sheet: for a given window, for the active one, and called from a
// worker while the main thread keeps its event loop running, as the call requires.
TEST(SynchronousSheet, ReturnsTheCodeOfThePressedButtonAndBlocksTheWindowMeanwhile) {
    Window window;
    const auto offMainThread = [&](QMessageBox& box) {
        std::atomic<int> code = 0;
        std::thread worker([&] { code = runModalSheetForWindow(box, &window.widget); });
        const bool answered = QTest::qWaitFor([&] { return code != 0; }, 10000);
        worker.join();
        EXPECT_TRUE(answered);
        return code.load();
    };
    const auto forWindow = [&](QMessageBox& box) {
        return runModalSheetForWindow(box, &window.widget);
    };
    const struct {
        const char* name;
        bool send;
        std::function<int(QMessageBox&)> run;
    } ways[] = {
        {"cancel_for_window", false, forWindow},
        {"send_for_window", true, forWindow},
        {"send_for_active_window", true, [](QMessageBox& box) { return runModalSheet(box); }},
        {"cancel_off_main_thread", false, offMainThread},
    };
    for (const auto& way : ways) {
        SCOPED_TRACE(way.name);
        QApplication::setActiveWindow(&window.widget);
        Alert alert;
        std::atomic<int> clicksWhileShown = -1;
        pressWhenShown(alert.box, way.send ? alert.send : alert.cancel, window, clicksWhileShown);
        const int before = window.ownClicks;
        EXPECT_EQ(way.run(alert.box), way.send ? 1001 : 1000);
        EXPECT_EQ(clicksWhileShown, before) << "the window took input while the sheet was shown";
        EXPECT_FALSE(alert.box.isVisible());
        EXPECT_EQ(alert.box.parentWidget(), nullptr);
        window.clickOwn();
        EXPECT_EQ(window.ownClicks, before + 1);
    }
}

TEST(SynchronousSheet, ClosingTheSheetWithoutAButtonAborts) {
    Window window;
    Alert alert;
    QTimer::singleShot(0, &alert.box, [&] { alert.box.reject(); });
    EXPECT_EQ(runModalSheetForWindow(alert.box, &window.widget), kSheetAbortedReturn);
}

} // namespace
