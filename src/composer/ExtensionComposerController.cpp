// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/ExtensionComposerController.h"

#include "bridge/ConstVars.h"
#include "bridge/ExtensionUtilities.h"
#include "composer/ExtensionAttachmentCollectionView.h"
#include "composer/ExtensionAttachmentController.h"
#include "composer/HandOff.h"
#include "composer/ExtensionCopyRecipientsView.h"
#include "directory/ExtensionAccount.h"
#include "directory/ExtensionAddress.h"
#include "message/ExtensionMessage.h"
#include "platform/ExtensionContext.h"
#include "platform/ExtensionItem.h"
#include "platform/InertTextDocument.h"
#include "platform/LocalizedString.h"
#include "platform/MainQueue.h"
#include "recipients/ExtensionSuggestionController.h"
#include "recipients/ExtensionTokenField.h"
#include "views/FlippedView.h"
#include "views/KeyCommands.h"
#include "views/SynchronousSheet.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>

#include <cmath>

namespace velmora {

namespace {

// The column, from the top: margins, separators and fixed heights, in points.
constexpr int kTopMargin = 10;
constexpr int kSideMargin = 15;
constexpr int kGap = 5;          // above and below each separator
constexpr int kSeparator = 1;    // a separator line's thickness
constexpr int kFieldHeight = 18; // To and Subject
constexpr int kBodyHeight = 100;
constexpr int kMinBodyHeight = 36; // what the body keeps when the Cc/Bcc row takes room
constexpr int kStripHeight = 168;
constexpr int kButtonWidth = 60;
constexpr int kButtonHeight = 20;
constexpr int kButtonGap = 5;
// The space a layout leaves between two neighbouring controls when none is asked for.
constexpr int kStandardSpacing = 8;
// A textured rounded pop-up's own height.
constexpr int kPopUpHeight = 22;

// Only the modifier keys, as key equivalents compare them.
constexpr quint64 kDeviceIndependentFlags = 0xffff0000;
constexpr quint16 kReturnKeyCode = 36;

QFont systemFont(int pixels) {
    QFont font = QApplication::font();
    font.setPixelSize(pixels);
    return font;
}

// Makes a widget draw no background of its own, so what lies behind it shows through.
void clearBackground(QWidget* widget) {
    QPalette palette = widget->palette();
    palette.setColor(QPalette::Base, Qt::transparent);
    palette.setColor(QPalette::Window, Qt::transparent);
    widget->setPalette(palette);
    widget->setAutoFillBackground(false);
}

QString nonNull(const QString& text) {
    return text.isNull() ? QStringLiteral("") : text;
}

} // namespace

ExtensionComposerController::ExtensionComposerController(const QRect& frame,
                                                         std::shared_ptr<ExtensionContext> context,
                                                         QObject* parent)
    : ViewController(parent)
    , m_frame(frame)
    , m_context(std::move(context))
    , m_commandLauncher(&ExtensionUtilities::LaunchCommands) {}

ExtensionComposerController::~ExtensionComposerController() {
    if (FlippedView* root = loadedView())
        root->removeEventFilter(this);
    releaseView();
}

FlippedView* ExtensionComposerController::horizontalSeparator(int number) const {
    return number >= 1 && number <= 4 ? m_horizontalSeparators[number - 1] : nullptr;
}

void ExtensionComposerController::loadView() {
    auto* root = new FlippedView(m_frame);
    setView(root);
    // Installed before any subview follows the root's size, so that the column is laid out
    // after them and has the last word.
    root->installEventFilter(this);
    m_filteredRoot = root;

    // Stands in for the light title-bar material behind the whole composer. The light grey is
    // laid over the window's own opaque background, so it is painted as the colour the two make
    // together: the same look, without a translucent fill of the whole window, which Qt spreads
    // over its own worker threads.
    m_fxLight = new FlippedView(
        QRect(),
        [](FlippedView* view, const QRect& dirty) {
            QPainter painter(view);
            const QColor window = view->palette().color(QPalette::Window);
            const QColor light(236, 236, 236);
            constexpr double kCover = 235.0 / 255.0;
            const auto mix = [&](int over, int under) {
                return int(std::lround(over * kCover + under * (1.0 - kCover)));
            };
            painter.fillRect(dirty, QColor(mix(light.red(), window.red()),
                                           mix(light.green(), window.green()),
                                           mix(light.blue(), window.blue())));
        },
        root);

    m_sendBtn = new QPushButton(LocalizedString("Send"), root);
    m_sendBtn->setFlat(true);
    // Return means Send wherever it is not taken by the control that has the focus.
    m_sendBtn->setDefault(true);
    m_sendBtn->setFocusPolicy(Qt::NoFocus);
    connect(m_sendBtn, &QPushButton::clicked, this, [this] { send(m_sendBtn); });

    // No key at all triggers Cancel.
    m_cancelBtn = new QPushButton(LocalizedString("Cancel"), root);
    m_cancelBtn->setFlat(true);
    m_cancelBtn->setAutoDefault(false);
    m_cancelBtn->setFocusPolicy(Qt::NoFocus);
    connect(m_cancelBtn, &QPushButton::clicked, this, [this] { cancel(m_cancelBtn); });

    m_popUpview = new QComboBox(root);
    m_popUpview->setGeometry(20, 20, 130, 32);
    m_popUpview->setEditable(false);
    m_popUpview->setFocusPolicy(Qt::NoFocus);

    m_subjectField = new QLineEdit(root);
    m_subjectField->setFrame(false);
    clearBackground(m_subjectField);
    m_subjectField->setFont(systemFont(15));
    m_subjectField->setPlaceholderText(LocalizedString("Subject"));
    m_subjectField->setTextMargins(0, 0, 0, 0);

    const auto separatorLine = [](FlippedView* view, const QRect& dirty) {
        // Black at a tenth: the single-precision 0.1, as the lines have always been drawn.
        QPainter(view).fillRect(dirty, QColor::fromRgbF(0, 0, 0, 0.1f));
    };
    for (FlippedView*& separator : m_horizontalSeparators)
        separator = new FlippedView(QRect(), separatorLine, root);

    // Draws no background of its own; its tokens are tinted from the palette, which stays.
    m_toField = new ExtensionTokenField(root);
    m_toField->setPlaceholderString(LocalizedString("To:"));
    m_toField->setFont(systemFont(15));
    m_horizontalSeparators[2]->raise();

    m_copyRecipientsView = new ExtensionCopyRecipientsView(root);
    m_copyRecipientsView->hide();
    connect(m_copyRecipientsView, &ExtensionCopyRecipientsView::changed, this,
            &ExtensionComposerController::layoutSubviews);

    m_contentTextView = new ExtensionContentTextView(root);
    m_contentTextView->setFont(systemFont(15));
    m_contentTextView->document()->setDefaultFont(systemFont(15));
    m_contentTextView->setFrameShape(QFrame::NoFrame);
    clearBackground(m_contentTextView);
    clearBackground(m_contentTextView->viewport());

    m_attachmentController = new ExtensionAttachmentController(this);

    m_collectionScrollview = new QScrollArea(root);
    m_collectionScrollview->setFrameShape(QFrame::NoFrame);
    m_collectionScrollview->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_collectionScrollview->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    // The strip draws no background: the composer's shows through.
    m_collectionScrollview->setAutoFillBackground(false);
    m_collectionScrollview->viewport()->setAutoFillBackground(false);
    m_collectionScrollview->setGeometry(0, 0, m_frame.width() - 2 * kSideMargin, kStripHeight);
    m_collectionView =
        new ExtensionAttachmentCollectionView(m_collectionScrollview->viewport()->rect());
    m_collectionView->setAttachmentController(m_attachmentController);
    m_collectionScrollview->setWidget(m_collectionView);
    // The scroll area turns its document's background on; the strip stays transparent.
    m_collectionView->setAutoFillBackground(false);
    m_collectionScrollview->setWidgetResizable(false);
    m_handOff = new HandOff(m_sendBtn, m_context ? m_context->stagingStatus() : nullptr, this);
    m_handOff->showIn(m_attachmentController, m_collectionView);

    m_suggestionController = new ExtensionSuggestionController(m_frame, this);
    m_suggestionController->view()->setParent(root);
    m_suggestionController->view()->raise();
    m_toField->setSuggestioncontroller(m_suggestionController);

    m_contentTextView->setMyDelegate(this);

    QWidget::setTabOrder(m_toField, m_subjectField);
    QWidget::setTabOrder(m_subjectField, m_contentTextView);

    layoutSubviews();
}

void ExtensionComposerController::layoutSubviews() {
    const FlippedView* root = loadedView();
    if (!root)
        return;
    const int width = root->width();
    const int fieldWidth = std::max(1, width - 2 * kSideMargin);

    m_fxLight->setGeometry(root->rect());

    const int sendX = width - kSideMargin - kButtonWidth;
    const int cancelX = sendX - kButtonGap - kButtonWidth;
    m_sendBtn->setGeometry(sendX, kTopMargin, kButtonWidth, kButtonHeight);
    m_cancelBtn->setGeometry(cancelX, kTopMargin, kButtonWidth, kButtonHeight);
    m_popUpview->setGeometry(kSideMargin, kTopMargin,
                             std::max(1, cancelX - kStandardSpacing - kSideMargin), kPopUpHeight);

    int y = kTopMargin + kPopUpHeight;
    const auto separator = [&](int number) {
        y += kGap;
        m_horizontalSeparators[number]->setGeometry(0, y, std::max(1, width), kSeparator);
        y += kSeparator + kGap;
    };
    const auto column = [&](QWidget* widget, int height) {
        widget->setGeometry(kSideMargin, y, fieldWidth, height);
        y += height;
    };
    separator(0);
    column(m_toField, kFieldHeight);
    // The Cc/Bcc row sits under To and takes its room from the body.
    int bodyHeight = kBodyHeight;
    m_copyRecipientsView->setVisible(!m_copyRecipientsView->isEmpty());
    if (m_copyRecipientsView->isVisible()) {
        y += kGap;
        const int rowHeight = m_copyRecipientsView->heightForWidth(fieldWidth);
        column(m_copyRecipientsView, rowHeight);
        bodyHeight = std::max(kMinBodyHeight, kBodyHeight - rowHeight - kGap);
    }
    separator(1);
    column(m_subjectField, kFieldHeight);
    separator(2);
    column(m_contentTextView, bodyHeight);
    separator(3);
    column(m_collectionScrollview, kStripHeight);
}

bool ExtensionComposerController::eventFilter(QObject* watched, QEvent* event) {
    // qobject_cast, not the QPointer: it is null once the view is being destroyed.
    if (watched == m_filteredRoot && qobject_cast<FlippedView*>(watched)) {
        if (event->type() == QEvent::Resize) {
            layoutSubviews();
        } else if (event->type() == QEvent::KeyPress) {
            // Return that no control took for itself is Send's key equivalent.
            const auto* key = static_cast<QKeyEvent*>(event);
            const Qt::KeyboardModifiers modifiers = key->modifiers() & ~Qt::KeypadModifier;
            if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) &&
                modifiers == Qt::NoModifier) {
                m_sendBtn->click();
                return true;
            }
        }
    }
    return QObject::eventFilter(watched, event);
}

