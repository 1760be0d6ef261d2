// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

// Preloaded into a Qt Widgets program (LD_PRELOAD), it ends the program as soon as the first
// paint event of any widget has been handled, after writing the time (CLOCK_MONOTONIC, in
// nanoseconds) and the peak resident size so far (KiB) to the file named by
// VELMORA_PROBE_OUT. The one who started the program takes its own clock reading just before,
// so the difference is the time from exec to the first paint.
#include <QCoreApplication>
#include <QEvent>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <unistd.h>

namespace {

using Deliver = bool (*)(QObject*, QEvent*);

// The library's own function of that name, found past this one.
Deliver next(const char* mangledName) {
    return reinterpret_cast<Deliver>(dlsym(RTLD_NEXT, mangledName));
}

long peakResidentKiB() {
    std::FILE* status = std::fopen("/proc/self/status", "r");
    if (!status)
        return -1;
    char line[256];
    long kib = -1;
    while (std::fgets(line, sizeof line, status)) {
        if (std::strncmp(line, "VmHWM:", 6) == 0)
            kib = std::strtol(line + 6, nullptr, 10);
    }
    std::fclose(status);
    return kib;
}

// Reports once and ends the process; Qt's own teardown is no part of the measurement.
[[noreturn]] void report() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const long long nanoseconds = static_cast<long long>(now.tv_sec) * 1000000000LL + now.tv_nsec;
    if (const char* path = std::getenv("VELMORA_PROBE_OUT")) {
        if (std::FILE* out = std::fopen(path, "w")) {
            std::fprintf(out, "%lld %ld\n", nanoseconds, peakResidentKiB());
            std::fclose(out);
        }
    }
    _exit(0);
}

bool deliver(Deliver real, QObject* receiver, QEvent* event) {
    const bool paint =
        event && receiver && event->type() == QEvent::Paint && receiver->isWidgetType();
    const bool result = real(receiver, event);
    if (paint)
        report();
    return result;
}

} // namespace

// The widgets library hands paint events to the core library through these; whichever it
// calls, the probe sees the event come back.
bool QCoreApplication::sendEvent(QObject* receiver, QEvent* event) {
    static const Deliver real = next("_ZN16QCoreApplication9sendEventEP7QObjectP6QEvent");
    return deliver(real, receiver, event);
}

bool QCoreApplication::sendSpontaneousEvent(QObject* receiver, QEvent* event) {
    static const Deliver real =
        next("_ZN16QCoreApplication20sendSpontaneousEventEP7QObjectP6QEvent");
    return deliver(real, receiver, event);
}

bool QCoreApplication::notifyInternal2(QObject* receiver, QEvent* event) {
    static const Deliver real = next("_ZN16QCoreApplication15notifyInternal2EP7QObjectP6QEvent");
    return deliver(real, receiver, event);
}
