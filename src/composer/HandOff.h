// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "composer/ExtensionAttachmentCollectionView.h"
#include "composer/ExtensionAttachmentController.h"
#include "composer/StagingStatusView.h"
#include "platform/StagingStatus.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <memory>

class QMessageBox;
class QPushButton;
class QWidget;

namespace velmora {

// Getting the composed message to the main application without losing it: Send waits for the
// share's items that are still being staged (the Send button says so; pressing it again stops
// the wait), and a launch that fails keeps the composer and asks, on an alert sheet, whether
// to try again.
class HandOff : public QObject {
    Q_OBJECT
public:
    // Follows status from now on (its changes are taken on the main thread).
    HandOff(QPushButton* sendButton, std::shared_ptr<StagingStatus> status,
            QObject* parent = nullptr);

    // Keeps the strip in step with the staging: attachments that land are read into controller,
    // the items still on their way and those left out are shown on cards after them.
    void showIn(ExtensionAttachmentController* controller,
                ExtensionAttachmentCollectionView* strip);
    StagingStatusView* statusView() const { return m_statusView; }

    // True when Send must not go on now: items are still being staged (then send runs once they
    // all have landed or failed, unless the wait is stopped first), or a wait was under way, which
    // this press stops.
    bool holdSend(std::function<void()> send);
    bool isWaiting() const { return static_cast<bool>(m_pendingSend); }
    // The shared message has been taken into the composer: files that landed before are in it.
    void messageTakenIn();

    // After a failed launch: shows the alert on window, naming the desktop entry looked for,
    // until a launch works (true) or the user chooses Cancel (false). launchAgain launches once
    // more.
    bool retryFailedLaunch(QWidget* window, const QString& desktopEntry,
                           const std::function<bool()>& launchAgain);
    // The alert it shows, for the application's desktop entry.
    static void setUpFailureAlert(QMessageBox& alert, const QString& desktopEntry);

Q_SIGNALS:
    // The alert is up; tests answer it from here.
    void alertShown(QMessageBox* alert);

private:
    void stagingChanged();
    bool mustWait() const;
    void showWaiting();
    void stopWaiting();

    QPointer<QPushButton> m_sendButton;
    const std::shared_ptr<StagingStatus> m_status;
    QString m_sendTitle;
    std::function<void()> m_pendingSend;
    bool m_messageTakenIn = false;
    QPointer<ExtensionAttachmentController> m_controller;
    QPointer<ExtensionAttachmentCollectionView> m_strip;
    QPointer<StagingStatusView> m_statusView;
};

} // namespace velmora