void ExtensionComposerController::viewDidLoad() {
    m_message = ExtensionMessage::init();
    m_accounts = ExtensionUtilities::Accounts();

    m_popUpview->clear();
    for (const std::shared_ptr<ExtensionAccount>& account : m_accounts) {
        if (!account || account->type() == 3 || !account->enabled())
            continue;
        const QVariant represented = QVariant::fromValue(account);
        m_popUpview->addItem(account->mail(), represented);
        // An alias item stands for its account: sending from it uses the account's address.
        for (const std::shared_ptr<ExtensionAlias>& alias : account->aliases()) {
            if (alias)
                m_popUpview->addItem(alias->mail(), represented);
        }
    }
}

void ExtensionComposerController::update(const std::shared_ptr<ExtensionMessage>& message) {
    QPointer<ExtensionComposerController> self(this);
    MainQueue::async([self, message] {
        if (self)
            self->takeInMessage(message);
    });
}

void ExtensionComposerController::takeInMessage(const std::shared_ptr<ExtensionMessage>& shared) {
    view();
    if (!shared || !m_message) {
        m_handOff->messageTakenIn();
        Q_EMIT messageTakenIn();
        return;
    }

    m_message->setSubject(shared->subject());
    if (!m_message->subject().isNull())
        m_subjectField->setText(m_message->subject());

    m_message->setPlainBody(shared->plainBody());
    m_message->setHtmlBody(shared->htmlBody());

    const std::shared_ptr<AttachmentList> attachments = shared->attachments();
    m_message->setAttachments(attachments);
    if (attachments) {
        const std::weak_ptr<ExtensionMessage> owner = shared;
        if (!m_attachmentController->content() || m_attachmentController->rowCount() == 0) {
            // The strip shows the message's own list, read under the lock the intake changes
            // it under, so files staged after this still reach the strip on the next
            // rearrangeObjects().
            m_attachmentController->setContent(
                attachments,
                [owner, attachments](const std::function<void(AttachmentList&)>& body) {
                    if (const auto message = owner.lock())
                        message->withLock([&] { body(*attachments); });
                    else
                        body(*attachments);
                });
            m_attachmentController->rearrangeObjects();
        } else if (m_attachmentController->content() != attachments) {
            const QVariantList added = shared->withLock(
                [&] { return ExtensionAttachmentController::unsharedCopy(*attachments); });
            m_attachmentController->addObjects(added);
        }
    }

    const QString plain = m_message->plainBody();
    const QString html = m_message->htmlBody();
    if (plain.length() > 0)
        m_contentTextView->setPlainText(plain);
    else if (html.length() > 0)
        appendHtmlBody(html);
    m_handOff->messageTakenIn();
    Q_EMIT messageTakenIn();
}

