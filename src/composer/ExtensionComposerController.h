// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "composer/ExtensionAttachmentController.h"
#include "composer/ExtensionContentTextView.h"
#include "recipients/ExtensionSuggestionController.h"
#include "recipients/SuggestionHost.h"
#include "request/UrlText.h"
#include "views/ViewController.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QRect>

#include <functional>
#include <memory>

class QComboBox;
class QLineEdit;
class QPushButton;
class QScrollArea;

namespace velmora {

class ExtensionAccount;
class ExtensionAttachmentCollectionView;
class ExtensionContext;
class ExtensionCopyRecipientsView;
class ExtensionMessage;
class ExtensionTokenField;
class FlippedView;
class HandOff;

// The compact mail composer of a share: From, To, Subject, the body and the attachment strip,
// with Cancel and Send. It owns the message being composed; Send hands it to the main
// application as one command URL and completes the share request, Cancel cancels the request.
//
// It is the parent object of its suggestion controller, which is how the recipient field finds
// it to report recipient changes (manageAddresses), and the body's delegate, which lets its
// keyboard shortcuts send.
class ExtensionComposerController : public ViewController,
                                    public SuggestionHost,
                                    public ExtensionContentTextViewDelegate {
    Q_OBJECT
public:
    // Keeps frame for the root view and the suggestion list, and context to end the request;
    // builds nothing yet.
    ExtensionComposerController(const QRect& frame, std::shared_ptr<ExtensionContext> context,
                                QObject* parent = nullptr);
    // Deletes the view unless a parent widget has taken it over.
    ~ExtensionComposerController() override;

    // Takes the shared message's subject, bodies and attachments into the composer. Any thread:
    // the work is queued to the main thread and this returns at once.
    void update(const std::shared_ptr<ExtensionMessage>& message);

    std::shared_ptr<ExtensionMessage> message() const { return m_message; }
    void setMessage(std::shared_ptr<ExtensionMessage> message) { m_message = std::move(message); }
    std::shared_ptr<ExtensionContext> myExtensionContext() const { return m_context; }
    void setMyExtensionContext(std::shared_ptr<ExtensionContext> context) {
        m_context = std::move(context);
    }
    // The accounts as read when the view was loaded, disabled ones included.
    QList<std::shared_ptr<ExtensionAccount>> accounts() const { return m_accounts; }
    void setAccounts(QList<std::shared_ptr<ExtensionAccount>> accounts) {
        m_accounts = std::move(accounts);
    }
    ExtensionSuggestionController* suggestionController() const { return m_suggestionController; }
    void setSuggestionController(ExtensionSuggestionController* controller) {
        m_suggestionController = controller;
    }
    ExtensionAttachmentController* attachmentController() const { return m_attachmentController; }
    void setAttachmentController(ExtensionAttachmentController* controller) {
        m_attachmentController = controller;
    }

    // The views, for the share entry and for tests.
    QComboBox* popUpview() const { return m_popUpview; }
    QLineEdit* subjectField() const { return m_subjectField; }
    ExtensionTokenField* toField() const { return m_toField; }
    // The Cc and Bcc a share brought, and its notices; shown under To only while not empty.
    ExtensionCopyRecipientsView* copyRecipientsView() const { return m_copyRecipientsView; }
    QPushButton* sendBtn() const { return m_sendBtn; }
    QPushButton* cancelBtn() const { return m_cancelBtn; }
    ExtensionContentTextView* contentTextView() const { return m_contentTextView; }
    QScrollArea* collectionScrollview() const { return m_collectionScrollview; }
    ExtensionAttachmentCollectionView* collectionView() const { return m_collectionView; }
    FlippedView* horizontalSeparator(int number) const; // 1 to 4

    // Hands command URLs to the main application; true when it could be launched. The default
    // is ExtensionUtilities::LaunchCommands; a command line may print the URLs instead.
    using CommandLauncher = std::function<bool(const QList<UrlText>& urls, bool background)>;
    void setCommandLauncher(CommandLauncher launcher) { m_commandLauncher = std::move(launcher); }
    // When set (the default), a failed launch keeps the composer and offers to try again on an
    // alert sheet; when not (no one to answer it), the request is completed all the same.
    void setAlertsOnFailedLaunch(bool alerts) { m_alertsOnFailedLaunch = alerts; }
    // Waits for items still being staged and keeps the message when the launch fails.
    HandOff* handOff() const { return m_handOff; }

    // Builds the message from the fields, launches the main application with it in the
    // background and completes the request. Waits first while shared items are still being
    // staged (pressing Send again stops the wait); a failed launch keeps the composer open,
    // unless alerts are off.
    void send();
    // Asks whether to send with an empty subject, as a sheet on the composer's window; the
    // answer is 1000 for "Send Anyway" and 1001 for "Cancel". Nothing calls it yet.
    int showAlertSubject();
    // Re-reads the recipients from the To field, once the main thread is free.
    void manageAddresses() override;

    // The body's command hook: Command-Return (exactly) and Command-Shift-D send, Shift-Tab
    // moves to the subject. Always false, so the body still performs the command.
    bool extensionContentTextView(ExtensionContentTextView* view, const QString& selector) override;

public Q_SLOTS:
    void send(QObject* sender) {
        Q_UNUSED(sender);
        send();
    }
    // Cancels the request with the user-cancelled error; nothing is sent.
    void cancel(QObject* sender);
    // For the window that shows the composer: closing it cancels, unless the request has
    // already ended.
    void windowWillClose();

Q_SIGNALS:
    // A shared message has been taken into the fields and the attachment strip.
    void messageTakenIn();

protected:
    // Builds the root view, the first time view() is asked for; then viewDidLoad() loads the
    // accounts into the From menu.
    void loadView() override;
    void viewDidLoad() override;

private:
    void takeInMessage(const std::shared_ptr<ExtensionMessage>& shared);
    void appendHtmlBody(const QString& html);
    void layoutSubviews();
    bool eventFilter(QObject* watched, QEvent* event) override;

    QRect m_frame;
    // The root as the event filter knows it: compared by address only, since a view being
    // destroyed still sends events here after it has stopped being a FlippedView.
    const QObject* m_filteredRoot = nullptr;
    QPointer<FlippedView> m_fxLight; // the translucent background, behind everything
    QComboBox* m_popUpview = nullptr;
    QLineEdit* m_subjectField = nullptr;
    ExtensionTokenField* m_toField = nullptr;
    ExtensionCopyRecipientsView* m_copyRecipientsView = nullptr;
    QPushButton* m_sendBtn = nullptr;
    QPushButton* m_cancelBtn = nullptr;
    ExtensionContentTextView* m_contentTextView = nullptr;
    FlippedView* m_horizontalSeparators[4] = {};
    QScrollArea* m_collectionScrollview = nullptr;
    ExtensionAttachmentCollectionView* m_collectionView = nullptr;

    std::shared_ptr<ExtensionMessage> m_message;
    std::shared_ptr<ExtensionContext> m_context;
    QList<std::shared_ptr<ExtensionAccount>> m_accounts;
    QPointer<ExtensionSuggestionController> m_suggestionController;
    QPointer<ExtensionAttachmentController> m_attachmentController;
    CommandLauncher m_commandLauncher;
    HandOff* m_handOff = nullptr;
    bool m_alertsOnFailedLaunch = true;
};

} // namespace velmora
