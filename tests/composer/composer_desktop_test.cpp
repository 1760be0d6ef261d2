// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// The composer on the desktop: every text readable in light and dark palettes, a strip whose
// scroll bar leaves the names visible, screen readers' view of the composer and its keyboard reach.
#include "ComposerWindow.h"
#include "composer/ComposerKeyboard.h"
#include "composer/ExtensionAttachmentCollectionView.h"
#include "composer/ExtensionAttachmentCollectionViewItem.h"
#include "composer/ExtensionAttachmentController.h"
#include "composer/ExtensionAttachmentView.h"
#include "composer/ExtensionContentTextView.h"
#include "composer/ExtensionCopyRecipientsView.h"
#include "message/ExtensionMessage.h"
#include "recipients/ExtensionSuggestionController.h"
#include "recipients/ExtensionSuggestionTableView.h"
#include "recipients/ExtensionTokenField.h"
#include "recipients/TokenFieldLayout.h"

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QTest>
#include <QTextBlock>

#include <functional>

using namespace velmora;

namespace {

double luminance(QRgb rgb) {
    const auto channel = [](int value) {
        const double c = value / 255.0;
        return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(qRed(rgb)) + 0.7152 * channel(qGreen(rgb)) +
           0.0722 * channel(qBlue(rgb));
}

double contrast(QRgb a, QRgb b) {
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

// The contrast of the text in a region of the picture against what lies under it: the region's
// commonest colour is the background, and the pixel that stands out most from it is the ink
// (the full colour of a glyph's stem, which anti-aliasing leaves whole).
double textContrast(const QImage& picture, const QRect& region) {
    QHash<QRgb, int> counts;
    const QRect inside = region.intersected(picture.rect());
    for (int y = inside.top(); y <= inside.bottom(); ++y)
        for (int x = inside.left(); x <= inside.right(); ++x)
            ++counts[picture.pixel(x, y) | 0xff000000];
    const QRgb background = std::max_element(counts.cbegin(), counts.cend()).key();
    double best = 1;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it)
        best = std::max(best, contrast(it.key(), background));
    return best;
}

// Where one text of the composer lies, in the window's coordinates.
struct TextSample {
    const char* name;
    std::function<QRect(ExtensionComposerController&)> region;
    bool inList = false; // shown in the suggestion list; everything else is read with it closed
};

QRect inWindow(const QWidget* widget, const QRect& local) {
    return QRect(widget->mapTo(widget->window(), local.topLeft()), local.size());
}

QRect bodyLine(ExtensionComposerController& composer, int block) {
    ExtensionContentTextView* body = composer.contentTextView();
    QTextCursor cursor(body->document()->findBlockByNumber(block));
    const QRect caret = body->cursorRect(cursor);
    return inWindow(body->viewport(), QRect(0, caret.top(), 200, caret.height()));
}

// The middle of the field's n-th piece (a token's box, or typed text), clear of a box's border.
QRect toPiece(ExtensionComposerController& composer, int index) {
    ExtensionTokenField* to = composer.toField();
    const TokenFieldLayout layout(to->objectValue(), to->font());
    const TokenFieldLayout::Piece& piece = layout.pieces().at(size_t(index));
    const QRect first = to->characterRect(piece.start);
    return inWindow(to, QRect(first.left() + 3, to->height() / 5, int(piece.advance) - 6,
                              to->height() * 3 / 5));
}

QRect suggestionRow(ExtensionComposerController& composer, int row) {
    ExtensionSuggestionTableView* table = composer.suggestionController()->table();
    const QRect rect = table->visualRect(table->model()->index(row, 0));
    return inWindow(table->viewport(), rect.adjusted(0, 0, -3, 0));
}

QRect inset(QWidget* widget, int by) {
    return inWindow(widget, widget->rect().adjusted(by, by, -by, -by));
}

QRect attachmentName(ExtensionComposerController& composer, int index) {
    ExtensionAttachmentView* view = composer.collectionView()->itemAtIndex(index)->view();
    return inWindow(view, QRect(0, view->height() - ExtensionAttachmentView::kNameHeight,
                                view->width(), ExtensionAttachmentView::kNameHeight));
}

const TextSample kSamples[] = {
    {"subject", [](auto& c) { return inset(c.subjectField(), 1); }},
    {"chosen recipient token", [](auto& c) { return toPiece(c, 0); }},
    {"typed recipient text", [](auto& c) { return toPiece(c, 1); }},
    {"body paragraph", [](auto& c) { return bodyLine(c, 0); }},
    {"body link", [](auto& c) { return bodyLine(c, 1); }},
    {"send button", [](auto& c) { return inset(c.sendBtn(), 3); }},
    {"cancel button", [](auto& c) { return inset(c.cancelBtn(), 3); }},
    {"from pop-up",
     [](auto& c) {
         QComboBox* from = c.popUpview();
         return inWindow(from, QRect(4, 3, from->width() / 2, from->height() - 6));
     }},
    {"selected suggestion", [](auto& c) { return suggestionRow(c, 0); }, true},
    {"other suggestion", [](auto& c) { return suggestionRow(c, 1); }, true},
    {"cc row", [](auto& c) { return inWindow(c.copyRecipientsView(), QRect(0, 0, 400, 18)); }},
    {"notice under the cc row",
     [](auto& c) {
         QWidget* row = c.copyRecipientsView();
         return inWindow(row, QRect(0, 18, 400, row->height() - 18));
     }},
    {"first attachment name", [](auto& c) { return attachmentName(c, 0); }},
    {"second attachment name", [](auto& c) { return attachmentName(c, 1); }},
};

// A dark session's colours, as KDE's and GNOME's dark themes hand them to Qt applications.
QPalette darkPalette() {
    QPalette palette;
    const std::pair<QPalette::ColorRole, QRgb> colours[] = {
        {QPalette::Window, 0x2a2e32},
        {QPalette::WindowText, 0xfcfcfc},
        {QPalette::Base, 0x1b1e20},
        {QPalette::AlternateBase, 0x2a2e32},
        {QPalette::Text, 0xfcfcfc},
        {QPalette::Button, 0x31363b},
        {QPalette::ButtonText, 0xfcfcfc},
        {QPalette::Highlight, 0x3daee9},
        {QPalette::HighlightedText, 0xfcfcfc},
        {QPalette::Link, 0x4db6f6},
        {QPalette::PlaceholderText, 0x96fcfcfc}};
    for (const auto& [role, rgb] : colours)
        palette.setColor(role, QColor::fromRgba(qAlpha(rgb) ? rgb : rgb | 0xff000000));
    return palette;
}

using ComposerDesktop = velmora::test::ComposerWindow;

// Every text the composer shows reads at WCAG AA (4.5:1) against what it is drawn on, in a
// light palette and after a switch to a dark one while the composer is open: a colour fixed in
// the code, or one taken once from the palette, fails in one of the two.
TEST_F(ComposerDesktop, EveryTextReadsInLightAndDarkPalettesSwitchedAtRunTime) {
    ASSERT_NO_FATAL_FAILURE(fill());
    ExtensionSuggestionController* suggestions = composer->suggestionController();
    const QPalette light = QApplication::style()->standardPalette();
    for (const auto& [theme, palette] :
         {std::pair{"light", light}, std::pair{"dark", darkPalette()}}) {
        QApplication::setPalette(palette);
        if (!suggestions->visible())
            suggestions->showForTextField(composer->toField(),
                                          suggestions->objectsForString(QStringLiteral("al")));
        ASSERT_TRUE(QTest::qWaitFor([&] { return suggestions->visible(); }));
        QCoreApplication::processEvents();
        const QImage withList = window.grab().toImage();
        suggestions->cancelSuggestions();
        const QImage picture = window.grab().toImage();
        withList.save(
            QStringLiteral(VELMORA_TEST_OUTPUT_DIR "/contrast-%1.png").arg(QLatin1String(theme)));
        for (const TextSample& sample : kSamples) {
            const QRect region = sample.region(*composer);
            ASSERT_FALSE(region.isEmpty()) << theme << " " << sample.name;
            EXPECT_GE(textContrast(sample.inList ? withList : picture, region), 4.5)
                << theme << " " << sample.name << " in " << region.x() << "," << region.y() << " "
                << region.width() << "x" << region.height();
        }
    }
}

// More attachments than fit: the scroll bar comes, below the items, so every name stays in view;
// a shared folder shows a folder, not the document icon of a file without a picture.
TEST_F(ComposerDesktop, TheScrollBarLeavesNamesVisibleAndAFolderLooksLikeOne) {
    ASSERT_NO_FATAL_FAILURE(fill());
    QScrollArea* strip = composer->collectionScrollview();
    EXPECT_FALSE(strip->horizontalScrollBar()->isVisible());
    QDir(desktop.files()).mkdir(QStringLiteral("Holiday"));
    auto more = ExtensionMessage::init();
    for (const char* name : {"a.txt", "b.txt", "c.txt"})
        more->attachments()->append(
            velmora::test::writeBytes(desktop.files() + u'/' + QLatin1String(name), "x"));
    more->attachments()->append(desktop.files() + QStringLiteral("/Holiday"));
    composer->update(more);
    ASSERT_TRUE(QTest::qWaitFor([&] { return composer->collectionView()->count() == 6; }));
    ASSERT_TRUE(QTest::qWaitFor([&] { return strip->horizontalScrollBar()->isVisible(); }));
    EXPECT_EQ(strip->viewport()->height(), ExtensionAttachmentView::kHeight);
    EXPECT_LE(strip->geometry().bottom(), composer->view()->height());

    const auto thumbnail = [&](int index) {
        return composer->collectionView()->itemAtIndex(index)->view()->imv()->pixmap().toImage();
    };
    EXPECT_FALSE(thumbnail(5).isNull());
    EXPECT_NE(thumbnail(5), thumbnail(1)) << "the folder shows the document icon of notes.txt";
}

QAccessibleInterface* accessible(QObject* object) {
    return QAccessible::queryAccessibleInterface(object);
}

// Every control a screen reader lands on says what it is and what it is called, and the
// recipients, suggestions and attachments read as what they show.
TEST_F(ComposerDesktop, ScreenReadersGetEveryControlAndWhatItShows) {
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

    // The To field reads as its recipients and the typed text, with the caret where it is; the
    // suggestion list as its rows and selection; the strip as its attachments' names.
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
    QStringList cells;
    for (int row = 0; row < 2; ++row)
        cells.append(table->cellAt(row, 0)->text(QAccessible::Name));
    EXPECT_EQ(cells, (QStringList{QStringLiteral("Alan Turing <alan@x.test>(4)"),
                                  QStringLiteral("Alice <alice@y.test>")}));
    composer->suggestionController()->selectNext();
    const QList<QAccessibleInterface*> selected = table->selectedCells();
    ASSERT_EQ(selected.size(), 1);
    EXPECT_EQ(selected.first()->text(QAccessible::Name), cells.at(1));

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
TEST_F(ComposerDesktop, KeyboardReachesEveryControlAndShowsWhereTheFocusIs) {
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
