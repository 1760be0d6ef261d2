#include "composer/ThumbnailLoader.h"

#include "composer/FilePreview.h"

#include <QRunnable>
#include <QThread>

#include <algorithm>

namespace velmora {

namespace {

// Decodes on a pool thread; the result goes back to the loader through its event queue.
class PreviewJob : public QRunnable {
public:
    PreviewJob(ThumbnailLoader* loader, std::function<void(const QImage&)> handBack, QString path,
               QSize size, std::shared_ptr<std::atomic<bool>> cancelled)
        : m_loader(loader)
        , m_handBack(std::move(handBack))
        , m_path(std::move(path))
        , m_size(size)
        , m_cancelled(std::move(cancelled)) {}

    void run() override {
        if (m_cancelled->load())
            return;
        const QImage content = contentPreview(m_path, m_size);
        // The loader outlives every job: its destructor waits for them.
        QMetaObject::invokeMethod(
            m_loader, [handBack = m_handBack, content] { handBack(content); },
            Qt::QueuedConnection);
    }

private:
    ThumbnailLoader* m_loader;
    std::function<void(const QImage&)> m_handBack;
    QString m_path;
    QSize m_size;
    std::shared_ptr<std::atomic<bool>> m_cancelled;
};

} // namespace

ThumbnailLoader::ThumbnailLoader(QObject* parent)
    : QObject(parent) {
    // Decoding is heavy on memory and disk: a few at a time, leaving cores for the interface.
    m_pool.setMaxThreadCount(std::max(1, std::min(2, QThread::idealThreadCount() - 1)));
}

ThumbnailLoader::~ThumbnailLoader() {
    for (auto& [id, pending] : m_pending)
        pending.cancelled->store(true);
    m_pool.clear();
    m_pool.waitForDone();
}

quint64 ThumbnailLoader::request(const QString& path, const QSize& size, QObject* receiver,
                                 Done done) {
    const quint64 id = m_next++;
    auto cancelled = std::make_shared<std::atomic<bool>>(false);
    m_pending.emplace(id, Pending{receiver, std::move(done), path, size, cancelled});
    m_pool.start(new PreviewJob(
        this, [this, id](const QImage& content) { deliver(id, content); }, path, size, cancelled));
    return id;
}

void ThumbnailLoader::cancel(quint64 request) {
    const auto it = m_pending.find(request);
    if (it == m_pending.end())
        return;
    it->second.cancelled->store(true);
    m_pending.erase(it);
    if (m_pending.empty())
        Q_EMIT idle();
}

void ThumbnailLoader::deliver(quint64 request, const QImage& content) {
    const auto it = m_pending.find(request);
    if (it == m_pending.end())
        return; // cancelled after its job had started
    Pending pending = std::move(it->second);
    m_pending.erase(it);
    if (pending.receiver)
        pending.done(finishPreview(pending.path, content, pending.size, false));
    if (m_pending.empty())
        Q_EMIT idle();
}

} // namespace velmora
