// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "views/AlertViewcontroller.h"
#include "views/FlippedView.h"
#include "views/KeyCommands.h"
#include "views/SynchronousSheet.h"

#include <QApplication>
#include <QImage>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <atomic>
#include <functional>
#include <thread>

using namespace velmora;
using namespace velmora::KeyFlags;

namespace {

constexpr quint32 kX11Lock = 0x2;

struct Row {
    const char* name;
    int key;
    Qt::KeyboardModifiers modifiers;
    QString text;
    quint32 nativeModifiers;
    const char* selector;
    quint64 flags;
    quint16 keyCode;
    QString characters;
};

const Qt::KeyboardModifiers None = Qt::NoModifier;
const Qt::KeyboardModifiers Sh = Qt::ShiftModifier;
const Qt::KeyboardModifiers Cmd = Qt::ControlModifier;
const Qt::KeyboardModifiers Opt = Qt::AltModifier;
const Qt::KeyboardModifiers Ctl = Qt::MetaModifier;
const Qt::KeyboardModifiers Pad = Qt::KeypadModifier;

const Row kRows[] = {
    {"return", Qt::Key_Return, None, "\r", 0, "insertNewline:", 0, 36, "\r"},
    {"command-return-unbound", Qt::Key_Return, Cmd, "\r", 0, "noop:", Command, 36, "\r"},
    {"command-backspace", Qt::Key_Backspace, Cmd, "", 0, "deleteToBeginningOfLine:", Command, 51,
     ""},
    {"control-a-emacs", Qt::Key_A, Ctl, "a", 0, "moveToBeginningOfParagraph:", Control, 0, "a"},
    // X11 turns Ctrl-Shift-D into a control character; Command leaves the letter.
    {"command-shift-d", Qt::Key_D, Cmd | Sh, "\x04", 0, "noop:", Command | Shift, 2, "D"},
    {"command-d-caps-lock", Qt::Key_D, Cmd, "\x04", kX11Lock, "noop:", Command | CapsLock, 2, "D"},
    {"command-option-z", Qt::Key_Z, Cmd | Opt, "", 0, "noop:", Command | Option, 6, "z"},
    {"caps-lock-letter", Qt::Key_S, None, "S", kX11Lock, "insertText:", CapsLock, 1, "S"},
    {"option-letter-types", Qt::Key_E, Opt, QStringLiteral("\u00e9"), 0, "insertText:", Option, 14,
     QStringLiteral("\u00e9")},
    {"keypad-digit", Qt::Key_5, Pad, "5", 0, "insertText:", 0, 87, "5"},
    {"unicode-key", 0x1e9e, Sh, QStringLiteral("\u1e9e"), 0, "insertText:", Shift, kUnknownKeyCode,
     QStringLiteral("\u1e9e")},
};

TEST(KeyCommands, QtKeyEventsMapToCocoaCommandsFlagsAndKeyCodes) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.name);
        const KeyCommand command = keyCommandForEvent(QKeyEvent(
            QEvent::KeyPress, row.key, row.modifiers, 0, 0, row.nativeModifiers, row.text));
        EXPECT_EQ(command.selector, QString::fromLatin1(row.selector));
        EXPECT_EQ(command.modifierFlags, row.flags);
        EXPECT_EQ(command.keyCode, row.keyCode);
        EXPECT_EQ(command.characters, row.characters);
    }
}

TEST(AlertViewcontroller, ViewIsAFullyRedPanelOf400By200) {
    AlertViewcontroller controller;
    EXPECT_FALSE(controller.isViewLoaded());
    FlippedView* view = controller.view();
    EXPECT_EQ(controller.view(), view); // loaded once
    QImage image(view->size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    view->render(&image);
    QImage red(400, 200, QImage::Format_ARGB32);
    red.fill(Qt::red);
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

// From the sheet's event loop: clicks the window's button (the sheet must block it), then button.
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

// For a given window, for the active one, and from a worker while the main thread's loop runs.
TEST(SynchronousSheet, ReturnsTheCodeOfThePressedButtonAndBlocksTheWindowMeanwhile) {
    Window window;
    const auto offMainThread = [&](QMessageBox& box) {
        std::atomic<int> code = 0;
        std::thread worker([&] { code = runModalSheetForWindow(box, &window.widget); });
        EXPECT_TRUE(QTest::qWaitFor([&] { return code != 0; }, 10000));
        worker.join();
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
        {"send_for_active_window", true, [](QMessageBox& box) { return runModalSheet(box); }},
        {"cancel_off_main_thread", false, offMainThread},
    };
    for (const auto& way : ways) {
        SCOPED_TRACE(way.name);
        QApplication::setActiveWindow(&window.widget);
        // Cancel added first: the codes follow the order of adding, not the layout by role.
        QMessageBox box;
        QPushButton* cancel = box.addButton(QStringLiteral("Cancel"), QMessageBox::RejectRole);
        QPushButton* send = box.addButton(QStringLiteral("Send Anyway"), QMessageBox::AcceptRole);
        std::atomic<int> clicksWhileShown = -1;
        pressWhenShown(box, way.send ? send : cancel, window, clicksWhileShown);
        const int before = window.ownClicks;
        EXPECT_EQ(way.run(box), way.send ? 1001 : 1000);
        EXPECT_EQ(clicksWhileShown, before) << "the window took input while the sheet was shown";
        EXPECT_FALSE(box.isVisible());
        EXPECT_EQ(box.parentWidget(), nullptr);
        window.clickOwn();
        EXPECT_EQ(window.ownClicks, before + 1);
    }
}

} // namespace
