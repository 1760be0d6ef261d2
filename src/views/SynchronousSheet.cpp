// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "views/SynchronousSheet.h"

#include "platform/MainQueue.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QEventLoop>
#include <QMessageBox>
#include <QPointer>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>

namespace velmora {

namespace {

constexpr int kFirstButtonReturn = 1000;

// The alert's buttons in the order they were added. QMessageBox::buttons() lists them by role;
// the button box keeps its buttons as children in the order it received them.
QList<QAbstractButton*> buttonsInOrderAdded(const QMessageBox& alert) {
    const QList<QAbstractButton*> buttons = alert.buttons();
    const auto* box = alert.findChild<QDialogButtonBox*>();
    if (!box)
        return buttons;
    QList<QAbstractButton*> ordered;
    for (QObject* child : box->children()) {
        auto* button = qobject_cast<QAbstractButton*>(child);
        if (button && buttons.contains(button))
            ordered.append(button);
    }
    return ordered;
}

// A sheet being shown: what the alert looked like before, put back when it ends.
struct Sheet {
    QPointer<QWidget> parent;
    Qt::WindowFlags flags;
    Qt::WindowModality modality = Qt::NonModal;
    QMetaObject::Connection finished;
};

// Main thread: shows the alert window-modal on window; ended(code) runs once a button (or
// the window's closing) ends it.
Sheet beginSheet(QMessageBox& alert, QWidget* window, std::function<void(int)> ended) {
    Sheet sheet{alert.parentWidget(), alert.windowFlags(), alert.windowModality(), {}};
    // The message box still closes itself on a press; the code comes from the button's
    // position among the buttons as added, not from the button's role.
    sheet.finished = QObject::connect(
        &alert, &QDialog::finished, &alert,
        [&alert, ordered = buttonsInOrderAdded(alert), ended = std::move(ended)](int) {
            const auto index = ordered.indexOf(alert.clickedButton());
            ended(index < 0 ? kSheetAbortedReturn : kFirstButtonReturn + int(index));
        });
    if (window && alert.parentWidget() != window)
        alert.setParent(window, alert.windowFlags());
    alert.setWindowModality(window ? Qt::WindowModal : Qt::ApplicationModal);
    alert.show();
    return sheet;
}

// Main thread: hides the alert and gives it back its parent and modality.
void endSheet(QMessageBox& alert, const Sheet& sheet) {
    QObject::disconnect(sheet.finished);
    alert.hide();
    if (alert.parentWidget() != sheet.parent)
        alert.setParent(sheet.parent, sheet.flags);
    alert.setWindowModality(sheet.modality);
}

} // namespace

int runModalSheetForWindow(QMessageBox& alert, QWidget* window) {
    if (MainQueue::isMainThread()) {
        // The one nested event loop of the program: the caller wants the answer in line.
        QEventLoop loop;
        const Sheet sheet = beginSheet(alert, window, [&loop](int code) { loop.exit(code); });
        const int code = loop.exec(QEventLoop::DialogExec);
        endSheet(alert, sheet);
        return code;
    }
    // Another thread has no user interface of its own to keep running: it waits for the main
    // thread's answer.
    std::mutex mutex;
    std::condition_variable answered;
    std::optional<int> code;
    Sheet sheet;
    MainQueue::sync([&] {
        sheet = beginSheet(alert, window, [&](int pressed) {
            const std::lock_guard lock(mutex);
            code = pressed;
            answered.notify_one();
        });
    });
    {
        std::unique_lock lock(mutex);
        answered.wait(lock, [&] { return code.has_value(); });
    }
    MainQueue::sync([&] { endSheet(alert, sheet); });
    return *code;
}

int runModalSheet(QMessageBox& alert) {
    QWidget* window = nullptr;
    MainQueue::sync([&] { window = QApplication::activeWindow(); });
    return runModalSheetForWindow(alert, window);
}

} // namespace velmora
