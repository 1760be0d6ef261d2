// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

#include <functional>
#include <mutex>

namespace velmora {

// What has become of the items of one share while they are being staged: those still on their
// way (with bytes copied so far), and those left out with the reason. The intake writes it from
// its worker and provider threads; the composer and the command line read it. Thread-safe.
class StagingStatus {
public:
    struct Pending {
        quint64 id = 0;
        QString name;      // empty until the item's provider has answered
        qint64 done = 0;   // bytes copied so far
        qint64 total = -1; // bytes to copy; -1 while unknown (a folder)
    };
    struct LeftOut {
        QString name;   // the item, or the entry inside a folder, as the user gave it
        QString reason; // why it is not among the attachments
    };
    // Told after every change, on the thread that made it; it must not call back into this.
    using Listener = std::function<void()>;

    StagingStatus() = default;
    StagingStatus(const StagingStatus&) = delete;
    StagingStatus& operator=(const StagingStatus&) = delete;

    // The intake has started: a message will be delivered to the composer.
    void expectDelivery();
    bool deliveryExpected() const;

    // An item whose provider has been asked: pending until finish().
    quint64 begin();
    // The item's name and size once known, then its progress.
    void progress(quint64 id, const QString& name, qint64 done, qint64 total);
    // The item has landed, or failed (its leaveOut() comes first then).
    void finish(quint64 id);
    void leaveOut(const QString& name, const QString& reason);

    QList<Pending> pending() const;
    QList<LeftOut> leftOut() const;
    bool hasPending() const;

    void addListener(Listener listener);

private:
    void changed();

    mutable std::mutex m_mutex;
    quint64 m_nextId = 1;
    bool m_deliveryExpected = false;
    QList<Pending> m_pending;
    QList<LeftOut> m_leftOut;
    QList<Listener> m_listeners;
};

} // namespace velmora
