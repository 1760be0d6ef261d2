// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "AttachmentFiles.h"
#include "RecordingDesktop.h"
#include "TestSupport.h"
#include "composer/ExtensionAttachmentCollectionView.h"
#include "composer/ExtensionAttachmentController.h"
#include "composer/ExtensionComposerController.h"
#include "directory/ExtensionAccount.h"
#include "directory/ExtensionAddress.h"
#include "message/ExtensionMessage.h"
#include "platform/ExtensionContext.h"
#include "recipients/ExtensionTokenField.h"
#include "views/FlippedView.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QTest>
#include <QUrlQuery>

#include <thread>

using namespace velmora;

namespace {

std::shared_ptr<ExtensionAddress> address(const char* mail) {
    auto a = std::make_shared<ExtensionAddress>();
    a->setMail(QString::fromLatin1(mail));
    return a;
}

// The composer in a 600 x 400 window, on a container with accounts and no contacts, whose
// main application is a recorder on a desktop of its own.
class Composer : public ::testing::Test {
protected:
    void SetUp() override {
        if (!velmora::test::writePlist(container.dataFolder() + QStringLiteral("/Accounts.plist"),
                                       accountsJson(), false))
            GTEST_SKIP() << "python3 is needed to write property lists";
        desktop.addApplication(QStringLiteral("it.zemlo.velmora"));

        context = std::make_shared<ExtensionContext>(
            ExtensionContext::Items{},
            [this](const ExtensionContext::Outcome& o) { outcomes.append(o); });
        composer = std::make_unique<ExtensionComposerController>(QRect(0, 0, 600, 400), context);
        window.resize(600, 400);
        composer->view()->setParent(&window);
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    virtual QByteArray accountsJson() const {
        return R"([
            {"mail": "ada@x.test", "type": 1, "enabled": true,
             "aliases": [{"mail": "al1@x.test", "account": "acc-1"}, {"mail": "al2@x.test"}]},
            {"mail": "old@x.test", "type": 3, "enabled": true},
            {"mail": "off@x.test", "type": 1, "enabled": false},
            {"mail": "bob@y.test", "type": 0, "enabled": true}
        ])";
    }

    // The URLs of the one launch, once the recorder has run; empty when none came.
    QStringList launchedUrls(int timeoutMs = 20000) {
        return desktop.takeArguments(QStringLiteral("it.zemlo.velmora"), timeoutMs);
    }
    QUrlQuery launchedQuery() {
        const QStringList urls = launchedUrls();
        EXPECT_EQ(urls.size(), 1);
        return urls.isEmpty() ? QUrlQuery()
                              : QUrlQuery(QUrl(urls.first()).query(QUrl::FullyDecoded));
    }

    void focusBody() {
        composer->contentTextView()->setFocus();
        ASSERT_TRUE(QTest::qWaitFor([&] { return composer->contentTextView()->hasFocus(); }));
    }

    // A key press as X11 gives it with Caps Lock on (Lock in the native modifier state).
    void pressWithCapsLock(QWidget* target, Qt::Key key, Qt::KeyboardModifiers modifiers,
                           const QString& text) {
        QKeyEvent press(QEvent::KeyPress, key, modifiers, 0, 0, 0x2, text);
        QApplication::sendEvent(target, &press);
        QKeyEvent release(QEvent::KeyRelease, key, modifiers, 0, 0, 0x2, text);
        QApplication::sendEvent(target, &release);
    }

    // Takes a message in and lets the queued work run.
    void updateWith(const std::shared_ptr<ExtensionMessage>& message) {
        composer->update(message);
        QCoreApplication::processEvents();
    }

    QTemporaryDir dir;
    velmora::test::RecordingDesktop desktop;
    velmora::test::TempContainer container;
    std::shared_ptr<ExtensionContext> context;
    QList<ExtensionContext::Outcome> outcomes;
    QWidget window;
    std::unique_ptr<ExtensionComposerController> composer;
};

