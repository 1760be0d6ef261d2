// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QKeyEvent;

namespace velmora {

// A key press as the Cocoa-style command hooks see it.
struct KeyCommand {
    // The command's name: "insertNewline:", ...; "noop:" for keys bound to nothing.
    QString selector;
    // Cocoa flags: Caps Lock 0x10000, Shift 0x20000, Control 0x40000 (Qt Meta), Option 0x80000
    // (Qt Alt), Command 0x100000 (Qt Ctrl).
    quint64 modifierFlags = 0;
    // Cocoa virtual key code: Return 36, Tab 48, Backspace 51, Escape 53, keypad Enter 76,
    // Delete 117, Left 123, Right 124, Down 125, Up 126, letters by their ANSI codes (A 0, S 1,
    // D 2, ...).
    quint16 keyCode = 0;
    // The event's text.
    QString characters;
};

// The Cocoa modifier flags, as KeyCommand::modifierFlags carries them.
namespace KeyFlags {
inline constexpr quint64 CapsLock = 0x10000;
inline constexpr quint64 Shift = 0x20000;
inline constexpr quint64 Control = 0x40000;
inline constexpr quint64 Option = 0x80000;
inline constexpr quint64 Command = 0x100000;
} // namespace KeyFlags

// The key code of a key that has none on the Mac keyboard.
inline constexpr quint16 kUnknownKeyCode = 0xFFFF;

// Maps a Qt key event to the command the platform's standard key bindings give it. Ctrl is
// Command, Alt is Option, Meta is Control; Caps Lock comes from the native modifier state
// (X11 Lock mask 0x2 in nativeModifiers()).
KeyCommand keyCommandForEvent(const QKeyEvent& event);

// Whether the Qt key is a modifier or lock key alone (Shift, Ctrl, Caps Lock, ...): the Mac
// reports those as flag changes, never as key presses with a command.
bool isModifierKey(int qtKey);

} // namespace velmora
