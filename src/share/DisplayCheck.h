// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace velmora {

// Tells, before Qt is asked to open a window, whether the platform Qt would choose can be
// reached: a Wayland compositor's socket, an X server's local socket. Qt ends the process with
// an abort when no platform plugin starts; this lets the program say why and exit cleanly.
class DisplayCheck {
public:
    // Null when a window can (as far as can be told) be opened; otherwise what is missing, for
    // a message. Reads QT_QPA_PLATFORM, WAYLAND_DISPLAY, WAYLAND_SOCKET, XDG_RUNTIME_DIR,
    // XDG_SESSION_TYPE and DISPLAY.
    static QString problem();

    // While an instance lives, a fatal message from Qt (a platform plugin that fails after all)
    // ends the program with the usage status and the message, instead of an abort.
    class FatalAsUsageError {
    public:
        FatalAsUsageError();
        ~FatalAsUsageError();
        FatalAsUsageError(const FatalAsUsageError&) = delete;
        FatalAsUsageError& operator=(const FatalAsUsageError&) = delete;
    };
};

} // namespace velmora
