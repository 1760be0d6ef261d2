// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "share/ShareSession.h"

#include "bridge/ConstVars.h"
#include "bridge/ExtensionUtilities.h"
#include "bridge/ShareFolder.h"
#include "composer/ExtensionAttachmentCollectionView.h"
#include "composer/ExtensionComposerController.h"
#include "composer/ThumbnailLoader.h"
#include "platform/LocalizedString.h"
#include "platform/MainQueue.h"
#include "recipients/ExtensionTokenField.h"
#include "share/HeadlessDriver.h"
#include "share/MailtoIntake.h"
#include "share/ShareViewController.h"
#include "views/FlippedView.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QPushButton>
#include <QTextStream>
#include <QTimer>

namespace velmora {

namespace {

const QSize kWindowSize(600, 400);
// How long a screenshot waits for the strip's thumbnails.
constexpr int kThumbnailWaitMs = 10000;

} // namespace

ShareWindow::ShareWindow(QWidget* parent)
    : QWidget(parent) {
    setWindowTitle(LocalizedString("Share with Velmora"));
    // The composer's column is laid out for this size.
    setFixedSize(kWindowSize);
}

void ShareWindow::closeEvent(QCloseEvent* event) {
    Q_EMIT closing();
    QWidget::closeEvent(event);
}

ShareSession::ShareSession(ShareOptions options, ExtensionContext::Items inputItems,
                           QTextStream& out, QTextStream& err)
    : m_options(std::move(options))
    , m_out(out)
    , m_err(err) {
    QPointer<ShareSession> self(this);
    m_context = std::make_shared<ExtensionContext>(
        std::move(inputItems), [self](const ExtensionContext::Outcome& outcome) {
            MainQueue::async([self, outcome] {
                if (self)
                    self->requestEnded(outcome);
            });
        });
}

ShareSession::~ShareSession() = default;

int ShareSession::exec() {
    m_window = std::make_unique<ShareWindow>();
    m_controller = new ShareViewController(m_context, this);
    m_controller->view()->setParent(m_window.get());

    ExtensionComposerController* composer = m_controller->composer();
    composer->setCommandLauncher(
        [this](const QList<UrlText>& urls, bool background) { return launch(urls, background); });
    // Headless, nobody could answer the alert: a failed launch ends the run with its status.
    composer->setAlertsOnFailedLaunch(!m_options.headless);
    connect(m_window.get(), &ShareWindow::closing, composer,
            &ExtensionComposerController::windowWillClose);
    connect(composer, &ExtensionComposerController::messageTakenIn, this,
            &ShareSession::messageTakenIn, Qt::SingleShotConnection);

    // The event loop ends with the request, which closing the window ends too.
    QApplication::setQuitOnLastWindowClosed(false);
    m_window->show();
    if (!m_options.headless) {
        m_window->raise();
        m_window->activateWindow();
    }
    composer->toField()->setFocus(Qt::ActiveWindowFocusReason);

    QApplication::exec();

    if (m_usageError)
        return UsageError;
    const bool leftOut = reportLeftOut();
    if (!m_outcome || m_outcome->cancelled())
        return Cancelled;
    if (m_launchFailed) {
        m_err << "velmora-share: "
              << LocalizedString("the message is complete, but the mail application (%1) could "
                                 "not be launched to send it")
                     .arg(ExtensionUtilities::TargetApplication() + QStringLiteral(".desktop"))
              << '\n';
        m_err.flush();
        return LaunchFailed;
    }
    return leftOut ? ItemsLeftOut : Sent;
}

bool ShareSession::reportLeftOut() {
    // Also in window runs: whoever started the program may be watching its error stream.
    const QList<StagingStatus::LeftOut> leftOut = m_context->stagingStatus()->leftOut();
    for (const StagingStatus::LeftOut& item : leftOut)
        m_err << "velmora-share: "
              << LocalizedString("not attached: %1: %2").arg(item.name, item.reason) << '\n';
    m_err.flush();
    return !leftOut.isEmpty();
}

void ShareSession::messageTakenIn() {
    ExtensionComposerController* composer = m_controller->composer();
    MailtoIntake::fill(*composer, m_options);
    if (m_options.headless) {
        const QString problem =
            HeadlessDriver::apply(*composer, {m_options.from, m_options.to, m_options.subject,
                                              m_options.body, m_options.cc, m_options.bcc});
        if (!problem.isNull()) {
            m_err << "velmora-share: " << problem << '\n';
            m_err.flush();
            m_usageError = true;
            composer->cancel(nullptr);
            return;
        }
    }
    // Only a picture needs the thumbnails; the message does not, so a headless Send without
    // one does not wait for them.
    if (m_options.screenshot.isNull()) {
        if (m_options.headless)
            finishHeadless();
        return;
    }
    afterThumbnails([this] {
        writeScreenshot();
        if (m_options.headless)
            finishHeadless();
    });
}

void ShareSession::afterThumbnails(const std::function<void()>& then) {
    // The strip asks for its thumbnails while it lays out, after the current event.
    QTimer::singleShot(0, this, [this, then] {
        ExtensionAttachmentCollectionView* strip = m_controller->composer()->collectionView();
        ThumbnailLoader* loader = strip ? strip->thumbnailLoader() : nullptr;
        if (!loader || loader->pendingCount() == 0) {
            then();
            return;
        }
        auto done = std::make_shared<bool>(false);
        const auto once = [then, done] {
            if (!*done) {
                *done = true;
                then();
            }
        };
        connect(loader, &ThumbnailLoader::idle, this, once, Qt::SingleShotConnection);
        QTimer::singleShot(kThumbnailWaitMs, this, once);
    });
}

void ShareSession::writeScreenshot() {
    QApplication::processEvents();
    const QString path = m_options.screenshot;
    QDir().mkpath(QFileInfo(path).absolutePath());
    if (!m_window->grab().save(path, "PNG")) {
        m_err << "velmora-share: "
              << LocalizedString("could not write the screenshot to %1").arg(path) << '\n';
        m_err.flush();
    }
}

void ShareSession::finishHeadless() {
    // After the recipients' queued bookkeeping, as a click would come after it.
    MainQueue::async([self = QPointer<ShareSession>(this)] {
        if (!self || !self->m_controller)
            return;
        ExtensionComposerController* composer = self->m_controller->composer();
        (self->m_options.cancel ? composer->cancelBtn() : composer->sendBtn())->click();
    });
}

bool ShareSession::launch(const QList<UrlText>& urls, bool background) {
    if (m_options.printUrl) {
        for (const UrlText& url : urls)
            m_out << url.toString() << '\n';
        m_out.flush();
        return true;
    }
    const bool launched = ExtensionUtilities::LaunchCommands(urls, background);
    m_launchFailed = !launched;
    return launched;
}

void ShareSession::requestEnded(const ExtensionContext::Outcome& outcome) {
    // The main application has its message now: the staged files' grace period starts here.
    ShareFolder::markUsed(QString(ConstVars::shareService));
    m_outcome = outcome;
    m_window->close();
    QApplication::quit();
}

} // namespace velmora