void ExtensionComposerController::appendHtmlBody(const QString& html) {
    // Neither parsing it here nor showing it in the body (an inert document too) reads anything
    // the HTML names.
    InertTextDocument parsed;
    parsed.setDefaultFont(m_contentTextView->document()->defaultFont());
    parsed.setHtml(QString::fromUtf8(html.toUtf8()));
    QTextDocument* body = m_contentTextView->document();

    QTextCursor cursor(body);
    cursor.movePosition(QTextCursor::End);
    cursor.insertFragment(QTextDocumentFragment(&parsed));
    // One space after the HTML, with no formatting of its own.
    cursor.insertText(QStringLiteral(" "), QTextCharFormat());
}

void ExtensionComposerController::send() {
    view();
    if (m_handOff->holdSend([this] { send(); }))
        return;
    const ExtensionContext::Items items{std::make_shared<ExtensionItem>()};

    const QVariant represented = m_popUpview ? m_popUpview->currentData() : QVariant();
    if (represented.metaType() == QMetaType::fromType<std::shared_ptr<ExtensionAccount>>()) {
        if (const auto account = represented.value<std::shared_ptr<ExtensionAccount>>()) {
            m_message->setFrom(account->mail());
            m_message->setAccount(account->mail());
        }
    } else if (represented.metaType() == QMetaType::fromType<std::shared_ptr<ExtensionAlias>>()) {
        if (const auto alias = represented.value<std::shared_ptr<ExtensionAlias>>()) {
            m_message->setFrom(alias->mail());
            m_message->setAccount(alias->account());
        }
    }

    m_message->setSubject(nonNull(m_subjectField->text()));
    m_message->setPlainBody(nonNull(m_contentTextView->toPlainText()));
    m_message->setHtmlBody(QString::fromUtf8(m_contentTextView->document()->toHtml().toUtf8()));
    // Cc and Bcc are exactly what the row shows.
    using Field = ExtensionCopyRecipientsView::Field;
    m_message->setCc(std::make_shared<AddressList>(m_copyRecipientsView->recipients(Field::Cc)));
    m_message->setBcc(std::make_shared<AddressList>(m_copyRecipientsView->recipients(Field::Bcc)));

    QStringList recipients;
    if (const std::shared_ptr<AddressList> to = m_message->to()) {
        for (const std::shared_ptr<ExtensionAddress>& address : *to)
            recipients.append(address ? address->mail() : QString());
    }
    Q_UNUSED(recipients); // the recipients travel in the message itself

    const UrlText url = m_message->queryUrl(ConstVars::commandSend);
    const auto launch = [&] { return !m_commandLauncher || m_commandLauncher({url}, true); };
    if (!launch() && m_alertsOnFailedLaunch &&
        !m_handOff->retryFailedLaunch(
            loadedView() ? loadedView()->window() : nullptr,
            ExtensionUtilities::TargetApplication() + QStringLiteral(".desktop"), launch))
        return; // back to the composer, with everything as it was

    if (m_context)
        m_context->completeRequestReturningItems(items);
}