TEST_F(Composer, LaysOutOneTopAnchoredColumnThatFollowsTheWindowsWidth) {
    const auto expectAt = [](QWidget* w, int x, int y, int width, int height) {
        const QRect g = w->geometry();
        EXPECT_NEAR(g.x(), x, 1) << w->metaObject()->className();
        EXPECT_NEAR(g.y(), y, 1) << w->metaObject()->className();
        EXPECT_NEAR(g.width(), width, 2) << w->metaObject()->className();
        EXPECT_NEAR(g.height(), height, 1) << w->metaObject()->className();
    };
    for (const int width : {600, 800}) {
        SCOPED_TRACE(width);
        window.resize(width, 400);
        ASSERT_TRUE(QTest::qWaitFor([&] { return composer->view()->width() == width; }));
        const int right = width - 15;
        expectAt(composer->sendBtn(), right - 60, 10, 60, 20);
        expectAt(composer->cancelBtn(), right - 125, 10, 60, 20);
        QComboBox* popUp = composer->popUpview();
        // From the left margin up to Cancel, with the standard space before it.
        // Its label at the left margin, the pop-up just after it.
        EXPECT_EQ(composer->fromLabel()->x(), 15);
        EXPECT_EQ(popUp->x(), composer->fromLabel()->geometry().right() + 1 + 5);
        EXPECT_EQ(popUp->y(), 10);
        EXPECT_NEAR(popUp->geometry().right() + 1, right - 125 - 8, 1);

        int y = popUp->geometry().bottom() + 1 + 5;
        const int field = width - 30;
        const std::pair<QWidget*, int> column[] = {
            {composer->toField(), 18},
            {composer->subjectField(), 18},
            {composer->contentTextView(), 100},
            {composer->collectionScrollview(), 168},
        };
        for (int i = 0; i < 4; ++i) {
            expectAt(composer->horizontalSeparator(i + 1), 0, y, width, 1);
            y += 1 + 5;
            expectAt(column[i].first, 15, y, field, column[i].second);
            y += column[i].second + 5;
        }
        // 358 points plus the pop-up's own height.
        EXPECT_EQ(composer->collectionScrollview()->geometry().bottom() + 1, 358 + popUp->height());
    }
    // Separators are black at a tenth; the suggestion list lies above everything.
    QImage line(composer->horizontalSeparator(2)->size(), QImage::Format_ARGB32);
    line.fill(Qt::transparent);
    composer->horizontalSeparator(2)->render(&line, {}, {}, QWidget::DrawChildren);
    EXPECT_EQ(line.pixelColor(5, 0), QColor(0, 0, 0, 26));
    EXPECT_EQ(composer->view()->children().last(), composer->suggestionController()->view());
    EXPECT_EQ(composer->subjectField()->placeholderText(), QStringLiteral("Subject"));
    EXPECT_EQ(composer->toField()->placeholderString(), QStringLiteral("To:"));
}

TEST_F(Composer, FromMenuOffersEnabledAccountsWithTheirAliasesAllStandingForTheAccount) {
    QComboBox* popUp = composer->popUpview();
    ASSERT_EQ(popUp->count(), 4);
    const QStringList titles = {popUp->itemText(0), popUp->itemText(1), popUp->itemText(2),
                                popUp->itemText(3)};
    EXPECT_EQ(titles, QStringList({QStringLiteral("ada@x.test"), QStringLiteral("al1@x.test"),
                                   QStringLiteral("al2@x.test"), QStringLiteral("bob@y.test")}));
    const auto accountOf = [&](int row) {
        return popUp->itemData(row).value<std::shared_ptr<ExtensionAccount>>();
    };
    for (int row = 0; row < 3; ++row)
        EXPECT_EQ(accountOf(row), composer->accounts().at(0)) << row;
    EXPECT_EQ(accountOf(3), composer->accounts().at(3));
    EXPECT_EQ(popUp->currentIndex(), 0);
    EXPECT_EQ(composer->accounts().size(), 4); // every account, the skipped ones too

    // Sending from an alias sends from the account's own address; an empty subject goes out
    // as it is.
    popUp->setCurrentIndex(2);
    QTest::mouseClick(composer->sendBtn(), Qt::LeftButton);
    EXPECT_EQ(composer->message()->from(), QStringLiteral("ada@x.test"));
    EXPECT_EQ(composer->message()->account(), QStringLiteral("ada@x.test"));
    EXPECT_EQ(composer->message()->subject(), QStringLiteral(""));
    const QUrlQuery query = launchedQuery();
    EXPECT_EQ(query.queryItemValue(QStringLiteral("from")), QStringLiteral("ada@x.test"));
    ASSERT_EQ(outcomes.size(), 1);
    EXPECT_FALSE(outcomes[0].cancelled());
    EXPECT_EQ(outcomes[0].returnedItems.size(), 1);
}

class ComposerWithoutUsableAccounts : public Composer {
    QByteArray accountsJson() const override {
        return R"([{"mail": "old@x.test", "type": 3, "enabled": true},
                   {"mail": "off@x.test", "type": 1, "enabled": false}])";
    }
};

TEST_F(ComposerWithoutUsableAccounts, SaysThereAreNoAccountsAndSendsWithoutASender) {
    // One item that says why, which cannot be chosen and stands for no account.
    QComboBox* popUp = composer->popUpview();
    ASSERT_EQ(popUp->count(), 1);
    EXPECT_EQ(popUp->itemText(0), QStringLiteral("No accounts: add one in Velmora"));
    EXPECT_FALSE(popUp->model()->flags(popUp->model()->index(0, 0)) & Qt::ItemIsEnabled);
    EXPECT_FALSE(popUp->itemData(0).isValid());
    composer->send();
    EXPECT_TRUE(composer->message()->from().isNull());
    EXPECT_TRUE(composer->message()->account().isNull());
    EXPECT_EQ(outcomes.size(), 1);
    EXPECT_FALSE(launchedQuery().hasQueryItem(QStringLiteral("from")));
}

