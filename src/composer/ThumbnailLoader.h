#pragma once

#include <QImage>
#include <QObject>
#include <QPointer>
#include <QSize>
#include <QThreadPool>

#include <atomic>
#include <functional>
#include <map>
#include <memory>

namespace velmora {

// Makes file previews off the user-interface thread and hands each back on the thread the
// loader lives on, so a slow decode never holds up painting or input.
class ThumbnailLoader : public QObject {
    Q_OBJECT
public:
    using Done = std::function<void(const QImage& preview)>;

    explicit ThumbnailLoader(QObject* parent = nullptr);
    // Cancels what has not started and waits for what has; nothing is delivered afterwards.
    ~ThumbnailLoader() override;

    // Starts making the preview of path within size (as imageWithPreviewOfFileAtPath does, not
    // as an icon). done runs later on the loader's thread, exactly once, unless receiver is
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
        std::shared_ptr<std::atomic<bool>> cancelled;
    };
    void deliver(quint64 request, const QImage& content);

    QThreadPool m_pool;
    std::map<quint64, Pending> m_pending; // touched on the loader's thread only
    quint64 m_next = 1;
};

} // namespace velmora
