#include "views/SynchronousSheet.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QEventLoop>
#include <QMessageBox>
#include <QPointer>
#include <QThread>

#include <algorithm>

namespace velmora {

namespace {

constexpr int kFirstButtonReturn = 1000;

// Runs f on the main thread and returns when it has run.
template <typename F> void onMainThreadAndWait(F&& f) {
    if (QThread::currentThread() == qApp->thread())
        f();
    else
        QMetaObject::invokeMethod(qApp, std::forward<F>(f), Qt::BlockingQueuedConnection);
}

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

// What the alert looked like before the sheet, put back afterwards.
struct SavedAlert {
    QPointer<QWidget> parent;
    Qt::WindowFlags flags;
    Qt::WindowModality modality = Qt::NonModal;
};

} // namespace

int runModalSheetForWindow(QMessageBox& alert, QWidget* window) {
    QEventLoop loop;
    // Lives on the calling thread, so the code reaches the loop there whichever thread ends it.
    QObject receiver;
    SavedAlert saved;
    QMetaObject::Connection finished;

    onMainThreadAndWait([&] {
        const QList<QAbstractButton*> ordered = buttonsInOrderAdded(alert);
        // The message box still closes itself on a press; the code comes from the button's
        // position among the buttons as added, not from the button's role.
        // The message box still closes itself on a press; the code comes from the button's
        // position among the buttons as added, not from the button's role.
        finished = QObject::connect(&alert, &QDialog::finished, &alert, [&, ordered](int) {
            const auto index = ordered.indexOf(alert.clickedButton());
            const int code = index < 0 ? kSheetAbortedReturn : kFirstButtonReturn + int(index);
            QMetaObject::invokeMethod(&receiver, [&loop, code] { loop.exit(code); });
        });
        saved = {alert.parentWidget(), alert.windowFlags(), alert.windowModality()};
        if (window && alert.parentWidget() != window)
            alert.setParent(window, alert.windowFlags());
        alert.setWindowModality(window ? Qt::WindowModal : Qt::ApplicationModal);
        alert.show();
    });

    const int code = loop.exec(QEventLoop::DialogExec);

    onMainThreadAndWait([&] {
        QObject::disconnect(finished);
        alert.hide();
        if (alert.parentWidget() != saved.parent)
            alert.setParent(saved.parent, saved.flags);
        alert.setWindowModality(saved.modality);
    });
    return code;
}

int runModalSheet(QMessageBox& alert) {
    QWidget* window = nullptr;
    onMainThreadAndWait([&] { window = QApplication::activeWindow(); });
    return runModalSheetForWindow(alert, window);
}

} // namespace velmora
