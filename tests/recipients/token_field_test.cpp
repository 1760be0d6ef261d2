// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "platform/FileCoordinator.h"
#include "recipients/ExtensionSuggestionCellView.h"
#include "recipients/ExtensionSuggestionController.h"
#include "recipients/ExtensionSuggestionTableView.h"
#include "recipients/ExtensionTokenField.h"
#include "recipients/SuggestionHost.h"
#include "recipients/TableViewZemlo.h"
#include "views/FlippedView.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>

#include <atomic>
#include <sys/file.h>
#include <thread>

using namespace velmora;

namespace {

// The composer's stand-in: counts the recipient notifications and the keys that pass the field.
class RecipientsHost : public QWidget, public SuggestionHost {
public:
    RecipientsHost() {
        resize(600, 400);
        field->setGeometry(20, 40, 560, 26);
        subject->setGeometry(20, 80, 560, 26);
        controller->view()->setParent(this);
        field->setSuggestioncontroller(controller);
    }
    void manageAddresses() override { ++manageCalls; }
    bool waitForRows(int rows) {
        return QTest::qWaitFor([&] { return rowCount() == rows; }, 5000);
    }
    int rowCount() const { return controller->table()->model()->rowCount(); }
    QStringList rowTexts() const {
        QStringList out;
        for (int row = 0; row < rowCount(); ++row)
            out.append(controller->table()->model()->index(row, 0).data().toString());
        return out;
    }
    // "[pretty]" for a committed token, the text for typed text.
    QStringList tokens() const {
        QStringList out;
        for (const Token& t : field->objectValue())
            out.append(isCommitted(t) ? u'[' + displayString(t) + u']' : textOf(t));
        return out;
    }

    ExtensionTokenField* field = new ExtensionTokenField(this);
    QLineEdit* subject = new QLineEdit(this);
    ExtensionSuggestionController* controller =
        new ExtensionSuggestionController(QRect(0, 0, 600, 400), this);
    int manageCalls = 0;
    QList<int> keysSeen;

protected:
    void keyPressEvent(QKeyEvent* event) override { keysSeen.append(event->key()); }
};

// "ann" matches Annie Hall (rank 9), Ann Smith (3), hannah@w.test (1, by mail); "bulk": 30.
class RecipientsTest : public ::testing::Test {
protected:
    void SetUp() override {
        QByteArray json = R"([
            {"mail": "ann.smith@x.test", "firstName": "Ann", "lastName": "Smith", "rank": 3},
            {"mail": "annie@y.test", "firstName": "Annie", "lastName": "Hall", "rank": 9},
            {"mail": "hannah@w.test", "rank": 1}, {"mail": "known@x.test"})";
        for (int i = 0; i < 30; ++i)
            json += QStringLiteral(R"(, {"mail": "bulk%1@list.test", "firstName": "Bulk"})")
                        .arg(i, 2, 10, QLatin1Char('0'))
                        .toUtf8();
        if (!test::writePlist(container.dataFolder() + QStringLiteral("/Contacts/Addresses.plist"),
                              json + "]", false))
            GTEST_SKIP() << "python3 is needed to write property lists";
        showHost();
    }
    void showHost() {
        host = std::make_unique<RecipientsHost>();
        host->show();
        host->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(host.get()));
        host->field->setFocus();
        ASSERT_TRUE(QTest::qWaitFor([&] { return host->field->hasFocus(); }, 5000));
    }
    void typeAndWait(const QString& text, int rows) {
        QTest::keyClicks(host->field, text);
        ASSERT_TRUE(host->waitForRows(rows)) << "rows: " << host->rowCount();
    }

    test::TempContainer container;
    std::unique_ptr<RecipientsHost> host;
};

const QString kAnn = QStringLiteral("Ann Smith <ann.smith@x.test>");

