// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/HandOff.h"

#include "composer/ExtensionAttachmentCollectionView.h"
#include "composer/ExtensionAttachmentController.h"
#include "composer/StagingStatusView.h"
#include "platform/LocalizedString.h"
#include "platform/MainQueue.h"
#include "views/SynchronousSheet.h"

#include <QMessageBox>
#include <QPushButton>

#include <atomic>
#include <utility>

namespace velmora {

namespace {

constexpr int kTryAgainReturn = 1000; // the first button

// Carries the status's changes from the staging threads to the main thread, at most one queued
// at a time however fast the copies report. Only the main thread reads target.
struct Relay {
    std::atomic<bool> queued{false};
    QPointer<HandOff> target;
};

} // namespace

HandOff::HandOff(QPushButton* sendButton, std::shared_ptr<StagingStatus> status, QObject* parent)
    : QObject(parent)
    , m_sendButton(sendButton)
    , m_status(std::move(status)) {
    if (!m_status)
        return;
    const auto relay = std::make_shared<Relay>();
    relay->target = this;
    m_status->addListener([relay] {
        if (relay->queued.exchange(true, std::memory_order_acq_rel))
            return;
        MainQueue::async([relay] {
            relay->queued.store(false, std::memory_order_release);
            if (relay->target)
                relay->target->stagingChanged();
        });
    });
}

void HandOff::showIn(ExtensionAttachmentController* controller,
                     ExtensionAttachmentCollectionView* strip) {
    m_controller = controller;
    m_strip = strip;
    if (!m_statusView)
        m_statusView = new StagingStatusView(strip);
    stagingChanged();
}

bool HandOff::holdSend(std::function<void()> send) {
    if (isWaiting()) {
        stopWaiting();
        return true;
    }
    if (!mustWait())
        return false;
    m_pendingSend = std::move(send);
    if (m_sendButton)
        m_sendTitle = m_sendButton->text();
    showWaiting();
    return true;
}

void HandOff::stagingChanged() {
    if (m_status && m_statusView) {
        // Landed files are in the shared list by the time their item stops being pending.
        if (m_controller && m_controller->content())
            m_controller->rearrangeObjects();
        m_statusView->setStatus(m_status->pending(), m_status->leftOut());
        if (m_strip)
            m_strip->setTrailingView(m_statusView);
    }
    if (!isWaiting())
        return;
    if (mustWait()) {
        showWaiting();
        return;
    }
    const std::function<void()> send = std::exchange(m_pendingSend, {});
    stopWaiting();
    send();
}

void HandOff::messageTakenIn() {
    m_messageTakenIn = true;
    stagingChanged();
}

bool HandOff::mustWait() const {
    return m_status &&
           (m_status->hasPending() || (m_status->deliveryExpected() && !m_messageTakenIn));
}

void HandOff::showWaiting() {
    if (!m_sendButton)
        return;
    const auto count = m_status->pending().size();
    m_sendButton->setText(count == 0   ? LocalizedString("Waiting...")
                          : count == 1 ? LocalizedString("Waiting for 1 file...")
                                       : LocalizedString("Waiting for %1 files...").arg(count));
}

void HandOff::stopWaiting() {
    m_pendingSend = {};
    if (m_sendButton && !m_sendTitle.isNull())
        m_sendButton->setText(m_sendTitle);
}

void HandOff::setUpFailureAlert(QMessageBox& alert, const QString& desktopEntry) {
    alert.setIcon(QMessageBox::Warning);
    alert.setText(LocalizedString("Velmora could not be opened to send your message."));
    alert.setInformativeText(
        LocalizedString("The desktop entry %1 is missing or its program cannot be started. "
                        "Install or repair Velmora, then try again. Your message is kept.")
            .arg(desktopEntry));
    QPushButton* again = alert.addButton(LocalizedString("Try Again"), QMessageBox::AcceptRole);
    alert.addButton(LocalizedString("Cancel"), QMessageBox::RejectRole);
    alert.setDefaultButton(again);
}

bool HandOff::retryFailedLaunch(QWidget* window, const QString& desktopEntry,
                                const std::function<bool()>& launchAgain) {
    // One alert for all tries; it must outlive each sheet.
    QMessageBox alert;
    setUpFailureAlert(alert, desktopEntry);
    while (true) {
        QMetaObject::invokeMethod(
            this, [this, &alert] { Q_EMIT alertShown(&alert); }, Qt::QueuedConnection);
        if (runModalSheetForWindow(alert, window) != kTryAgainReturn)
            return false;
        if (launchAgain())
            return true;
    }
}

} // namespace velmora
