// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/StagingStatus.h"

#include <QList>
#include <QWidget>

namespace velmora {

// The strip's cards for the items that are not attachments (yet): one per item still being
// staged, with its name, how far its copy is and a thin bar, and one per item left out, with a
// warning icon, its name and the reason. Sits after the attachments in the strip.
class StagingStatusView : public QWidget {
    Q_OBJECT
public:
    explicit StagingStatusView(QWidget* parent = nullptr);

    void setStatus(const QList<StagingStatus::Pending>& pending,
                   const QList<StagingStatus::LeftOut>& leftOut);

    // What each card says, in order: its name, then its progress or reason.
    QStringList cardTexts() const;
    int cardCount() const { return int(m_pending.size() + m_leftOut.size()); }

    // "12 of 340 MB", "12 MB" when the size is not known, "Waiting..." before the copy begins.
    static QString progressText(qint64 done, qint64 total);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRect cardFrame(int index) const;

    QList<StagingStatus::Pending> m_pending;
    QList<StagingStatus::LeftOut> m_leftOut;
};

} // namespace velmora
