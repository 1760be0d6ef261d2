// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>
#include <QObject>
#include <QPointer>
#include <QSize>

#include <functional>
#include <map>
#include <memory>
#include <thread>
#include <vector>

namespace velmora {

// Makes file previews on worker threads of its own and hands each back on the main thread, so
// a slow decode never holds up painting or input. Lives on the main thread.
class ThumbnailLoader : public QObject {
    Q_OBJECT
public:
    using Done = std::function<void(const QImage& preview)>;

    explicit ThumbnailLoader(QObject* parent = nullptr);
    // Drops what has not started, waits for what has; nothing is delivered afterwards.
    ~ThumbnailLoader() override;

    // Starts making the preview of path within size (as imageWithPreviewOfFileAtPath does, not
    // as an icon). done runs later on the main thread, exactly once, unless receiver is
    // destroyed or the request cancelled first. Returns the request's number.
    quint64 request(const QString& path, const QSize& size, QObject* receiver, Done done);
    void cancel(quint64 request);
    // Requests not yet delivered or cancelled.
    int pendingCount() const { return int(m_pending.size()); }

Q_SIGNALS:
    // Every request so far has been delivered or cancelled.
    void idle();

private:
    struct Pending {
        QPointer<QObject> receiver;
        Done done;
        QString path;
        QSize size;
    };
    struct Work; // the job queue the workers share with the loader

    void deliver(quint64 request, const QImage& content);

    std::shared_ptr<Work> m_work;
    std::vector<std::thread> m_workers; // started with the first request
    std::map<quint64, Pending> m_pending;
    quint64 m_next = 1;
};

} // namespace velmora
