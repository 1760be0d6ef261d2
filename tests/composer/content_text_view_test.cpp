// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// The body's text view: the commands its keys ask its delegate about, what it refuses to read or
// take in, and spell checking with the real en_US Hunspell dictionary.
#include "AttachmentFiles.h"
#include "composer/ExtensionContentTextView.h"
#include "composer/SpellDictionaries.h"
#include "composer/Speller.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>

#include <sys/inotify.h>
#include <unistd.h>

using namespace velmora;
using velmora::test::ScopedEnv;

namespace {

// Records every command it is asked about and answers as told.
class RecordingDelegate : public QObject, public ExtensionContentTextViewDelegate {
public:
    bool answer = true;
    QList<std::pair<QString, std::optional<KeyCommand>>> calls; // each selector, the key current

    bool extensionContentTextView(ExtensionContentTextView* view,
                                  const QString& selector) override {
        calls.append({selector, view->currentKeyCommand()});
        return answer;
    }
};

// The words of the body that carry the misspelling wave, in text order.
QStringList underlinedWords(const QTextDocument& document) {
    QStringList words;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        for (const QTextLayout::FormatRange& range : block.layout()->formats())
            if (range.format.underlineStyle() == QTextCharFormat::SpellCheckUnderline)
                words.append(block.text().mid(range.start, range.length));
    return words;
}

// The body in a window of its own, holding "hello world" with the caret at its end; the list of
// words the user adds lies in the test's own configuration folder.
struct Body {
    QTemporaryDir config;
    ScopedEnv xdgConfig{"XDG_CONFIG_HOME", config.path().toUtf8()};
    ExtensionContentTextView view;

    explicit Body(bool english = false) {
        if (english) // the real en_US dictionary and the user's word list
            view.setSpeller(Speller::load({QStringLiteral("en-US")}, dictionaryFolders(),
                                          personalWordListPath()));
        view.resize(300, 100);
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
        view.setPlainText(QStringLiteral("hello world"));
        placeCaret(11);
    }
    void placeCaret(int position, int anchor = -1) {
        QTextCursor cursor = view.textCursor();
        cursor.setPosition(anchor < 0 ? position : anchor);
        cursor.setPosition(position, QTextCursor::KeepAnchor);
        view.setTextCursor(cursor);
    }
    QString text() const { return view.toPlainText(); }
    int caret() const { return view.textCursor().position(); }
    // The underlined words once checking is done.
    QStringList underlined() {
        EXPECT_TRUE(QTest::qWaitFor([&] { return !view.isCheckingSpelling(); }));
        return underlinedWords(*view.document());
    }
    QStringList check(const QString& text) {
        view.setPlainText(text);
        return underlined();
    }
    // Right-clicks the first occurrence of the word and gives the menu that opens.
    QMenu* contextMenuAt(const QString& word) {
        QTextCursor cursor(view.document());
        cursor.setPosition(int(view.toPlainText().indexOf(word)) + 1);
        const QPoint at = view.cursorRect(cursor).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, view.viewport()->mapToGlobal(at));
        QApplication::sendEvent(view.viewport(), &event);
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }
};

// The menu's entry of that text, the shortcut after a tab left aside.
QAction* actionNamed(const QMenu& menu, const QString& text) {
    for (QAction* action : menu.actions())
        if (action->text().section(u'\t', 0, 0) == text)
            return action;
    return nullptr;
}

