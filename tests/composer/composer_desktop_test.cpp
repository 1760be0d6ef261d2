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

using namespace velmora;

namespace {

// The WCAG contrast ratio of two colours.
double contrast(QRgb a, QRgb b) {
    const auto luminance = [](QRgb rgb) {
        double sum = 0;
        for (const auto& [value, weight] :
             {std::pair{qRed(rgb), 0.2126}, {qGreen(rgb), 0.7152}, {qBlue(rgb), 0.0722}}) {
            const double c = value / 255.0;
            sum += weight * (c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4));
        }
        return sum;
    };
    const double la = luminance(a), lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

// The contrast of the text in a region of the window's picture against what lies under it: the
// region's commonest colour is the background, and the pixel that stands out most from it is the
// ink (the full colour of a glyph's stem, which anti-aliasing leaves whole).
double textContrast(const QImage& picture, const QWidget* widget, const QRect& local) {
    const QRect region(widget->mapTo(widget->window(), local.topLeft()), local.size());
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

// The middle of the To field's n-th piece (a token's box, or typed text), clear of a box's border.
QRect toPiece(ExtensionTokenField* to, int index) {
    const TokenFieldLayout::Piece piece =
        TokenFieldLayout(to->objectValue(), to->font()).pieces().at(size_t(index));
    return QRect(to->characterRect(piece.start).left() + 3, to->height() / 5,
                 int(piece.advance) - 6, to->height() * 3 / 5);
}

// A dark session's colours, as KDE's and GNOME's dark themes hand them to Qt applications.
QPalette darkPalette() {
    QPalette palette;
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText})
        palette.setColor(role, QColor(0xfcfcfc));
    for (const auto role : {QPalette::Window, QPalette::AlternateBase})
        palette.setColor(role, QColor(0x2a2e32));
    palette.setColor(QPalette::Base, QColor(0x1b1e20));
    palette.setColor(QPalette::Button, QColor(0x31363b));
    palette.setColor(QPalette::Highlight, QColor(0x3daee9));
    palette.setColor(QPalette::Link, QColor(0x4db6f6));
    palette.setColor(QPalette::PlaceholderText, QColor::fromRgba(0x96fcfcfc));
    return palette;
}

using ComposerDesktop = velmora::test::ComposerWindow;

