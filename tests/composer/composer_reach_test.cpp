// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "ComposerWindow.h"
#include "composer/ComposerKeyboard.h"
#include "composer/ExtensionAttachmentCollectionView.h"
#include "composer/ExtensionAttachmentController.h"
#include "composer/ExtensionContentTextView.h"
#include "recipients/ExtensionSuggestionController.h"
#include "recipients/ExtensionSuggestionTableView.h"
#include "recipients/ExtensionTokenField.h"

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QTest>

#include <functional>

using namespace velmora;

namespace {

using ComposerReach = velmora::test::ComposerWindow;

QAccessibleInterface* accessible(QObject* object) {
    return QAccessible::queryAccessibleInterface(object);
}

// Every control a screen reader lands on says what it is and what it is called.
TEST_F(ComposerReach, EveryControlHasAnAccessibleNameAndRole) {
    ASSERT_NO_FATAL_FAILURE(fill());
    // What a screen reader calls a control: on Linux a combo box by the label it is the buddy of.
    const auto nameOf = [](QAccessibleInterface* face) {
        const auto labels = face->relations(QAccessible::Label);
        return labels.isEmpty() ? face->text(QAccessible::Name)
                                : labels.first().first->text(QAccessible::Name);
    };
    struct Row {
        const char* name;
        std::function<QWidget*()> control;
        QAccessible::Role role;
        const char* accessibleName;
        bool focusable = true;
    };
    const Row rows[] = {
        {"from", [&] { return composer->popUpview(); }, QAccessible::ComboBox, "From:"},
        {"cancel", [&] { return composer->cancelBtn(); }, QAccessible::Button, "Cancel"},
        {"send", [&] { return composer->sendBtn(); }, QAccessible::Button, "Send"},
        {"to", [&] { return composer->toField(); }, QAccessible::EditableText, "To"},
        {"subject", [&] { return composer->subjectField(); }, QAccessible::EditableText, "Subject"},
        {"body", [&] { return composer->contentTextView(); }, QAccessible::EditableText, "Message"},
        {"strip", [&] { return composer->collectionView(); }, QAccessible::List, "Attachments"},
        // The list is steered from the To field and never takes the keyboard itself.
        {"suggestions", [&] { return composer->suggestionController()->table(); },
         QAccessible::Table, "Suggestions", false},
    };
    for (const Row& row : rows) {
        QAccessibleInterface* face = accessible(row.control());
        ASSERT_NE(face, nullptr) << row.name;
        EXPECT_EQ(face->role(), row.role) << row.name;
        EXPECT_EQ(nameOf(face), QString::fromUtf8(row.accessibleName)) << row.name;
        EXPECT_EQ(bool(face->state().focusable), row.focusable) << row.name;
    }
}

// The To field reads as its recipients and the typed text, with the caret where it is;
// the suggestion list as its rows and selection; the strip as its attachments' names.
TEST_F(ComposerReach, ScreenReadersGetTheRecipientsSuggestionsAndAttachments) {
    ASSERT_NO_FATAL_FAILURE(fill());
    ExtensionTokenField* to = composer->toField();
    QAccessibleInterface* field = accessible(to);
    QAccessibleTextInterface* text = field->textInterface();
    ASSERT_NE(text, nullptr);
    const QString spoken = QStringLiteral("Ada Lovelace <ada@z.test>, al");
    EXPECT_EQ(field->text(QAccessible::Value), spoken);
    EXPECT_EQ(text->text(0, text->characterCount()), spoken);
    EXPECT_EQ(text->cursorPosition(), spoken.size());
    // Moving the caret from a screen reader: into the typed text, then into the token's name,
    // which puts it before the token.
    text->setCursorPosition(spoken.size() - 1);
    EXPECT_EQ(to->fieldEditor().caret(), 2);
    text->setCursorPosition(3);
    EXPECT_EQ(to->fieldEditor().caret(), 0);
    EXPECT_EQ(text->cursorPosition(), 0);

    QAccessibleInterface* list = accessible(composer->suggestionController()->table());
    QAccessibleTableInterface* table = list->tableInterface();
    ASSERT_NE(table, nullptr);
    ASSERT_EQ(table->rowCount(), 2);
    QStringList rows;
    for (int row = 0; row < 2; ++row)
        rows.append(table->cellAt(row, 0)->text(QAccessible::Name));
    EXPECT_EQ(rows, (QStringList{QStringLiteral("Alan Turing <alan@x.test>(4)"),
                                 QStringLiteral("Alice <alice@y.test>")}));
    composer->suggestionController()->selectNext();
    const QList<QAccessibleInterface*> selected = table->selectedCells();
    ASSERT_EQ(selected.size(), 1);
    EXPECT_EQ(selected.first()->text(QAccessible::Name), rows.at(1));

    QAccessibleInterface* strip = accessible(composer->collectionView());
    composer->attachmentController()->setSelectionIndex(1);
    QStringList names;
    QList<bool> selectedItems;
    for (int i = 0; i < strip->childCount(); ++i) {
        QAccessibleInterface* item = strip->child(i);
        if (item->role() != QAccessible::ListItem)
            continue;
        names.append(item->text(QAccessible::Name));
        selectedItems.append(item->state().selected);
    }
    EXPECT_EQ(names, (QStringList{"picture.png", "notes.txt"}));
    EXPECT_EQ(selectedItems, (QList<bool>{false, true}));
}

// One walk through the composer by keyboard: Tab from From over the buttons to To, Subject and
// the body, which keeps Tab; Ctrl+Tab and Ctrl+Shift+Tab leave any field; Shift+Tab in To goes
// to From; the mnemonic reaches From; the ring is always around the focused control.
TEST_F(ComposerReach, KeyboardReachesEveryControlAndShowsWhereTheFocusIs) {
    ASSERT_NO_FATAL_FAILURE(fill());
    QWidget* from = composer->popUpview();
    QWidget* cancel = composer->cancelBtn();
    QWidget* send = composer->sendBtn();
    QWidget* to = composer->toField();
    QWidget* subject = composer->subjectField();
    QWidget* body = composer->contentTextView();
    QWidget* strip = composer->collectionView();
    struct Step {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        QWidget* focused;
    };
    const Qt::KeyboardModifiers ctrl = Qt::ControlModifier;
    const Qt::KeyboardModifiers ctrlShift = Qt::ControlModifier | Qt::ShiftModifier;
    const Step steps[] = {
        {Qt::Key_Backtab, Qt::ShiftModifier, from},
        {Qt::Key_Tab, Qt::NoModifier, cancel},
        {Qt::Key_Tab, Qt::NoModifier, send},
        {Qt::Key_Tab, Qt::NoModifier, to},
        {Qt::Key_Tab, Qt::NoModifier, subject},
        {Qt::Key_Tab, Qt::NoModifier, body},
        {Qt::Key_Tab, Qt::NoModifier, body}, // a tab in the text
        {Qt::Key_Tab, ctrl, strip},
        {Qt::Key_Tab, ctrl, from},
        {Qt::Key_Backtab, ctrlShift, strip},
        {Qt::Key_Backtab, ctrlShift, body},
        {Qt::Key_Backtab, ctrlShift, subject},
        {Qt::Key_Tab, ctrl, body},
        {Qt::Key_Backtab, Qt::ShiftModifier, subject}, // the body's own way back
        {Qt::Key_Backtab, Qt::ShiftModifier, to},
        {Qt::Key_F, Qt::AltModifier, from},
    };
    const QString bodyBefore = composer->contentTextView()->toPlainText();
    int number = 0;
    for (const Step& step : steps) {
        SCOPED_TRACE(number++);
        QTest::keyClick(QApplication::focusWidget(), step.key, step.modifiers);
        ASSERT_TRUE(QTest::qWaitFor([&] { return step.focused->hasFocus(); }, 2000))
            << "focus is on " << QApplication::focusWidget()->metaObject()->className();
        QWidget* ring = composer->keyboard()->focusRing();
        EXPECT_TRUE(ring->isVisible());
        QWidget* around = step.focused == strip ? composer->collectionScrollview() : step.focused;
        const QRect frame(around->mapTo(ring->parentWidget(), QPoint(0, 0)), around->size());
        EXPECT_TRUE(ring->geometry().contains(frame));
    }
    // Only the plain Tab in the body typed anything.
    EXPECT_EQ(composer->contentTextView()->toPlainText().size(), bodyBefore.size() + 1);
    EXPECT_EQ(composer->contentTextView()->toPlainText().count(u'\t'), bodyBefore.count(u'\t') + 1);
}

} // namespace
