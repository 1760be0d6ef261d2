// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "platform/Log.h"

#include <QMutex>

#include <map>

namespace velmora {

Q_LOGGING_CATEGORY(lcCore, "velmora.core", QtInfoMsg)

namespace {

// The registered sinks: the log's one piece of process-wide state.
struct Sinks {
    QMutex mutex;
    std::map<int, Log::Sink> sinks;
    int next = 1;
};

Sinks& sinks() {
    static Sinks instance;
    return instance;
}

} // namespace

QString Log::format(QStringView format, const QStringList& args) {
    QString out;
    out.reserve(format.size() + 16 * args.size());
    qsizetype next = 0;
    qsizetype from = 0;
    while (true) {
        const qsizetype at = format.indexOf(u"%@", from);
        if (at < 0)
            break;
        out += format.mid(from, at - from);
        // A missing argument prints as the platform prints a null object.
        out += next < args.size() ? args.at(next) : QStringLiteral("(null)");
        ++next;
        from = at + 2;
    }
    out += format.mid(from);
    return out;
}

void Log::write(QStringView fmt, const QStringList& args) {
    const QString line = format(fmt, args);
    qCInfo(lcCore).noquote() << line;
    Sinks& s = sinks();
    const QMutexLocker lock(&s.mutex);
    for (const auto& [handle, sink] : s.sinks)
        sink(line);
}

void Log::error(QStringView fmt, const QString& detail) {
    write(fmt, {kErrorMarker, detail});
}

int Log::addSink(Sink sink) {
    Sinks& s = sinks();
    const QMutexLocker lock(&s.mutex);
    const int handle = s.next++;
    s.sinks.emplace(handle, std::move(sink));
    return handle;
}

void Log::removeSink(int handle) {
    Sinks& s = sinks();
    const QMutexLocker lock(&s.mutex);
    s.sinks.erase(handle);
}

struct LogCapture::State {
    mutable QMutex mutex;
    QStringList lines;
};

LogCapture::LogCapture()
    : m_state(std::make_shared<State>())
    , m_handle(Log::addSink([state = m_state](const QString& line) {
        const QMutexLocker lock(&state->mutex);
        state->lines.append(line);
    })) {}

LogCapture::~LogCapture() {
    Log::removeSink(m_handle);
}

QStringList LogCapture::lines() const {
    const QMutexLocker lock(&m_state->mutex);
    return m_state->lines;
}

QStringList LogCapture::linesStartingWith(QStringView prefix) const {
    QStringList out;
    for (const QString& line : lines()) {
        if (line.startsWith(prefix))
            out.append(line);
    }
    return out;
}

void LogCapture::clear() {
    const QMutexLocker lock(&m_state->mutex);
    m_state->lines.clear();
}

} // namespace velmora