int ExtensionComposerController::showAlertSubject() {
    QMessageBox alert(QMessageBox::Warning, LocalizedString("Empty subject"),
                      LocalizedString("Empty subject"));
    QPushButton* sendAnyway =
        alert.addButton(LocalizedString("Send Anyway"), QMessageBox::AcceptRole);
    alert.addButton(LocalizedString("Cancel"), QMessageBox::RejectRole);
    alert.setDefaultButton(sendAnyway);
    alert.setInformativeText(LocalizedString("Your message has an empty subject."));
    return runModalSheetForWindow(alert, loadedView() ? loadedView()->window() : nullptr);
}

void ExtensionComposerController::cancel(QObject* sender) {
    Q_UNUSED(sender);
    if (m_context)
        m_context->cancelRequestWithError(
            Error{QString::fromLatin1(kCocoaErrorDomain), kUserCancelledErrorCode, {}});
}

void ExtensionComposerController::windowWillClose() {
    if (m_context && !m_context->hasEnded())
        cancel(nullptr);
}

void ExtensionComposerController::manageAddresses() {
    QPointer<ExtensionComposerController> self(this);
    MainQueue::async([self] {
        if (!self || !self->m_message || !self->m_toField)
            return;
        auto to = std::make_shared<AddressList>();
        for (const Token& token : self->m_toField->objectValue()) {
            if (const auto* address = std::get_if<std::shared_ptr<ExtensionAddress>>(&token)) {
                if (*address)
                    to->append(*address);
            } else if (const auto* group = std::get_if<std::shared_ptr<ExtensionGroup>>(&token)) {
                // Every member, even one that is also listed on its own or in another group.
                if (*group)
                    to->append((*group)->addresses());
            }
        }
        self->m_message->setTo(std::move(to));
    });
}

bool ExtensionComposerController::extensionContentTextView(ExtensionContentTextView* view,
                                                           const QString& selector) {
    if (selector == QLatin1String("insertBacktab:")) {
        m_subjectField->setFocus(Qt::BacktabFocusReason);
        m_subjectField->selectAll();
    }
    // Without the key press behind the command there is nothing to test.
    if (!view || !view->currentKeyCommand())
        return false;
    const KeyCommand& key = *view->currentKeyCommand();
    const quint64 flags = key.modifierFlags & kDeviceIndependentFlags;
    const QString characters = key.characters.toLower();

    if (flags == KeyFlags::Command && key.keyCode == kReturnKeyCode)
        send();
    // Meant as Command-Shift-Return, but no value equal to Command alone holds Shift.
    if (flags == KeyFlags::Command && (flags & KeyFlags::Shift) && key.keyCode == kReturnKeyCode)
        send();
    if ((flags & KeyFlags::Command) && (flags & KeyFlags::Shift) &&
        characters == QLatin1String("d"))
        send();
    return false;
}

} // namespace velmora
