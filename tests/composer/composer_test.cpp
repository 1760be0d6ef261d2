// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "ComposerWindow.h"
#include "RecordingDesktop.h"
#include "bridge/ExtensionUtilities.h"
#include "composer/ExtensionCopyRecipientsView.h"
#include "composer/HandOff.h"
#include "composer/StagingStatusView.h"
#include "directory/ExtensionAccount.h"
#include "directory/ExtensionAddress.h"
#include "message/ExtensionMessage.h"
#include "recipients/ExtensionTokenField.h"
#include "views/FlippedView.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QTest>
#include <QToolButton>

#include <thread>

using namespace velmora;
using Composer = velmora::test::ComposerWindow;
using Field = ExtensionCopyRecipientsView::Field;

namespace {

std::shared_ptr<ExtensionAddress> address(const char* mail) {
    auto a = std::make_shared<ExtensionAddress>();
    a->setMail(QString::fromLatin1(mail));
    return a;
}

TEST_F(Composer, LaysOutOneTopAnchoredColumnThatFollowsTheWindowsWidth) {
    const auto expectAt = [](QWidget* w, int x, int y, int width, int height) {
        const QRect g = w->geometry();
        EXPECT_TRUE(std::abs(g.x() - x) <= 1 && std::abs(g.y() - y) <= 1 &&
                    std::abs(g.width() - width) <= 2 && std::abs(g.height() - height) <= 1)
            << w->metaObject()->className() << " at " << g.x() << "," << g.y() << " " << g.width()
            << "x" << g.height();
    };
    for (const int width : {600, 800}) {
        SCOPED_TRACE(width);
        window.resize(width, 400);
        ASSERT_TRUE(QTest::qWaitFor([&] { return composer->view()->width() == width; }));
        const int right = width - 15;
        expectAt(composer->sendBtn(), right - 60, 10, 60, 20);
        expectAt(composer->cancelBtn(), right - 125, 10, 60, 20);
        // The label at the left margin, the pop-up after it up to Cancel, less the standard space.
        QComboBox* popUp = composer->popUpview();
        EXPECT_EQ(composer->fromLabel()->x(), 15);
        EXPECT_EQ(popUp->x(), composer->fromLabel()->geometry().right() + 1 + 5);
        EXPECT_EQ(popUp->y(), 10);
        EXPECT_NEAR(popUp->geometry().right() + 1, right - 125 - 8, 1);
        int y = popUp->geometry().bottom() + 1 + 5;
        const std::pair<QWidget*, int> column[] = {{composer->toField(), 18},
                                                   {composer->subjectField(), 18},
                                                   {composer->contentTextView(), 100},
                                                   {composer->collectionScrollview(), 168}};
        for (int i = 0; i < 4; ++i) {
            expectAt(composer->horizontalSeparator(i + 1), 0, y, width, 1);
            expectAt(column[i].first, 15, y + 6, width - 30, column[i].second);
            y += 6 + column[i].second + 5;
        }
    }
    EXPECT_EQ(composer->view()->children().last(), composer->suggestionController()->view());
}

TEST_F(Composer, FromMenuOffersEnabledAccountsWithTheirAliasesAllStandingForTheAccount) {
    QComboBox* popUp = composer->popUpview();
    QStringList titles;
    QList<std::shared_ptr<ExtensionAccount>> represented;
    for (int row = 0; row < popUp->count(); ++row) {
        titles.append(popUp->itemText(row));
        represented.append(popUp->itemData(row).value<std::shared_ptr<ExtensionAccount>>());
    }
    EXPECT_EQ(titles, (QStringList{"ada@x.test", "al1@x.test", "al2@x.test", "bob@y.test"}));
    const auto all = composer->accounts(); // every account, the skipped ones too
    ASSERT_EQ(all.size(), 4);
    EXPECT_EQ(represented, (QList{all[0], all[0], all[0], all[3]}));
    EXPECT_EQ(popUp->currentIndex(), 0);

    // To: a group stands for all its members, one listed again stays twice, typed text goes.
    const auto a = address("a@x.test"), b = address("b@x.test");
    auto group = std::make_shared<ExtensionGroup>();
    group->setAddresses({a, b});
    composer->toField()->setObjectValue({group, b, QStringLiteral("typed text")});
    composer->manageAddresses();
    QCoreApplication::processEvents();

    // An alias sends from its account's own address; an empty subject goes out empty, not missing.
    popUp->setCurrentIndex(2);
    QTest::mouseClick(composer->sendBtn(), Qt::LeftButton);
    EXPECT_EQ(composer->message()->account(), QStringLiteral("ada@x.test"));
    EXPECT_EQ(sentItem("from"), QStringLiteral("ada@x.test"));
    EXPECT_EQ(sentItem("to"), QStringLiteral("a@x.test;b@x.test;b@x.test;"));
    EXPECT_FALSE(composer->message()->subject().isNull());
    ASSERT_EQ(outcomes.size(), 1);
    EXPECT_FALSE(outcomes[0].cancelled());
    EXPECT_EQ(outcomes[0].returnedItems.size(), 1);
}

TEST_F(Composer, WithoutUsableAccountsSaysSoAndSendsWithoutASender) {
    writeAccounts(R"([{"mail": "old@x.test", "type": 3, "enabled": true},
                      {"mail": "off@x.test", "type": 1, "enabled": false}])");
    open();
    // One item that says why, which cannot be chosen and stands for no account.
    QComboBox* popUp = composer->popUpview();
    ASSERT_EQ(popUp->count(), 1);
    EXPECT_EQ(popUp->itemText(0), QStringLiteral("No accounts: add one in Velmora"));
    EXPECT_FALSE(popUp->model()->flags(popUp->model()->index(0, 0)) & Qt::ItemIsEnabled);
    EXPECT_FALSE(popUp->itemData(0).isValid());
    composer->send();
    EXPECT_TRUE(composer->message()->from().isNull());
    EXPECT_TRUE(composer->message()->account().isNull());
    EXPECT_TRUE(sentItem("from").isNull());
}

