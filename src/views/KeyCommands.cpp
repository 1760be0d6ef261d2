// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "views/KeyCommands.h"

#include <QKeyEvent>

#include <array>

namespace velmora {

namespace {

using namespace KeyFlags;

// The modifiers a binding is chosen by; Caps Lock never changes the command.
constexpr quint64 kBindingFlags = Shift | Control | Option | Command;

// X11's Lock bit in the native modifier state; Qt has no modifier of its own for Caps Lock.
constexpr quint32 kX11LockMask = 0x2;

struct Binding {
    int key;       // Qt::Key
    quint64 flags; // exactly these of kBindingFlags
    const char* selector;
};

// The Mac's standard key bindings for the keys a text view meets. Keys that type a character
// and are not listed insert it; every other combination is bound to nothing ("noop:"),
// Command with a letter among them: those are menu shortcuts, not text commands.
// Where the Mac binds a key to a pair of commands (Option-Up moves backward, then to the
// paragraph's start) the command that decides the result is named.
constexpr Binding kBindings[] = {
    {Qt::Key_Return, 0, "insertNewline:"},
    {Qt::Key_Return, Shift, "insertNewline:"},
    {Qt::Key_Return, Option, "insertNewlineIgnoringFieldEditor:"},
    {Qt::Key_Enter, 0, "insertNewline:"},
    {Qt::Key_Enter, Shift, "insertNewline:"},
    {Qt::Key_Enter, Option, "insertNewlineIgnoringFieldEditor:"},
    {Qt::Key_Tab, 0, "insertTab:"},
    {Qt::Key_Tab, Option, "insertTabIgnoringFieldEditor:"},
    {Qt::Key_Tab, Shift, "insertBacktab:"},
    {Qt::Key_Backtab, Shift, "insertBacktab:"},
    {Qt::Key_Backtab, 0, "insertBacktab:"},
    {Qt::Key_Escape, 0, "cancelOperation:"},
    {Qt::Key_Escape, Option, "complete:"},

    {Qt::Key_Backspace, 0, "deleteBackward:"},
    {Qt::Key_Backspace, Shift, "deleteBackward:"},
    {Qt::Key_Backspace, Option, "deleteWordBackward:"},
    {Qt::Key_Backspace, Command, "deleteToBeginningOfLine:"},
    {Qt::Key_Backspace, Control, "deleteBackwardByDecomposingPreviousCharacter:"},
    {Qt::Key_Delete, 0, "deleteForward:"},
    {Qt::Key_Delete, Shift, "deleteForward:"},
    {Qt::Key_Delete, Option, "deleteWordForward:"},
    {Qt::Key_Delete, Command, "deleteToEndOfLine:"},

    {Qt::Key_Left, 0, "moveLeft:"},
    {Qt::Key_Left, Shift, "moveLeftAndModifySelection:"},
    {Qt::Key_Left, Option, "moveWordLeft:"},
    {Qt::Key_Left, Option | Shift, "moveWordLeftAndModifySelection:"},
    {Qt::Key_Left, Command, "moveToLeftEndOfLine:"},
    {Qt::Key_Left, Command | Shift, "moveToLeftEndOfLineAndModifySelection:"},
    {Qt::Key_Left, Control, "moveToLeftEndOfLine:"},
    {Qt::Key_Left, Control | Shift, "moveToLeftEndOfLineAndModifySelection:"},
    {Qt::Key_Right, 0, "moveRight:"},
    {Qt::Key_Right, Shift, "moveRightAndModifySelection:"},
    {Qt::Key_Right, Option, "moveWordRight:"},
    {Qt::Key_Right, Option | Shift, "moveWordRightAndModifySelection:"},
    {Qt::Key_Right, Command, "moveToRightEndOfLine:"},
    {Qt::Key_Right, Command | Shift, "moveToRightEndOfLineAndModifySelection:"},
    {Qt::Key_Right, Control, "moveToRightEndOfLine:"},
    {Qt::Key_Right, Control | Shift, "moveToRightEndOfLineAndModifySelection:"},
    {Qt::Key_Up, 0, "moveUp:"},
    {Qt::Key_Up, Shift, "moveUpAndModifySelection:"},
    {Qt::Key_Up, Option, "moveToBeginningOfParagraph:"},
    {Qt::Key_Up, Option | Shift, "moveParagraphBackwardAndModifySelection:"},
    {Qt::Key_Up, Command, "moveToBeginningOfDocument:"},
    {Qt::Key_Up, Command | Shift, "moveToBeginningOfDocumentAndModifySelection:"},
    {Qt::Key_Up, Control, "scrollPageUp:"},
    {Qt::Key_Down, 0, "moveDown:"},
    {Qt::Key_Down, Shift, "moveDownAndModifySelection:"},
    {Qt::Key_Down, Option, "moveToEndOfParagraph:"},
    {Qt::Key_Down, Option | Shift, "moveParagraphForwardAndModifySelection:"},
    {Qt::Key_Down, Command, "moveToEndOfDocument:"},
    {Qt::Key_Down, Command | Shift, "moveToEndOfDocumentAndModifySelection:"},
    {Qt::Key_Down, Control, "scrollPageDown:"},

    {Qt::Key_Home, 0, "scrollToBeginningOfDocument:"},
    {Qt::Key_Home, Shift, "moveToBeginningOfDocumentAndModifySelection:"},
    {Qt::Key_End, 0, "scrollToEndOfDocument:"},
    {Qt::Key_End, Shift, "moveToEndOfDocumentAndModifySelection:"},
    {Qt::Key_PageUp, 0, "scrollPageUp:"},
    {Qt::Key_PageUp, Shift, "pageUpAndModifySelection:"},
    {Qt::Key_PageUp, Option, "pageUp:"},
    {Qt::Key_PageDown, 0, "scrollPageDown:"},
    {Qt::Key_PageDown, Shift, "pageDownAndModifySelection:"},
    {Qt::Key_PageDown, Option, "pageDown:"},

    // The Emacs-like Control bindings every Mac text view has.
    {Qt::Key_A, Control, "moveToBeginningOfParagraph:"},
    {Qt::Key_A, Control | Shift, "moveToBeginningOfParagraphAndModifySelection:"},
    {Qt::Key_B, Control, "moveBackward:"},
    {Qt::Key_B, Control | Shift, "moveBackwardAndModifySelection:"},
    {Qt::Key_D, Control, "deleteForward:"},
    {Qt::Key_E, Control, "moveToEndOfParagraph:"},
    {Qt::Key_E, Control | Shift, "moveToEndOfParagraphAndModifySelection:"},
    {Qt::Key_F, Control, "moveForward:"},
    {Qt::Key_F, Control | Shift, "moveForwardAndModifySelection:"},
    {Qt::Key_H, Control, "deleteBackward:"},
    {Qt::Key_K, Control, "deleteToEndOfParagraph:"},
    {Qt::Key_L, Control, "centerSelectionInVisibleArea:"},
    {Qt::Key_N, Control, "moveDown:"},
    {Qt::Key_N, Control | Shift, "moveDownAndModifySelection:"},
    {Qt::Key_O, Control, "insertNewlineIgnoringFieldEditor:"},
    {Qt::Key_P, Control, "moveUp:"},
    {Qt::Key_P, Control | Shift, "moveUpAndModifySelection:"},
    {Qt::Key_T, Control, "transpose:"},
    {Qt::Key_V, Control, "pageDown:"},
    {Qt::Key_V, Control | Shift, "pageDownAndModifySelection:"},
    {Qt::Key_Y, Control, "yank:"},
};

struct KeyCodeEntry {
    int key;
    quint16 code;
};

// Key codes of the ANSI keyboard, by the key's position, for the keys Qt names independently of
// the layout; letters, digits and punctuation follow from the character the key types.
constexpr KeyCodeEntry kKeyCodes[] = {
    {Qt::Key_Return, 36},    {Qt::Key_Tab, 48},     {Qt::Key_Backtab, 48}, {Qt::Key_Space, 49},
    {Qt::Key_Backspace, 51}, {Qt::Key_Escape, 53},  {Qt::Key_Enter, 76},   {Qt::Key_Help, 114},
    {Qt::Key_Home, 115},     {Qt::Key_PageUp, 116}, {Qt::Key_Delete, 117}, {Qt::Key_End, 119},
    {Qt::Key_PageDown, 121}, {Qt::Key_Left, 123},   {Qt::Key_Right, 124},  {Qt::Key_Down, 125},
    {Qt::Key_Up, 126},       {Qt::Key_F1, 122},     {Qt::Key_F2, 120},     {Qt::Key_F3, 99},
    {Qt::Key_F4, 118},       {Qt::Key_F5, 96},      {Qt::Key_F6, 97},      {Qt::Key_F7, 98},
    {Qt::Key_F8, 100},       {Qt::Key_F9, 101},     {Qt::Key_F10, 109},    {Qt::Key_F11, 103},
    {Qt::Key_F12, 111},      {Qt::Key_Clear, 71},
};

// ANSI key codes of the characters 0x20..0x7e as an unshifted US keyboard types them; shifted
// characters share their key's code. 0xFFFF: no key.
quint16 keyCodeForCharacter(char32_t c) {
    static constexpr std::array<quint16, 26> letters = {0,  11, 8,  2,  14, 3,  5,  4,  34,
                                                        38, 40, 37, 46, 45, 31, 35, 12, 15,
                                                        1,  17, 32, 9,  13, 7,  16, 6};
    static constexpr std::array<quint16, 10> digits = {29, 18, 19, 20, 21, 23, 22, 26, 28, 25};
    if (c >= 'a' && c <= 'z')
        return letters[c - 'a'];
    if (c >= 'A' && c <= 'Z')
        return letters[c - 'A'];
    if (c >= '0' && c <= '9')
        return digits[c - '0'];
    switch (c) {
    case '=':
    case '+':
        return 24;
    case '-':
    case '_':
        return 27;
    case ']':
    case '}':
        return 30;
    case '[':
    case '{':
        return 33;
    case '\'':
    case '"':
        return 39;
    case ';':
    case ':':
        return 41;
    case '\\':
    case '|':
        return 42;
    case ',':
    case '<':
        return 43;
    case '/':
    case '?':
        return 44;
    case '.':
    case '>':
        return 47;
    case '`':
    case '~':
        return 50;
    case '!':
        return 18;
    case '@':
        return 19;
    case '#':
        return 20;
    case '$':
        return 21;
    case '%':
        return 23;
    case '^':
        return 22;
    case '&':
        return 26;
    case '*':
        return 28;
    case '(':
        return 25;
    case ')':
        return 29;
    case ' ':
        return 49;
    default:
        return kUnknownKeyCode;
    }
}

// The keypad's own key codes for the keys it shares with the main keyboard.
quint16 keypadKeyCode(int key) {
    switch (key) {
    case Qt::Key_0:
        return 82;
    case Qt::Key_1:
        return 83;
    case Qt::Key_2:
        return 84;
    case Qt::Key_3:
        return 85;
    case Qt::Key_4:
        return 86;
    case Qt::Key_5:
        return 87;
    case Qt::Key_6:
        return 88;
    case Qt::Key_7:
        return 89;
    case Qt::Key_8:
        return 91;
    case Qt::Key_9:
        return 92;
    case Qt::Key_Period:
        return 65;
    case Qt::Key_Asterisk:
        return 67;
    case Qt::Key_Plus:
        return 69;
    case Qt::Key_Slash:
        return 75;
    case Qt::Key_Minus:
        return 78;
    case Qt::Key_Equal:
        return 81;
    default:
        return kUnknownKeyCode;
    }
}

quint16 keyCodeFor(int key, Qt::KeyboardModifiers modifiers) {
    for (const KeyCodeEntry& entry : kKeyCodes)
        if (entry.key == key)
            return entry.code;
    if (modifiers.testFlag(Qt::KeypadModifier)) {
        const quint16 code = keypadKeyCode(key);
        if (code != kUnknownKeyCode)
            return code;
    }
    // Qt names printable keys by their Latin-1 character (upper case for letters).
    if (key >= 0x20 && key < 0x7f)
        return keyCodeForCharacter(char32_t(key));
    return kUnknownKeyCode;
}

quint64 flagsFor(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers();
    quint64 flags = 0;
    if (event.nativeModifiers() & kX11LockMask)
        flags |= CapsLock;
    if (modifiers.testFlag(Qt::ShiftModifier))
        flags |= Shift;
    if (modifiers.testFlag(Qt::MetaModifier))
        flags |= Control;
    if (modifiers.testFlag(Qt::AltModifier))
        flags |= Option;
    if (modifiers.testFlag(Qt::ControlModifier))
        flags |= Command;
    return flags;
}

// X11 turns Ctrl with a letter into a control character; on the Mac, Command leaves the letter
// as typed (with Shift or Caps Lock upper case), and that is what shortcuts compare.
QString charactersFor(const QKeyEvent& event, quint64 flags) {
    QString text = event.text();
    const int key = event.key();
    const bool controlCharacter =
        text.isEmpty() || (text.size() == 1 && text.at(0).unicode() < 0x20);
    if ((flags & Command) && !(flags & Control) && key >= Qt::Key_A && key <= Qt::Key_Z &&
        controlCharacter) {
        const bool upper = (flags & Shift) || (flags & CapsLock);
        const char letter = char((upper ? 'A' : 'a') + (key - Qt::Key_A));
        return QString(QChar::fromLatin1(letter));
    }
    return text;
}

bool typesText(const QString& text) {
    return !text.isEmpty() && !text.at(0).isNull() && text.at(0).unicode() >= 0x20 &&
           text.at(0).unicode() != 0x7f;
}

} // namespace

bool isModifierKey(int qtKey) {
    switch (qtKey) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Meta:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
        return true;
    default:
        return false;
    }
}

KeyCommand keyCommandForEvent(const QKeyEvent& event) {
    KeyCommand command;
    command.modifierFlags = flagsFor(event);
    command.keyCode = keyCodeFor(event.key(), event.modifiers());
    command.characters = charactersFor(event, command.modifierFlags);

    const quint64 bindingFlags = command.modifierFlags & kBindingFlags;
    for (const Binding& binding : kBindings) {
        if (binding.key == event.key() && binding.flags == bindingFlags) {
            command.selector = QString::fromLatin1(binding.selector);
            return command;
        }
    }
    // Option with a key types a character of its own; Command and Control do not type.
    if (!(bindingFlags & (Command | Control)) && typesText(event.text()))
        command.selector = QStringLiteral("insertText:");
    else
        command.selector = QStringLiteral("noop:");
    return command;
}

} // namespace velmora