TEST_F(Composer, UpdatePrefersThePlainBodyAndShowsTheMessagesOwnAttachmentList) {
    auto shared = ExtensionMessage::init();
    shared->setSubject(QStringLiteral("Shared page"));
    shared->setPlainBody(QStringLiteral("plain text"));
    shared->setHtmlBody(QStringLiteral("<b>html text</b>"));
    shared->appendAttachment(QStringLiteral("/tmp/a.txt"));
    shared->appendAttachment(QUrl::fromLocalFile(QStringLiteral("/tmp/b.png")));

    // From another thread, as the intake calls it: nothing changes before the main queue runs.
    std::thread([&] { composer->update(shared); }).join();
    EXPECT_TRUE(composer->subjectField()->text().isEmpty());
    QCoreApplication::processEvents();

    EXPECT_EQ(composer->subjectField()->text(), QStringLiteral("Shared page"));
    EXPECT_EQ(composer->contentTextView()->toPlainText(), QStringLiteral("plain text"));
    EXPECT_EQ(composer->message()->attachments().get(), shared->attachments().get());
    EXPECT_EQ(composer->attachmentController()->rowCount(), 2);
    EXPECT_EQ(composer->collectionView()->count(), 2);

    // A second message with no subject keeps the subject shown and adds its attachments.
    auto second = ExtensionMessage::init();
    second->appendAttachment(QStringLiteral("/tmp/c.pdf"));
    updateWith(second);
    EXPECT_EQ(composer->subjectField()->text(), QStringLiteral("Shared page"));
    EXPECT_EQ(composer->message()->attachments().get(), second->attachments().get());
    EXPECT_EQ(composer->attachmentController()->rowCount(), 3);
    EXPECT_EQ(composer->contentTextView()->toPlainText(), QStringLiteral("plain text"));

    // A composer not shown yet builds its view to take the message in.
    ExtensionComposerController unshown(QRect(0, 0, 600, 400), context);
    unshown.update(shared);
    QCoreApplication::processEvents();
    ASSERT_TRUE(unshown.isViewLoaded());
    EXPECT_EQ(unshown.subjectField()->text(), QStringLiteral("Shared page"));
}

TEST_F(Composer, UpdateWithOnlyHtmlShowsItFollowedByOnePlainSpaceAndLoadsNothing) {
    // An image file that must not be read: the body would then hold its picture.
    const QString image =
        velmora::test::writeImage(dir.filePath(QStringLiteral("pic.png")), QSize(40, 40), Qt::red);
    auto shared = ExtensionMessage::init();
    shared->setHtmlBody(QStringLiteral("<p>Read <a href=\"https://example.test/\">this</a></p>"
                                       "<img src=\"%1\">")
                            .arg(QUrl::fromLocalFile(image).toString()));
    updateWith(shared);

    QTextDocument* body = composer->contentTextView()->document();
    // The link and the image are there, then one space.
    EXPECT_TRUE(body->toPlainText().startsWith(QStringLiteral("Read this")));
    EXPECT_TRUE(body->toPlainText().endsWith(QStringLiteral("\uFFFC ")));
    const QVariant loaded =
        body->resource(QTextDocument::ImageResource, QUrl::fromLocalFile(image));
    EXPECT_TRUE(loaded.value<QImage>().isNull());
    QTextCursor last(body);
    last.movePosition(QTextCursor::End);
    EXPECT_FALSE(last.charFormat().isAnchor());
    EXPECT_NE(last.charFormat().foreground().color(), QColor(Qt::red));

    // Sending carries both bodies, the HTML one written from what the body shows.
    composer->send();
    EXPECT_EQ(composer->message()->plainBody(), body->toPlainText());
    EXPECT_TRUE(
        composer->message()->htmlBody().contains(QStringLiteral("href=\"https://example.test/\"")));
}