// How keys become commands is the key map's own test; here, that the delegate is asked once with
// the command's key press current, and that the view performs the command only when the
// delegate leaves it unhandled. Typing is not a command.
TEST(ExtensionContentTextView, AsksItsDelegateAndPerformsOnlyWhatItLeavesUnhandled) {
    const struct {
        const char* name;
        int caret;
        int anchor;
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        const char* text; // once performed
        int caretAfter;
        int anchorAfter;
    } rows[] = {
        {"return-splits", 5, -1, Qt::Key_Return, {}, "hello\n world", 6, 6},
        {"backspace", 11, -1, Qt::Key_Backspace, {}, "hello worl", 10, 10},
        {"backspace-selection", 11, 6, Qt::Key_Backspace, {}, "hello ", 6, 6},
        {"option-backspace-word", 11, -1, Qt::Key_Backspace, Qt::AltModifier, "hello ", 6, 6},
        {"command-backspace-line", 8, -1, Qt::Key_Backspace, Qt::ControlModifier, "rld", 0, 0},
        {"left-collapses-selection", 8, 2, Qt::Key_Left, {}, "hello world", 2, 2},
        {"shift-left-extends", 5, -1, Qt::Key_Left, Qt::ShiftModifier, "hello world", 4, 5},
        {"command-left-line-start", 8, -1, Qt::Key_Left, Qt::ControlModifier, "hello world", 0, 0},
        {"control-a-paragraph-start", 8, -1, Qt::Key_A, Qt::MetaModifier, "hello world", 0, 0},
        {"control-k-kills-to-end", 5, -1, Qt::Key_K, Qt::MetaModifier, "hello", 5, 5},
        {"control-t-transposes", 1, -1, Qt::Key_T, Qt::MetaModifier, "ehllo world", 2, 2},
        {"unbound-does-nothing", 5, -1, Qt::Key_Return, Qt::ControlModifier, "hello world", 5, 5},
    };
    // Only a delegate that is asked and leaves the command unhandled lets the view perform it.
    const char* const delegates[] = {"unhandled", "handled", "no delegate", "not a delegate"};
    QObject notADelegate;
    for (const auto& row : rows) {
        for (int kind = 0; kind < 4; ++kind) {
            SCOPED_TRACE(std::string(row.name) + ", " + delegates[kind]);
            Body body;
            RecordingDelegate delegate;
            delegate.answer = kind == 1;
            body.view.setMyDelegate(kind < 2 ? &delegate : kind == 2 ? nullptr : &notADelegate);
            body.placeCaret(row.caret, row.anchor);
            const int anchor = body.view.textCursor().anchor();
            QTest::keyClick(&body.view, row.key, row.modifiers);
            ASSERT_EQ(delegate.calls.size(), kind < 2 ? 1 : 0);
            if (kind < 2) {
                const auto& [selector, key] = delegate.calls[0];
                ASSERT_TRUE(key.has_value());
                EXPECT_EQ(key->selector, selector);
                EXPECT_EQ(key->modifierFlags & KeyFlags::Shift,
                          row.modifiers & Qt::ShiftModifier ? KeyFlags::Shift : 0);
            }
            EXPECT_FALSE(body.view.currentKeyCommand().has_value());
            const bool performed = kind == 0;
            EXPECT_EQ(body.text(),
                      performed ? QString::fromLatin1(row.text) : QStringLiteral("hello world"));
            EXPECT_EQ(body.caret(), performed ? row.caretAfter : row.caret);
            EXPECT_EQ(body.view.textCursor().anchor(), performed ? row.anchorAfter : anchor);
            QTest::keyClicks(&body.view, QStringLiteral("!"));
            EXPECT_EQ(delegate.calls.size(), kind < 2 ? 1 : 0);
            EXPECT_EQ(body.text().count(u'!'), 1);
        }
    }
}

