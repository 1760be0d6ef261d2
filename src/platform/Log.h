// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QLoggingCategory>
#include <QString>
#include <QStringList>

#include <functional>

namespace velmora {

Q_DECLARE_LOGGING_CATEGORY(lcCore)

// The platform log: one line per event, formatted from the program's format strings in which
// each "%@" takes the next argument's text. Lines go to the "velmora.core" logging category;
// tests watch them through LogCapture.
class Log {
public:
    // The marker that error lines carry as their first argument.
    static inline const QString kErrorMarker = QStringLiteral("***ERROR***");

    static QString format(QStringView format, const QStringList& args);
    static void write(QStringView format, const QStringList& args);
    // An error line: format with "***ERROR***" and the error's text, as "[%@] step %@" expects.
    static void error(QStringView format, const QString& detail);

    using Sink = std::function<void(const QString& line)>;
    // Registers a sink that receives every line written from now on; returns its handle.
    static int addSink(Sink sink);
    static void removeSink(int handle);
};

// Collects the log lines written while it lives, from any thread.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    QStringList lines() const;
    // Lines that start with prefix.
    QStringList linesStartingWith(QStringView prefix) const;
    void clear();

private:
    struct State;
    std::shared_ptr<State> m_state;
    int m_handle;
};

} // namespace velmora