// Keys that must not send, in the body and from the subject; then each way of sending, one
// per composer, as a send ends the request.
TEST_F(Composer, ReturnMakesANewLineAndCommandReturnSendsOnlyWithCommandAloneHeld) {
    focusBody();
    QWidget* body = composer->contentTextView();
    // Caps Lock counts as a modifier of its own.
    pressWithCapsLock(body, Qt::Key_Return, Qt::ControlModifier, QStringLiteral("\r"));
    QTest::keyClick(body, Qt::Key_Return, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(body, Qt::Key_Return, Qt::ControlModifier | Qt::AltModifier);
    QTest::keyClicks(body, QStringLiteral("one"));
    QTest::keyClick(body, Qt::Key_Return);
    QTest::keyClicks(body, QStringLiteral("two"));
    EXPECT_EQ(composer->contentTextView()->toPlainText(), QStringLiteral("one\ntwo"));

    // Tab goes from To through the subject to the body; Shift-Tab in the body goes back to the
    // subject with its text selected.
    composer->subjectField()->setText(QStringLiteral("Topic"));
    composer->toField()->setFocus();
    ASSERT_TRUE(QTest::qWaitFor([&] { return composer->toField()->hasFocus(); }));
    QTest::keyClick(composer->toField(), Qt::Key_Tab);
    EXPECT_TRUE(composer->subjectField()->hasFocus());
    QTest::keyClick(composer->subjectField(), Qt::Key_Tab);
    EXPECT_TRUE(composer->contentTextView()->hasFocus());
    QTest::keyClick(body, Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return composer->subjectField()->hasFocus(); }));
    EXPECT_EQ(composer->subjectField()->selectedText(), QStringLiteral("Topic"));
    EXPECT_TRUE(outcomes.isEmpty());

    focusBody();
    QTest::keyClick(body, Qt::Key_Return, Qt::ControlModifier);
    ASSERT_EQ(outcomes.size(), 1);
    EXPECT_FALSE(outcomes[0].cancelled());
    const QUrlQuery query = launchedQuery();
    EXPECT_EQ(query.queryItemValue(QStringLiteral("from")), QStringLiteral("ada@x.test"));
    EXPECT_EQ(query.queryItemValue(QStringLiteral("subject")), QStringLiteral("Topic"));
    EXPECT_EQ(composer->message()->plainBody(), QStringLiteral("one\ntwo"));
}

TEST_F(Composer, CommandShiftDSendsWhateverElseIsHeld) {
    focusBody();
    pressWithCapsLock(composer->contentTextView(), Qt::Key_D,
                      Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier,
                      QStringLiteral("\x04"));
    ASSERT_EQ(outcomes.size(), 1);
    EXPECT_FALSE(outcomes[0].cancelled());
    EXPECT_EQ(launchedUrls().size(), 1);
}

TEST_F(Composer, ReturnInTheSubjectSends) {
    composer->subjectField()->setText(QStringLiteral("Topic"));
    QTest::keyClick(composer->subjectField(), Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([&] { return outcomes.size() == 1; }));
    EXPECT_EQ(launchedQuery().queryItemValue(QStringLiteral("subject")), QStringLiteral("Topic"));
}

// Cancel, or closing the window before sending, ends the request once, as cancelled, and
// launches nothing.
TEST_F(Composer, CancelOrClosingEndsTheRequestAsCancelledAndLaunchesNothing) {
    QTest::mouseClick(composer->cancelBtn(), Qt::LeftButton);
    composer->windowWillClose();
    ASSERT_EQ(outcomes.size(), 1);
    ASSERT_TRUE(outcomes[0].cancelled());
    EXPECT_EQ(outcomes[0].error->domain, QStringLiteral("NSCocoaErrorDomain"));
    EXPECT_EQ(outcomes[0].error->code, 3072);

    const auto other = std::make_shared<ExtensionContext>(
        ExtensionContext::Items{},
        [this](const ExtensionContext::Outcome& o) { outcomes.append(o); });
    ExtensionComposerController closed(QRect(0, 0, 600, 400), other);
    closed.windowWillClose();
    ASSERT_EQ(outcomes.size(), 2);
    EXPECT_TRUE(outcomes[1].cancelled());
    EXPECT_TRUE(launchedUrls(1500).isEmpty());
}

TEST_F(Composer, RecipientsFollowTheTokensWithGroupsExpandedAndDuplicatesKept) {
    const auto a = address("a@x.test"), b = address("b@x.test"), c = address("c@x.test");
    auto group = std::make_shared<ExtensionGroup>();
    group->setName(QStringLiteral("Team"));
    group->setAddresses({a, b, c});
    const auto before = composer->message()->to();

    composer->toField()->setObjectValue({group, b, QStringLiteral("typed text")});
    composer->manageAddresses();
    // Queued: the list changes only once the main queue has run.
    EXPECT_EQ(composer->message()->to(), before);
    QCoreApplication::processEvents();
    ASSERT_TRUE(composer->message()->to());
    EXPECT_EQ(*composer->message()->to(), AddressList({a, b, c, b}));

    composer->toField()->setObjectValue({QStringLiteral("only text")});
    composer->manageAddresses();
    QCoreApplication::processEvents();
    EXPECT_TRUE(composer->message()->to()->isEmpty());
}

} // namespace
