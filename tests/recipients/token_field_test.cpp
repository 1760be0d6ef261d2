// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "RecipientsHost.h"
#include "recipients/ExtensionSuggestionTableView.h"
#include "recipients/TableViewZemlo.h"

#include <QClipboard>
#include <QGuiApplication>

using namespace velmora;
using velmora::test::RecipientsTest;

namespace {

const QString kAnnie = QStringLiteral("Annie Hall <annie@y.test>");
const QString kAnn = QStringLiteral("Ann Smith <ann.smith@x.test>");

TEST_F(RecipientsTest, TypingShowsRankedMatchesThatTheArrowsReturnAndTabTake) {
    EXPECT_FALSE(host->controller->visible());
    typeAndWait(QStringLiteral("ANN"), 3);
    EXPECT_EQ(host->rowTexts(),
              (QStringList{kAnnie + QStringLiteral("(9)"), kAnn + QStringLiteral("(3)"),
                           QStringLiteral("<hannah@w.test>(1)")}));
    // A panel of the window, 5 below the field, as wide as it, 200 high, above the subject.
    FlippedView* popup = host->controller->view();
    EXPECT_EQ(popup->geometry(), QRect(20, 40 + 26 + 5, 560, 200));
    EXPECT_TRUE(popup->isAncestorOf(host->childAt(QPoint(100, 90))));
    // Typing is not a command: the composer hears of nothing yet.
    EXPECT_EQ(host->manageCalls, 0);

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

// Escape closes the list; Return is consumed even without a suggestion; other keys go on to
// the window. An empty result hides the list, the next one shows it at the field's new place;
// a Backspace filters again only a quarter second later.
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

// Pasting splits into addresses (the splitting's own rules have a table of their own), copying
// copies what the tokens show, a comma commits typed text and so does leaving the field.
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

// Return puts the list's selected row in place of the token under the caret, an address as
// well as typed text; a double click turns a token back into text in its display form.
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

TEST(TokenFieldWithoutComposer, NotifiesNobody) {
    ExtensionTokenField alone;
    QObject notAComposer;
    ExtensionSuggestionController controller(QRect(0, 0, 600, 400), &notAComposer);
    alone.setSuggestioncontroller(&controller);
    EXPECT_EQ(alone.composerComtroller(), nullptr);
    QTest::keyClicks(&alone, QStringLiteral("a@x.test,"));
    EXPECT_EQ(alone.objectValue().size(), 1);
    EXPECT_TRUE(alone.doCommandBySelector(alone.fieldEditor(), QStringLiteral("moveUp:")));
    EXPECT_FALSE(alone.doCommandBySelector(alone.fieldEditor(), QStringLiteral("insertTab:")));
}

} // namespace