TEST_F(Composer, UpdatePrefersThePlainBodyAndShowsTheMessagesOwnAttachmentList) {
    auto shared = ExtensionMessage::init();
    shared->setSubject(QStringLiteral("Shared page"));
    shared->setPlainBody(QStringLiteral("plain text"));
    shared->setHtmlBody(QStringLiteral("<b>html text</b>"));
    shared->appendAttachment(QStringLiteral("/tmp/a.txt"));
    // From another thread, as the intake calls it: nothing changes before the main queue runs.
    std::thread([&] { composer->update(shared); }).join();
    EXPECT_TRUE(composer->subjectField()->text().isEmpty());
    QCoreApplication::processEvents();
    EXPECT_EQ(composer->contentTextView()->toPlainText(), QStringLiteral("plain text"));
    EXPECT_EQ(composer->message()->attachments().get(), shared->attachments().get());

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
        velmora::test::writeImage(desktop.file("pic.png"), QSize(40, 40), Qt::red);
    auto shared = ExtensionMessage::init();
    shared->setHtmlBody(QStringLiteral("<p>Read <a href=\"https://example.test/\">this</a></p>"
                                       "<img src=\"%1\">")
                            .arg(QUrl::fromLocalFile(image).toString()));
    composer->update(shared);
    QCoreApplication::processEvents();

    QTextDocument* body = composer->contentTextView()->document();
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

// A composer per row, as a send ends the request.
TEST_F(Composer, SendKeysInTheBodyAndTheSubject) {
    const Qt::KeyboardModifiers ctrl = Qt::ControlModifier;
    const struct {
        const char* name;
        bool inSubject;
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        bool capsLock; // Lock in the native modifier state, as X11 gives it
        bool sends;
        const char* body;
    } rows[] = {
        {"return-is-a-new-line", false, Qt::Key_Return, {}, false, false, "\n"},
        {"command-return-sends", false, Qt::Key_Return, ctrl, false, true, ""},
        {"caps-lock-is-a-modifier-of-its-own", false, Qt::Key_Return, ctrl, true, false, ""},
        {"command-shift-return", false, Qt::Key_Return, ctrl | Qt::ShiftModifier, false, false, ""},
        {"command-shift-d-with-anything-else-held", false, Qt::Key_D,
         ctrl | Qt::ShiftModifier | Qt::AltModifier, true, true, ""},
        {"return-in-the-subject-sends", true, Qt::Key_Return, {}, false, true, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ASSERT_NO_FATAL_FAILURE(open());
        outcomes.clear();
        launches.clear();
        QWidget* target = row.inSubject ? static_cast<QWidget*>(composer->subjectField())
                                        : composer->contentTextView();
        target->setFocus();
        ASSERT_TRUE(QTest::qWaitFor([&] { return target->hasFocus(); }));
        const QString text = row.key == Qt::Key_D ? QStringLiteral("\x04") : QStringLiteral("\r");
        const quint32 native = row.capsLock ? 0x2 : 0;
        QKeyEvent press(QEvent::KeyPress, row.key, row.modifiers, 0, 0, native, text);
        QApplication::sendEvent(target, &press);
        QKeyEvent release(QEvent::KeyRelease, row.key, row.modifiers, 0, 0, native, text);
        QApplication::sendEvent(target, &release);
        EXPECT_EQ(launches.size(), row.sends ? 1 : 0);
        EXPECT_EQ(outcomes.size(), row.sends ? 1 : 0);
        EXPECT_EQ(composer->contentTextView()->toPlainText(), QString::fromLatin1(row.body));
    }
}

// The Cc/Bcc row lies between To and the subject; each recipient has its remove button.
TEST_F(Composer, CopyRecipientsShownOnlyWithContentEveryOneVisibleAndSentAsShown) {
    ExtensionCopyRecipientsView* row = composer->copyRecipientsView();
    QWidget* body = composer->contentTextView();
    const int usualBodyHeight = body->height();
    EXPECT_FALSE(row->isVisible());
    for (const char* mail : {"first.long.address@example.org", "second.long.address@example.org",
                             "third.long.address@example.org", "fourth.long.address@example.org"})
        row->addRecipient(Field::Cc, address(mail));
    row->addRecipient(Field::Bcc, address("hidden@example.org"));
    row->setNotice(QStringLiteral("Not attached: /etc/passwd"));
    QCoreApplication::processEvents();
    ASSERT_TRUE(row->isVisible());
    EXPECT_GT(row->geometry().top(), composer->toField()->geometry().bottom());
    EXPECT_LT(row->geometry().bottom(), composer->subjectField()->geometry().top());
    EXPECT_LT(body->height(), usualBodyHeight);
    // Four long addresses do not fit one line: the row wraps, and every label lies whole inside it.
    QStringList shown;
    for (const QLabel* label : row->findChildren<QLabel*>())
        if (label->isVisible() && row->rect().contains(label->geometry()) &&
            label->width() >= label->sizeHint().width())
            shown.append(label->text());
    for (const char* text :
         {"Cc:", "Bcc:", "first.long.address@example.org", "second.long.address@example.org",
          "third.long.address@example.org", "fourth.long.address@example.org", "hidden@example.org",
          "Not attached: /etc/passwd"})
        EXPECT_TRUE(shown.contains(QString::fromLatin1(text))) << text;

    // Its remove button takes one recipient out of what is sent.
    QToolButton* remove = nullptr;
    for (QToolButton* button : row->findChildren<QToolButton*>())
        if (button->isVisible() &&
            button->accessibleName().endsWith(u"second.long.address@example.org"))
            remove = button;
    ASSERT_TRUE(remove);
    QTest::mouseClick(remove, Qt::LeftButton);
    QCoreApplication::processEvents();
    composer->sendBtn()->click();
    EXPECT_EQ(sentItem("cc"), QStringLiteral("first.long.address@example.org;"
                                             "third.long.address@example.org;"
                                             "fourth.long.address@example.org;"));
    EXPECT_EQ(sentItem("bcc"), QStringLiteral("hidden@example.org;"));

    // Emptied, the row goes and the body has its room back.
    while (!row->recipients(Field::Cc).isEmpty())
        row->removeRecipient(Field::Cc, 0);
    row->removeRecipient(Field::Bcc, 0);
    row->setNotice(QString());
    QCoreApplication::processEvents();
    EXPECT_FALSE(row->isVisible());
    EXPECT_EQ(body->height(), usualBodyHeight);
}

// An item still on its way, one left out, and a main application missing until the second alert.
TEST_F(Composer, SendWaitsForStagingAndAFailedLaunchLosesNothing) {
    const QString mainApplication = QStringLiteral("it.zemlo.velmora");
    velmora::test::RecordingDesktop recorder;
    composer->setCommandLauncher(&ExtensionUtilities::LaunchCommands);
    const std::shared_ptr<StagingStatus> status = context->stagingStatus();
    const quint64 big = status->begin();
    status->progress(big, QStringLiteral("/shared/big.bin"), 12 << 20, 340 << 20);
    status->leaveOut(QStringLiteral("/shared/f/pipe"),
                     QStringLiteral("cannot copy \"/shared/f/pipe\": not a file or folder"));
    StagingStatusView* cards = composer->handOff()->statusView();
    ASSERT_TRUE(QTest::qWaitFor([&] { return cards->cardCount() == 2; }));
    const QStringList texts = cards->cardTexts();
    EXPECT_TRUE(texts[0].startsWith(u"big.bin\n") && texts[1].startsWith(u"pipe\n") &&
                texts[1].contains(u"not a file or folder"))
        << texts.join(u'|').toStdString();
    // A folder's size is not known while it is copied: its card counts what is done.
    EXPECT_EQ(StagingStatusView::progressText(3 << 20, -1),
              QLocale().formattedDataSize(3 << 20) + QStringLiteral(" copied"));

    composer->subjectField()->setText(QStringLiteral("Minutes"));
    QPushButton* send = composer->sendBtn();
    send->click();
    EXPECT_EQ(send->text(), QStringLiteral("Waiting for 1 file..."));
    send->click(); // a second press stops the wait
    EXPECT_EQ(send->text(), QStringLiteral("Send"));
    send->click();

    // The first alert is cancelled, the second answered with Try Again once Velmora is there.
    QStringList alerts;
    QObject::connect(composer->handOff(), &HandOff::alertShown, [&](QMessageBox* alert) {
        alerts.append(alert->informativeText());
        EXPECT_TRUE(outcomes.isEmpty());
        EXPECT_EQ(composer->subjectField()->text(), QStringLiteral("Minutes"));
        QAbstractButton* cancel = nullptr;
        for (QAbstractButton* button : alert->buttons())
            cancel = button->text() == QLatin1String("Cancel") ? button : cancel;
        QAbstractButton* tryAgain = alert->defaultButton();
        ASSERT_TRUE(cancel && tryAgain && tryAgain->text() == QLatin1String("Try Again"));
        if (alerts.size() == 2)
            recorder.addApplication(mainApplication);
        (alerts.size() == 1 ? cancel : tryAgain)->click();
    });
    status->finish(big); // the item lands: the waiting Send goes on, and its launch fails
    ASSERT_TRUE(QTest::qWaitFor([&] { return alerts.size() == 1; }));
    EXPECT_TRUE(alerts[0].contains(QStringLiteral("it.zemlo.velmora.desktop")))
        << alerts[0].toStdString();
    EXPECT_TRUE(outcomes.isEmpty()) << "Cancel on the alert goes back to the composer";
    EXPECT_EQ(send->text(), QStringLiteral("Send"));

    send->click();
    ASSERT_TRUE(QTest::qWaitFor([&] { return outcomes.size() == 1; }));
    EXPECT_EQ(alerts.size(), 2);
    EXPECT_FALSE(outcomes[0].cancelled());
    launches = recorder.takeArguments(mainApplication);
    EXPECT_EQ(sentItem("subject"), QStringLiteral("Minutes"));
}

} // namespace