TEST_F(RecipientsTest, TypingShowsRankedMatchesThatTheArrowsReturnAndTabTake) {
    typeAndWait(QStringLiteral("ANN"), 3);
    EXPECT_EQ(host->rowTexts(),
              (QStringList{QStringLiteral("Annie Hall <annie@y.test>(9)"),
                           kAnn + QStringLiteral("(3)"), QStringLiteral("<hannah@w.test>(1)")}));
    // A panel of the window, 5 below the field, as wide as it, 200 high, above the subject.
    FlippedView* popup = host->controller->view();
    EXPECT_EQ(popup->geometry(), QRect(20, 40 + 26 + 5, 560, 200));
    EXPECT_TRUE(popup->isAncestorOf(host->childAt(QPoint(100, 90))));

    QTableView* table = host->controller->table();
    QTest::keyClick(host->field, Qt::Key_Up);
    EXPECT_EQ(TableViewZemlo::maxSelectedRow(table), 0);
    for (int i = 0; i < 4; ++i)
        QTest::keyClick(host->field, Qt::Key_Down);
    EXPECT_EQ(TableViewZemlo::maxSelectedRow(table), 2);
    QTest::keyClick(host->field, Qt::Key_Up);
    // The arrows steer the list; the caret stays where it was.
    EXPECT_EQ(host->field->fieldEditor().caret(), 3);

    QTest::keyClick(host->field, Qt::Key_Return);
    EXPECT_EQ(host->tokens(), QStringList{u'[' + kAnn + u']'});
    const auto taken = std::get<std::shared_ptr<ExtensionAddress>>(host->field->objectValue()[0]);
    EXPECT_EQ(taken, host->controller->addresses()[0]); // the contact itself, not a copy
    EXPECT_FALSE(popup->isVisible());
    EXPECT_EQ(host->manageCalls, 1);
    EXPECT_TRUE(host->keysSeen.isEmpty());

    // Tab takes the selection too, and moves the focus on.
    typeAndWait(QStringLiteral("ann"), 3);
    ASSERT_TRUE(QTest::qWaitFor([&] { return host->controller->visible(); }, 5000));
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(host->field, Qt::Key_Up);
    QTest::keyClick(host->field, Qt::Key_Down);
    QTest::keyClick(host->field, Qt::Key_Tab);
    EXPECT_EQ(host->tokens(), (QStringList{u'[' + kAnn + u']', u'[' + kAnn + u']'}));
    EXPECT_TRUE(host->subject->hasFocus());
    EXPECT_FALSE(host->controller->visible());
}

// Return is consumed even without a suggestion; a Backspace filters again only later.
TEST_F(RecipientsTest, EscapeReturnAndBackspaceKeepTheListInStepWithTheText) {
    typeAndWait(QStringLiteral("ann"), 3);
    QTest::keyClick(host->field, Qt::Key_Escape);
    EXPECT_FALSE(host->controller->view()->isVisible());
    EXPECT_EQ(host->manageCalls, 0);
    // A key bound to no command is left to the window, after telling the composer.
    QTest::keyClick(host->field, Qt::Key_F5);
    EXPECT_EQ(host->keysSeen, QList<int>{Qt::Key_F5});
    EXPECT_EQ(host->manageCalls, 1);

    QTest::keyClicks(host->field, QStringLiteral("zzz"));
    QTest::keyClick(host->field, Qt::Key_Return);
    EXPECT_EQ(host->tokens(), QStringList{QStringLiteral("annzzz")});
    EXPECT_EQ(host->manageCalls, 2);
    EXPECT_EQ(host->keysSeen, QList<int>{Qt::Key_F5});
    ASSERT_TRUE(host->waitForRows(0));
    EXPECT_FALSE(host->controller->visible());
    EXPECT_FALSE(host->controller->view()->isVisible());

    host->field->move(20, 100);
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(host->field, Qt::Key_Backspace);
    typeAndWait(QStringLiteral("i"), 1);
    EXPECT_EQ(host->controller->view()->geometry(), QRect(20, 131, 560, 200));

    const int calls = host->manageCalls;
    QTest::keyClick(host->field, Qt::Key_Backspace);
    EXPECT_EQ(host->tokens(), QStringList{QStringLiteral("ann")});
    EXPECT_EQ(host->manageCalls, calls + 1);
    // Not at once: the list still shows what "anni" found.
    EXPECT_EQ(host->controller->GetArray().size(), 1);
    EXPECT_TRUE(host->waitForRows(3));
}

