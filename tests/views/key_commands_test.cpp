// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "TestSupport.h"
#include "views/KeyCommands.h"

#include <QKeyEvent>

using namespace velmora;
using namespace velmora::KeyFlags;

namespace {

constexpr quint32 kX11Lock = 0x2;

struct Row {
    const char* name;
    int key;
    Qt::KeyboardModifiers modifiers;
    QString text;
    quint32 nativeModifiers;
    const char* selector;
    quint64 flags;
    quint16 keyCode;
    QString characters;
};

KeyCommand commandFor(const Row& row) {
    const QKeyEvent event(QEvent::KeyPress, row.key, row.modifiers, 0, 0, row.nativeModifiers,
                          row.text);
    return keyCommandForEvent(event);
}

const Qt::KeyboardModifiers None = Qt::NoModifier;
const Qt::KeyboardModifiers Sh = Qt::ShiftModifier;
const Qt::KeyboardModifiers Cmd = Qt::ControlModifier;
const Qt::KeyboardModifiers Opt = Qt::AltModifier;
const Qt::KeyboardModifiers Ctl = Qt::MetaModifier;
const Qt::KeyboardModifiers Pad = Qt::KeypadModifier;

const QString kReturn = QStringLiteral("\r");

const Row kRows[] = {
    {"return", Qt::Key_Return, None, kReturn, 0, "insertNewline:", 0, 36, kReturn},
    {"keypad-enter", Qt::Key_Enter, Pad, kReturn, 0, "insertNewline:", 0, 76, kReturn},
    {"command-return-unbound", Qt::Key_Return, Cmd, kReturn, 0, "noop:", Command, 36, kReturn},
    {"command-return-caps-lock", Qt::Key_Return, Cmd, kReturn, kX11Lock,
     "noop:", Command | CapsLock, 36, kReturn},
    {"tab", Qt::Key_Tab, None, "\t", 0, "insertTab:", 0, 48, "\t"},
    {"backtab", Qt::Key_Backtab, Sh, "", 0, "insertBacktab:", Shift, 48, ""},
    {"escape", Qt::Key_Escape, None, "\x1b", 0, "cancelOperation:", 0, 53, "\x1b"},
    {"backspace", Qt::Key_Backspace, None, "\b", 0, "deleteBackward:", 0, 51, "\b"},
    {"option-backspace", Qt::Key_Backspace, Opt, "", 0, "deleteWordBackward:", Option, 51, ""},
    {"command-backspace", Qt::Key_Backspace, Cmd, "", 0, "deleteToBeginningOfLine:", Command, 51,
     ""},
    {"delete", Qt::Key_Delete, None, "\x7f", 0, "deleteForward:", 0, 117, "\x7f"},
    {"left", Qt::Key_Left, None, "", 0, "moveLeft:", 0, 123, ""},
    {"keypad-arrow", Qt::Key_Left, Pad, "", 0, "moveLeft:", 0, 123, ""},
    {"home", Qt::Key_Home, None, "", 0, "scrollToBeginningOfDocument:", 0, 115, ""},
    {"control-a-emacs", Qt::Key_A, Ctl, "a", 0, "moveToBeginningOfParagraph:", Control, 0, "a"},
    // X11 turns Ctrl-Shift-D into a control character; Command leaves the letter.
    {"command-shift-d", Qt::Key_D, Cmd | Sh, "\x04", 0, "noop:", Command | Shift, 2, "D"},
    {"command-d-caps-lock", Qt::Key_D, Cmd, "\x04", kX11Lock, "noop:", Command | CapsLock, 2, "D"},
    {"command-option-z", Qt::Key_Z, Cmd | Opt, "", 0, "noop:", Command | Option, 6, "z"},
    {"letter", Qt::Key_A, None, "a", 0, "insertText:", 0, 0, "a"},
    {"shifted-letter", Qt::Key_D, Sh, "D", 0, "insertText:", Shift, 2, "D"},
    {"caps-lock-letter", Qt::Key_S, None, "S", kX11Lock, "insertText:", CapsLock, 1, "S"},
    {"option-letter-types", Qt::Key_E, Opt, QStringLiteral("\u00e9"), 0, "insertText:", Option, 14,
     QStringLiteral("\u00e9")},
    {"keypad-digit", Qt::Key_5, Pad, "5", 0, "insertText:", 0, 87, "5"},
    {"unicode-key", 0x1e9e, Sh, QStringLiteral("\u1e9e"), 0, "insertText:", Shift, kUnknownKeyCode,
     QStringLiteral("\u1e9e")},
    {"function-key", Qt::Key_F5, None, "", 0, "noop:", 0, 96, ""},
    {"media-key", Qt::Key_VolumeUp, None, "", 0, "noop:", 0, kUnknownKeyCode, ""},
};

TEST(KeyCommands, QtKeyEventsMapToCocoaCommandsFlagsAndKeyCodes) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.name);
        const KeyCommand command = commandFor(row);
        EXPECT_EQ(command.selector, QString::fromLatin1(row.selector));
        EXPECT_EQ(command.modifierFlags, row.flags);
        EXPECT_EQ(command.keyCode, row.keyCode);
        EXPECT_EQ(command.characters, row.characters);
    }
}

TEST(KeyCommands, EveryShiftedMoveModifiesTheSelectionOfItsPlainMove) {
    // Each arrow with each word or line modifier: adding Shift keeps the move and selects.
    const int arrows[] = {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down};
    const Qt::KeyboardModifiers extras[] = {None, Opt, Cmd};
    for (int key : arrows) {
        for (Qt::KeyboardModifiers extra : extras) {
            const QKeyEvent plain(QEvent::KeyPress, key, extra);
            const QKeyEvent shifted(QEvent::KeyPress, key, extra | Sh);
            const QString move = keyCommandForEvent(plain).selector;
            const QString select = keyCommandForEvent(shifted).selector;
            SCOPED_TRACE(move.toStdString());
            ASSERT_TRUE(move.startsWith(QLatin1String("move"))) << select.toStdString();
            EXPECT_TRUE(select.endsWith(QLatin1String("AndModifySelection:")))
                << select.toStdString();
        }
    }
}

TEST(KeyCommands, ModifierKeysAloneAreNotCommandKeys) {
    for (int key : {Qt::Key_Shift, Qt::Key_Control, Qt::Key_Meta, Qt::Key_Alt, Qt::Key_CapsLock})
        EXPECT_TRUE(isModifierKey(key)) << key;
    for (int key : {Qt::Key_A, Qt::Key_Return, Qt::Key_Tab, Qt::Key_Escape, Qt::Key_F1})
        EXPECT_FALSE(isModifierKey(key)) << key;
}

} // namespace