// Shown, copied in every format and pasted back with the Edit keys (which work without a
// delegate), an image the body names is never read: a watch on its file sees no open, and the
// picture shows a placeholder, not the image's red.
TEST(ExtensionContentTextView, NeverReadsTheImagesItShows) {
    const test::IsolatedDesktop desktop;
    const QString canary = test::writeImage(desktop.file("red.png"), QSize(40, 40), Qt::red);
    const int watch = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ASSERT_GE(::inotify_add_watch(watch, QFile::encodeName(canary).constData(), IN_OPEN), 0);

    Body body;
    body.view.setHtml(QStringLiteral("<p>one<img src=\"%1\"></p>").arg(canary));
    const QImage shown = body.view.grab().toImage();
    QApplication::clipboard()->clear();
    body.view.selectAll();
    QTest::keyClick(&body.view, Qt::Key_C, Qt::ControlModifier);
    const QMimeData* copied = QApplication::clipboard()->mimeData();
    EXPECT_TRUE(copied->text().startsWith(QStringLiteral("one")));
    for (const QString& format : copied->formats())
        EXPECT_FALSE(copied->data(format).isEmpty()) << format.toStdString();
    body.placeCaret(3);
    QTest::keyClick(&body.view, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(body.text().count(QStringLiteral("one")), 2);
    QTest::keyClick(&body.view, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(body.text().count(QStringLiteral("one")), 1);

    char events[1024];
    EXPECT_LT(::read(watch, events, sizeof events), 0) << "the image was read";
    for (int y = 0; y < shown.height(); ++y)
        for (int x = 0; x < shown.width(); ++x)
            ASSERT_NE(shown.pixelColor(x, y), QColor(Qt::red)) << x << "," << y;
    QFile(canary).open(QIODevice::ReadOnly); // the watch does see an open
    EXPECT_GT(::read(watch, events, sizeof events), 0);
    ::close(watch);
}

TEST(ExtensionContentTextView, RefusesEveryDrop) {
    Body body;
    EXPECT_FALSE(body.view.acceptDrops());
    EXPECT_FALSE(body.view.viewport()->acceptDrops());

    // Text, files and HTML at once: refused even though each kind alone could be inserted.
    QMimeData data;
    data.setText(QStringLiteral("dropped"));
    data.setUrls({QUrl::fromLocalFile(QStringLiteral("/tmp/a.png"))});
    data.setHtml(QStringLiteral("<b>dropped</b>"));
    const QPoint at(20, 10);
    QDragEnterEvent enter(at, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    QDragMoveEvent move(at, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    QDropEvent drop(at, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    for (QDropEvent* event : std::initializer_list<QDropEvent*>{&enter, &move, &drop}) {
        QApplication::sendEvent(body.view.viewport(), event);
        EXPECT_FALSE(event->isAccepted()) << event->type();
    }
    EXPECT_EQ(body.text(), QStringLiteral("hello world"));
}

// A press inside the selection starts a new one there, as outside it, instead of keeping the
// selection to drag it.
TEST(ExtensionContentTextView, PressingInTheSelectionSelectsAnewInsteadOfDragging) {
    Body body;
    body.view.selectAll();
    const QPoint e = body.view.cursorRect(body.view.document()->find(QStringLiteral("e"))).center();
    QTest::mousePress(body.view.viewport(), Qt::LeftButton, {}, e);
    EXPECT_FALSE(body.view.textCursor().hasSelection());
    EXPECT_EQ(body.caret(), 2);
    QTest::mouseRelease(body.view.viewport(), Qt::LeftButton, {}, e);
    EXPECT_EQ(body.text(), QStringLiteral("hello world"));
}

} // namespace

TEST(SpellCheck, UnderlinesMisspeltWordsButNotLinksAddressesOrCode) {
    Body body(true);
    ASSERT_TRUE(body.view.speller()) << "hunspell-en-us is not installed";
    const struct {
        const char* name;
        const char* text;
        QStringList underlined;
    } rows[] = {
        {"prose", "Teh quick brown fox jumpd over the lazy dog.", {"Teh", "jumpd"}},
        {"apostrophes", "Don't worry, it’s fine; the dogs' bowls aren't emtpy.", {"emtpy"}},
        {"links", "See http://exampel.test/wrng/pagge and www.mispeled.test now.", {}},
        {"addresses", "Write to jhon.smiht@exmaple.test or mailto:ofice@corp.test today.", {}},
        {"url-like runs", "Open file:///hoem/usr/docuemnts or ping @teem.", {}},
        {"code and acronyms", "Set snake_caes to mp3x; NASAX and I agree.", {}},
        {"lines", "First lnie\nsecond line\n\nthrid line", {"lnie", "thrid"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(body.check(QString::fromUtf8(row.text)), row.underlined);
    }

    // The word being typed is underlined once the caret leaves it.
    body.view.clear();
    body.view.setFocus();
    QTest::keyClicks(&body.view, QStringLiteral("Please sned"));
    EXPECT_EQ(body.underlined(), QStringList());
    QTest::keyClicks(&body.view, QStringLiteral(" teh"));
    EXPECT_EQ(body.underlined(), QStringList{"sned"});
    body.view.moveCursor(QTextCursor::Start);
    EXPECT_EQ(body.underlined(), (QStringList{"sned", "teh"}));
}

TEST(SpellCheck, ContextMenuOffersSuggestionsThatReplaceTheWordAndAddsWordsForGood) {
    Body body(true);
    ASSERT_TRUE(body.view.speller());
    body.check(QStringLiteral("Say helo to everyone"));
    QMenu* menu = body.contextMenuAt(QStringLiteral("helo"));
    ASSERT_TRUE(menu);
    // The suggestions first, then adding the word, then the standard entries.
    const auto index = [&](const char* text) {
        return menu->actions().indexOf(actionNamed(*menu, QString::fromLatin1(text)));
    };
    ASSERT_GE(index("hello"), 0);
    EXPECT_GT(index("Add to Dictionary"), index("hello"));
    EXPECT_GT(index("Select All"), index("Add to Dictionary"));
    actionNamed(*menu, QStringLiteral("hello"))->trigger();
    menu->close();
    EXPECT_EQ(body.view.toPlainText(), QStringLiteral("Say hello to everyone"));
    EXPECT_EQ(body.underlined(), QStringList());
    body.view.undo();
    EXPECT_EQ(body.view.toPlainText(), QStringLiteral("Say helo to everyone"));

    // A correct word gets no spelling entries; a hopeless one says so.
    menu = body.contextMenuAt(QStringLiteral("everyone"));
    ASSERT_TRUE(menu);
    EXPECT_FALSE(actionNamed(*menu, QStringLiteral("Add to Dictionary")));
    menu->close();
    body.check(QStringLiteral("xqzvkwpj"));
    menu = body.contextMenuAt(QStringLiteral("xqzvkwpj"));
    ASSERT_TRUE(menu && actionNamed(*menu, QStringLiteral("No Suggestions")));
    EXPECT_FALSE(actionNamed(*menu, QStringLiteral("No Suggestions"))->isEnabled());
    menu->close();

    // A word added to the dictionary takes effect at once in both forms (the capitalised one
    // starts a sentence) and stays for a body made later, as in the next share.
    EXPECT_EQ(body.check(QStringLiteral("Velmorish mail, velmorish ways")),
              (QStringList{"Velmorish", "velmorish"}));
    menu = body.contextMenuAt(QStringLiteral("velmorish"));
    ASSERT_TRUE(menu);
    actionNamed(*menu, QStringLiteral("Add to Dictionary"))->trigger();
    menu->close();
    EXPECT_TRUE(QTest::qWaitFor([&] { return underlinedWords(*body.view.document()).isEmpty(); }));
    const QString wordList = body.config.path() + QStringLiteral("/velmora-share/words.dic");
    EXPECT_EQ(test::readFile(wordList), QByteArray("velmorish\n"));
    ExtensionContentTextView next;
    next.setSpeller(
        Speller::load({QStringLiteral("en-US")}, dictionaryFolders(), personalWordListPath()));
    next.setPlainText(QStringLiteral("velmorish or velmorosh"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !next.isCheckingSpelling(); }));
    EXPECT_EQ(underlinedWords(*next.document()), QStringList{"velmorosh"});
}

// About 400 KB, each paragraph with a misspelling of its own (a dictionary lookup each): checked
// in turns of the event loop, to the end. Kept hidden: shown, a body this long makes QtGui hand
// memory to its own pooled threads, which the thread sanitizer cannot follow.
TEST(SpellCheck, LongBodyIsCheckedInSlicesToTheEnd) {
    Body body(true);
    body.view.hide();
    QString text;
    for (int i = 0; i < 4000; ++i)
        text += QStringLiteral("Paragraph with a typo wrdz%1 among plenty of ordinary words that "
                               "are written right and checked once.\n")
                    .arg(QString(QChar(u'a' + i % 26)) + QChar(u'a' + i / 26 % 26) +
                         QChar(u'a' + i / 676));
    body.view.setPlainText(text);
    QCoreApplication::processEvents();
    EXPECT_TRUE(body.view.isCheckingSpelling());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !body.view.isCheckingSpelling(); }, 60000));
    const QStringList underlined = underlinedWords(*body.view.document());
    EXPECT_EQ(underlined.size(), 4000);
    EXPECT_EQ(underlined.value(3999), QStringLiteral("wrdzvxf"));
}
