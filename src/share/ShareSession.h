// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ExtensionContext.h"
#include "request/UrlText.h"
#include "share/CommandLine.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <memory>
#include <optional>

class QTextStream;

namespace velmora {

class ShareViewController;

// The top-level window of a share: the composer at 600 x 400, titled for the product. Closing
// it counts as Cancel.
class ShareWindow : public QWidget {
    Q_OBJECT
public:
    explicit ShareWindow(QWidget* parent = nullptr);

Q_SIGNALS:
    void closing();

protected:
    void closeEvent(QCloseEvent* event) override;
};

// One share run from the command line: the request is made from the options, the composer is
// shown in a window (on the offscreen platform when headless), and the way the request ends
// gives the exit status. A headless run fills the composer from the options and presses Send
// or Cancel itself, so both ways go through the same composer.
class ShareSession : public QObject {
    Q_OBJECT
public:
    // Sent: every item given is in the command URL. ItemsLeftOut: sent, but some items (or
    // entries of folders) could not be staged; each is named on the error stream.
    enum ExitCode { Sent = 0, Cancelled = 1, UsageError = 2, LaunchFailed = 3, ItemsLeftOut = 4 };

    // out receives the URLs of --print-url, err the messages; both must outlive the session.
    ShareSession(ShareOptions options, ExtensionContext::Items inputItems, QTextStream& out,
                 QTextStream& err);
    ~ShareSession() override;

    // Shows the composer and runs the event loop until the request has ended.
    int exec();
    // How the request ended; none while it runs, or when the event loop was left otherwise.
    const std::optional<ExtensionContext::Outcome>& outcome() const { return m_outcome; }

private:
    void messageTakenIn();
    void afterThumbnails(const std::function<void()>& then);
    void writeScreenshot();
    void finishHeadless();
    bool launch(const QList<UrlText>& urls, bool background);
    void requestEnded(const ExtensionContext::Outcome& outcome);
    bool reportLeftOut();

    const ShareOptions m_options;
    QTextStream& m_out;
    QTextStream& m_err;
    std::shared_ptr<ExtensionContext> m_context;
    std::unique_ptr<ShareWindow> m_window;
    QPointer<ShareViewController> m_controller;
    std::optional<ExtensionContext::Outcome> m_outcome;
    bool m_launchFailed = false;
    bool m_usageError = false;
};

} // namespace velmora
