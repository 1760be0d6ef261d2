// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/ThumbnailLoader.h"

#include "composer/FilePreview.h"
#include "platform/MainQueue.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>

namespace velmora {

namespace {

// Decoding is heavy on memory and disk: a few at a time, leaving cores for the interface.
int workerCount() {
    return std::clamp(int(std::thread::hardware_concurrency()) - 1, 1, 2);
}

} // namespace

struct ThumbnailLoader::Work {
    struct Job {
        quint64 request;
        QString path;
        QSize size;
    };

    std::mutex mutex;
    std::condition_variable wake;
    std::deque<Job> jobs;
    bool stopping = false;
    // Main thread only: the loader to deliver to, null once it is gone.
    ThumbnailLoader* loader = nullptr;

    // A worker's life: take jobs until the loader stops, and send each result to the main
    // thread, where the loader (if still there) delivers it.
    static void run(const std::shared_ptr<Work>& work) {
        for (;;) {
            Job job;
            {
                std::unique_lock lock(work->mutex);
                work->wake.wait(lock, [&] { return work->stopping || !work->jobs.empty(); });
                if (work->stopping)
                    return;
                job = std::move(work->jobs.front());
                work->jobs.pop_front();
            }
            QImage content = contentPreview(job.path, job.size);
            MainQueue::async([work, request = job.request, content = std::move(content)] {
                if (work->loader)
                    work->loader->deliver(request, content);
            });
        }
    }
};

ThumbnailLoader::ThumbnailLoader(QObject* parent)
    : QObject(parent)
    , m_work(std::make_shared<Work>()) {
    m_work->loader = this;
}

ThumbnailLoader::~ThumbnailLoader() {
    {
        const std::lock_guard lock(m_work->mutex);
        m_work->stopping = true;
        m_work->jobs.clear();
    }
    m_work->wake.notify_all();
    for (std::thread& worker : m_workers)
        worker.join();
    m_work->loader = nullptr;
}

quint64 ThumbnailLoader::request(const QString& path, const QSize& size, QObject* receiver,
                                 Done done) {
    const quint64 id = m_next++;
    m_pending.emplace(id, Pending{receiver, std::move(done), path, size});
    {
        const std::lock_guard lock(m_work->mutex);
        m_work->jobs.push_back({id, path, size});
    }
    m_work->wake.notify_one();
    if (m_workers.empty())
        loadPreviewPlugins();
    while (int(m_workers.size()) < workerCount())
        m_workers.emplace_back(Work::run, m_work);
    return id;
}

void ThumbnailLoader::cancel(quint64 request) {
    const auto it = m_pending.find(request);
    if (it == m_pending.end())
        return;
    m_pending.erase(it);
    {
        // A job already running finishes; its result finds no request and is dropped.
        const std::lock_guard lock(m_work->mutex);
        const auto queued =
            std::find_if(m_work->jobs.begin(), m_work->jobs.end(),
                         [&](const Work::Job& job) { return job.request == request; });
        if (queued != m_work->jobs.end())
            m_work->jobs.erase(queued);
    }
    if (m_pending.empty())
        Q_EMIT idle();
}

void ThumbnailLoader::deliver(quint64 request, const QImage& content) {
    const auto it = m_pending.find(request);
    if (it == m_pending.end())
        return; // cancelled while its job ran
    // Out of the table first: done may well ask for or cancel other previews.
    const Pending pending = std::move(it->second);
    m_pending.erase(it);
    if (pending.receiver)
        pending.done(finishPreview(pending.path, content, pending.size, false));
    if (m_pending.empty())
        Q_EMIT idle();
}

} // namespace velmora