TEST_F(RecipientsTest, PasteCommaAndLeavingTheFieldCommitAddressesAndCopyCopiesTheirText) {
    QGuiApplication::clipboard()->setText(QStringLiteral("a@x.test;b@y.test"));
    QTest::keyClick(host->field, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(host->tokens(),
              (QStringList{QStringLiteral("[<a@x.test>]"), QStringLiteral("[<b@y.test>]")}));
    EXPECT_EQ(host->manageCalls, 1);
    QTest::keyClick(host->field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(host->field, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("<a@x.test>, <b@y.test>"));

    // A known contact's exact mail is no new address; the same mail in another case is.
    host->field->setObjectValue({});
    QTest::keyClicks(host->field, QStringLiteral("known@x.test,"));
    EXPECT_TRUE(host->tokens().isEmpty());
    QTest::keyClicks(host->field, QStringLiteral("Known@x.test,"));
    // A comma with nothing typed before it commits nothing.
    QTest::keyClicks(host->field, QStringLiteral(","));
    QTest::keyClicks(host->field, QStringLiteral("late@x.test"));
    host->subject->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(host->tokens(),
              (QStringList{QStringLiteral("[<Known@x.test>]"), QStringLiteral("[<late@x.test>]")}));
}

// A double click turns a token back into text in its display form.
TEST_F(RecipientsTest, TheTokenUnderTheCaretIsTheOneReplacedOrEditedAsText) {
    typeAndWait(QStringLiteral("annie"), 1);
    QTest::keyClick(host->field, Qt::Key_Return);
    QTest::keyClicks(host->field, QStringLiteral("jo"));
    QTest::keyClick(host->field, Qt::Key_Left);
    EXPECT_EQ(host->field->tokenIndex(host->field->fieldEditor()), 1);
    QTest::keyClick(host->field, Qt::Key_Left);
    EXPECT_EQ(host->field->tokenIndex(host->field->fieldEditor()), 0);
    host->controller->populateSuggestion(host->controller->objectsForString(QStringLiteral("ann")));
    ASSERT_TRUE(host->waitForRows(3));
    QTest::keyClick(host->field, Qt::Key_Down);
    QTest::keyClick(host->field, Qt::Key_Return);
    EXPECT_EQ(host->tokens(), (QStringList{u'[' + kAnn + u']', QStringLiteral("jo")}));

    QTest::mouseDClick(host->field, Qt::LeftButton, {}, QPoint(30, 13));
    EXPECT_EQ(host->tokens(), (QStringList{kAnn + QStringLiteral("jo")}));
}

QPoint rowCenter(QTableView* table, int row) {
    return table->visualRect(table->model()->index(row, 0)).center();
}

TEST_F(RecipientsTest, ThirtyRowsScrollOnlyWhenTheSelectionLeavesTheViewFromAnyThread) {
    typeAndWait(QStringLiteral("bulk"), 30);
    QTableView* table = host->controller->table();
    // No rank, nothing glued to the text; a group shows its name and member count.
    EXPECT_EQ(host->rowTexts().first(), QStringLiteral("Bulk <bulk00@list.test>"));
    const auto team = std::make_shared<ExtensionGroup>();
    team->setName(QStringLiteral("Team"));
    EXPECT_EQ(ExtensionSuggestionCellView::textForObject(team), QStringLiteral("Team"));
    EXPECT_EQ(table->rowHeight(0), 22);
    // 200 points show nine whole rows and part of the tenth.
    EXPECT_EQ(TableViewZemlo::visibleRows(table), (TableViewZemlo::RowRange{0, 10}));
    for (int i = 0; i < 8; ++i)
        QTest::keyClick(host->field, Qt::Key_Down);
    EXPECT_EQ(TableViewZemlo::maxSelectedRow(table), 8);
    EXPECT_EQ(table->verticalScrollBar()->value(), 0);
    QTest::keyClick(host->field, Qt::Key_Down);
    EXPECT_GT(table->verticalScrollBar()->value(), 0);
    for (int i = 0; i < 40; ++i)
        QTest::keyClick(host->field, Qt::Key_Down);
    EXPECT_EQ(TableViewZemlo::maxSelectedRow(table), 29);
    const TableViewZemlo::RowRange last = TableViewZemlo::visibleRows(table);
    EXPECT_EQ(last.location + last.length, 30);

    // Hidden first: a repaint would hand work to Qt's threads, which ThreadSanitizer cannot see.
    host->hide();
    std::atomic<int> seen = -2;
    std::atomic<bool> done = false;
    std::thread worker([&] {
        TableViewZemlo::SelectRow(table, 12, true, false);
        seen = TableViewZemlo::maxSelectedRow(table);
        TableViewZemlo::SelectRow(table, -5); // clamped to the first row
        done = true;
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return done.load(); }, 5000));
    worker.join();
    EXPECT_EQ(seen, 12);
    EXPECT_EQ(TableViewZemlo::minSelectedRow(table), 0);
    TableViewZemlo::SelectRow(table, 99); // clamped to the last row
    EXPECT_EQ(TableViewZemlo::maxSelectedRow(table), 29);
}

TEST_F(RecipientsTest, ASingleClickTakesARowAndADoubleClickTakesItOnce) {
    typeAndWait(QStringLiteral("ann"), 3);
    QTableView* table = host->controller->table();
    // Below the last row: nothing taken, the selection stays.
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, QPoint(50, 150));
    EXPECT_EQ(host->manageCalls, 0);
    EXPECT_EQ(TableViewZemlo::maxSelectedRow(table), 0);
    EXPECT_TRUE(host->controller->visible());

    // Through the window, as the window system delivers a double click.
    QTest::mouseDClick(host->windowHandle(), Qt::LeftButton, {},
                       table->viewport()->mapTo(host.get(), rowCenter(table, 1)));
    EXPECT_EQ(host->tokens(), QStringList{u'[' + kAnn + u']'});
    EXPECT_EQ(host->manageCalls, 1);
    EXPECT_FALSE(host->controller->visible());

    // The list takes no focus: typing goes on in the field.
    host->field->setFocus();
    QTest::keyClicks(host->field, QStringLiteral("hann"));
    ASSERT_TRUE(host->waitForRows(1));
    QTest::mouseClick(host->windowHandle(), Qt::LeftButton, {},
                      table->viewport()->mapTo(host.get(), rowCenter(table, 0)));
    EXPECT_TRUE(host->field->hasFocus());
    EXPECT_EQ(host->tokens(),
              (QStringList{u'[' + kAnn + u']', QStringLiteral("[<hannah@w.test>]")}));
    EXPECT_EQ(host->manageCalls, 2);
    // No modifier toggles the one selected row off.
    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::ControlModifier, rowCenter(table, 0));
    EXPECT_EQ(TableViewZemlo::maxSelectedRow(table), 0);
}

