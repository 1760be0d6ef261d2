// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "composer/ExtensionContentTextView.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <sys/inotify.h>
#include <unistd.h>

using namespace velmora;

namespace {

// Records every command it is asked about and answers as told.
class RecordingDelegate : public QObject, public ExtensionContentTextViewDelegate {
public:
    bool answer = true;
    struct Call {
        QString selector;
        std::optional<KeyCommand> key;
    };
    QList<Call> calls;

    bool extensionContentTextView(ExtensionContentTextView* view,
                                  const QString& selector) override {
        calls.append({selector, view->currentKeyCommand()});
        return answer;
    }
};

struct Body {
    ExtensionContentTextView view;
    Body() {
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
};

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
    // Asked and leaving it unhandled, asked and handling it, none, an object without the hook:
    // a bare view performs no editing command.
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
                ASSERT_TRUE(delegate.calls[0].key.has_value());
                EXPECT_EQ(delegate.calls[0].key->selector, delegate.calls[0].selector);
                EXPECT_EQ(delegate.calls[0].key->modifierFlags & KeyFlags::Shift,
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

TEST(ExtensionContentTextView, CopyPasteAndUndoWorkThroughTheClipboard) {
    Body body; // no delegate: editing commands are refused, the Edit shortcuts are not
    QApplication::clipboard()->clear();
    body.placeCaret(5, 0);
    QTest::keyClick(&body.view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("hello"));
    body.placeCaret(11);
    QTest::keyClick(&body.view, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(body.text(), QStringLiteral("hello worldhello"));
    QTest::keyClick(&body.view, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(body.text(), QStringLiteral("hello world"));
}

// Shown, copied in every format and pasted back, an image the body names is never read: a watch
// on its file sees no open, and the picture shows a placeholder, not the image's red.
TEST(ExtensionContentTextView, NeverReadsTheImagesItShows) {
    QTemporaryDir dir;
    const QString canary = dir.filePath(QStringLiteral("red.png"));
    QImage red(40, 40, QImage::Format_RGB32);
    red.fill(Qt::red);
    ASSERT_TRUE(red.save(canary));
    const int watch = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ASSERT_GE(::inotify_add_watch(watch, QFile::encodeName(canary).constData(), IN_OPEN), 0);

    Body body;
    body.view.setHtml(QStringLiteral("<p>one<img src=\"%1\"></p>").arg(canary));
    const QImage shown = body.view.grab().toImage();
    body.view.selectAll();
    body.view.copy();
    const QMimeData* copied = QApplication::clipboard()->mimeData();
    for (const QString& format : copied->formats())
        EXPECT_FALSE(copied->data(format).isEmpty()) << format.toStdString();
    body.view.paste();

    char events[1024];
    EXPECT_LT(::read(watch, events, sizeof events), 0) << "the image was read";
    qsizetype redPixels = 0;
    for (int y = 0; y < shown.height(); ++y)
        for (int x = 0; x < shown.width(); ++x)
            redPixels += shown.pixelColor(x, y) == QColor(Qt::red);
    EXPECT_EQ(redPixels, 0);
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

TEST(ExtensionContentTextView, PressingInTheSelectionSelectsAnewInsteadOfDragging) {
    Body body;
    body.view.selectAll();
    QWidget* viewport = body.view.viewport();
    const QPoint start =
        body.view.cursorRect(body.view.document()->find(QStringLiteral("e"))).center();
    const QPoint end =
        body.view.cursorRect(body.view.document()->find(QStringLiteral("w"))).center();
    // A drag, once started, runs until the mouse is released: release it from a timer so that a
    // failing view ends the test instead of hanging it.
    bool dragStarted = false;
    QTimer guard;
    guard.setSingleShot(true);
    QObject::connect(&guard, &QTimer::timeout, [&] {
        dragStarted = true;
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, end);
    });
    QTest::mousePress(viewport, Qt::LeftButton, {}, start);
    guard.start(1000);
    for (int x = start.x(); x <= end.x(); x += 4)
        QTest::mouseMove(viewport, QPoint(x, start.y()));
    QTest::mouseMove(viewport, end);
    guard.stop();
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, end);
    EXPECT_FALSE(dragStarted);
    EXPECT_EQ(body.view.textCursor().selectedText(), QStringLiteral("llo w"));
    EXPECT_EQ(body.text(), QStringLiteral("hello world"));
}

} // namespace