// Every text the composer shows reads at WCAG AA (4.5:1) against what it is drawn on, in a
// light palette and after a switch to a dark one while the composer is open: a colour fixed in
// the code, or one taken once from the palette, fails in one of the two.
TEST_F(ComposerDesktop, EveryTextReadsInLightAndDarkPalettesSwitchedAtRunTime) {
    ASSERT_NO_FATAL_FAILURE(fill());
    ExtensionComposerController& c = *composer;
    ExtensionSuggestionController* suggestions = c.suggestionController();
    const QPalette light = QApplication::style()->standardPalette();
    for (const auto& [theme, palette] :
         {std::pair{"light", light}, std::pair{"dark", darkPalette()}}) {
        QApplication::setPalette(palette);
        if (!suggestions->visible())
            suggestions->showForTextField(c.toField(),
                                          suggestions->objectsForString(QStringLiteral("al")));
        ASSERT_TRUE(QTest::qWaitFor([&] { return suggestions->visible(); }));
        QCoreApplication::processEvents();
        const QImage withList = window.grab().toImage();
        suggestions->cancelSuggestions();
        const QImage picture = window.grab().toImage();
        withList.save(
            QStringLiteral(VELMORA_TEST_OUTPUT_DIR "/contrast-%1.png").arg(QLatin1String(theme)));
        // Each text where it lies in its widget; the suggestions are read with the list open.
        QTextEdit* body = c.contentTextView();
        const auto bodyLine = [&](int block) {
            const QRect caret =
                body->cursorRect(QTextCursor(body->document()->findBlockByNumber(block)));
            return QRect(0, caret.top(), 200, caret.height());
        };
        QTableView* table = suggestions->table();
        const auto row = [&](int r) {
            return table->visualRect(table->model()->index(r, 0)).adjusted(0, 0, -3, 0);
        };
        ExtensionAttachmentView* attachment = c.collectionView()->itemAtIndex(0)->view();
        const int name = ExtensionAttachmentView::kNameHeight;
        QWidget* cc = c.copyRecipientsView();
        const std::tuple<const char*, const QImage&, const QWidget*, QRect> samples[] = {
            {"subject", picture, c.subjectField(), c.subjectField()->rect().adjusted(1, 1, -1, -1)},
            {"chosen recipient token", picture, c.toField(), toPiece(c.toField(), 0)},
            {"typed recipient text", picture, c.toField(), toPiece(c.toField(), 1)},
            {"body paragraph", picture, body->viewport(), bodyLine(0)},
            {"body link", picture, body->viewport(), bodyLine(1)},
            {"send button", picture, c.sendBtn(), c.sendBtn()->rect().adjusted(3, 3, -3, -3)},
            {"from pop-up", picture, c.popUpview(),
             QRect(4, 3, c.popUpview()->width() / 2, c.popUpview()->height() - 6)},
            {"selected suggestion", withList, table->viewport(), row(0)},
            {"other suggestion", withList, table->viewport(), row(1)},
            {"notice under the cc row", picture, cc, QRect(0, 18, 400, cc->height() - 18)},
            {"attachment name", picture, attachment,
             QRect(0, attachment->height() - name, attachment->width(), name)},
        };
        for (const auto& [sample, image, widget, region] : samples) {
            ASSERT_FALSE(region.isEmpty()) << theme << " " << sample;
            EXPECT_GE(textContrast(image, widget, region), 4.5)
                << theme << " " << sample << " in " << region.x() << "," << region.y() << " "
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
    QDir().mkpath(desktop.file("Holiday"));
    auto more = ExtensionMessage::init();
    for (const char* name : {"a.txt", "b.txt", "c.txt"})
        more->attachments()->append(velmora::test::writeBytes(desktop.file(name), "x"));
    more->attachments()->append(desktop.file("Holiday"));
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
    const std::tuple<QWidget*, QAccessible::Role, const char*> rows[] = {
        {composer->popUpview(), QAccessible::ComboBox, "From:"},
        {composer->cancelBtn(), QAccessible::Button, "Cancel"},
        {composer->sendBtn(), QAccessible::Button, "Send"},
        {composer->toField(), QAccessible::EditableText, "To"},
        {composer->subjectField(), QAccessible::EditableText, "Subject"},
        {composer->contentTextView(), QAccessible::EditableText, "Message"},
        {composer->collectionView(), QAccessible::List, "Attachments"},
        {composer->suggestionController()->table(), QAccessible::Table, "Suggestions"},
    };
    for (const auto& [control, role, name] : rows) {
        QAccessibleInterface* face = accessible(control);
        ASSERT_NE(face, nullptr) << name;
        EXPECT_EQ(face->role(), role) << name;
        EXPECT_EQ(nameOf(face), QString::fromUtf8(name));
        // The suggestion list is steered from the To field and never takes the keyboard itself.
        EXPECT_EQ(bool(face->state().focusable), role != QAccessible::Table) << name;
    }

    // The To field reads as its recipients and the typed text, with the caret where it is; the
    // suggestion list as its rows and selection; the strip as its attachments' names.
    ExtensionTokenField* to = composer->toField();
    QAccessibleInterface* field = accessible(to);
    QAccessibleTextInterface* text = field->textInterface();
    ASSERT_TRUE(text);
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

    QAccessibleTableInterface* table =
        accessible(composer->suggestionController()->table())->tableInterface();
    ASSERT_TRUE(table && table->rowCount() == 2);
    composer->suggestionController()->selectNext();
    ASSERT_EQ(table->selectedCells().size(), 1);
    EXPECT_EQ(table->cellAt(0, 0)->text(QAccessible::Name), u"Alan Turing <alan@x.test>(4)");
    EXPECT_EQ(table->selectedCells().first()->text(QAccessible::Name), u"Alice <alice@y.test>");

    QAccessibleInterface* strip = accessible(composer->collectionView());
    composer->attachmentController()->setSelectionIndex(1);
    QStringList items; // each name, with a star when selected
    for (int i = 0; i < strip->childCount(); ++i)
        if (QAccessibleInterface* item = strip->child(i); item->role() == QAccessible::ListItem)
            items.append(item->text(QAccessible::Name) +
                         (item->state().selected ? QStringLiteral("*") : QString()));
    EXPECT_EQ(items, (QStringList{"picture.png", "notes.txt*"}));
}

// One walk through the composer by keyboard: Tab from From over the buttons to To, Subject and
// the body, which keeps Tab; Ctrl+Tab and Ctrl+Shift+Tab leave any field; Shift+Tab in To goes
// to From; the mnemonic reaches From; the ring is always around the focused control.
TEST_F(ComposerDesktop, KeyboardReachesEveryControlAndShowsWhereTheFocusIs) {
    ASSERT_NO_FATAL_FAILURE(fill());
    ExtensionComposerController& c = *composer;
    const Qt::KeyboardModifiers none = Qt::NoModifier, shift = Qt::ShiftModifier,
                                ctrl = Qt::ControlModifier, ctrlShift = ctrl | shift;
    const std::tuple<Qt::Key, Qt::KeyboardModifiers, QWidget*> steps[] = {
        {Qt::Key_Backtab, shift, c.popUpview()},
        {Qt::Key_Tab, none, c.cancelBtn()},
        {Qt::Key_Tab, none, c.sendBtn()},
        {Qt::Key_Tab, none, c.toField()},
        {Qt::Key_Tab, none, c.subjectField()},
        {Qt::Key_Tab, none, c.contentTextView()},
        {Qt::Key_Tab, none, c.contentTextView()}, // a tab in the text
        {Qt::Key_Tab, ctrl, c.collectionView()},
        {Qt::Key_Tab, ctrl, c.popUpview()},
        {Qt::Key_Backtab, ctrlShift, c.collectionView()},
        {Qt::Key_Backtab, ctrlShift, c.contentTextView()},
        {Qt::Key_Backtab, shift, c.subjectField()}, // the body's own way back
        {Qt::Key_Backtab, shift, c.toField()},
        {Qt::Key_F, Qt::AltModifier, c.popUpview()},
    };
    const QString bodyBefore = c.contentTextView()->toPlainText();
    int number = 0;
    for (const auto& [key, modifiers, focused] : steps) {
        SCOPED_TRACE(number++);
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        ASSERT_TRUE(QTest::qWaitFor([&] { return focused->hasFocus(); }, 2000))
            << "focus is on " << QApplication::focusWidget()->metaObject()->className();
        QWidget* ring = c.keyboard()->focusRing();
        EXPECT_TRUE(ring->isVisible());
        QWidget* around = focused == c.collectionView() ? c.collectionScrollview() : focused;
        EXPECT_TRUE(ring->geometry().contains(
            QRect(around->mapTo(ring->parentWidget(), QPoint(0, 0)), around->size())));
    }
    // Only the plain Tab in the body typed anything.
    EXPECT_EQ(c.contentTextView()->toPlainText().size(), bodyBefore.size() + 1);
    EXPECT_EQ(c.contentTextView()->toPlainText().count(u'\t'), bodyBefore.count(u'\t') + 1);
}

} // namespace