// Keys typed while the contacts are read are kept; the ready book answers the text by then.
TEST_F(RecipientsTest, KeysTypedBeforeTheContactsAreReadAreAnsweredOnceTheyAre) {
    host.reset(); // shown again once the book is locked
    // The book's lock held as the main application holds it while it writes the book.
    QFile lock(FileCoordinator::lockPathFor(container.dataFolder() + QStringLiteral("/Contacts")));
    ASSERT_TRUE(lock.open(QIODevice::ReadWrite));
    ASSERT_EQ(::flock(lock.handle(), LOCK_EX), 0);
    showHost();

    // The window answers keys while the book is locked; nothing is offered yet.
    QTest::keyClicks(host->field, QStringLiteral("ann"));
    QTest::qWait(100);
    EXPECT_FALSE(host->controller->contactsReady());
    EXPECT_EQ(host->rowCount(), 0);
    QTest::keyClicks(host->field, QStringLiteral("i"));

    lock.close();
    // "anni", not "ann": only Annie.
    ASSERT_TRUE(host->waitForRows(1)) << "rows: " << host->rowCount();
    EXPECT_TRUE(host->controller->contactsReady());
    EXPECT_EQ(host->rowTexts(), QStringList{QStringLiteral("Annie Hall <annie@y.test>(9)")});
    EXPECT_TRUE(host->controller->visible());
    EXPECT_EQ(host->tokens(), QStringList{QStringLiteral("anni")});
}

} // namespace
