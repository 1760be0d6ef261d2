// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/StagingStatusView.h"

#include "composer/ExtensionAttachmentCollectionView.h"
#include "composer/ExtensionAttachmentController.h"
#include "composer/ExtensionAttachmentView.h"
#include "platform/LocalizedString.h"

#include <QFileInfo>
#include <QIcon>
#include <QLocale>
#include <QPainter>
#include <QStyle>

namespace velmora {

namespace {

constexpr int kIconSide = 48;
constexpr int kBarHeight = 3;
constexpr int kTextPixels = 11;

QString displayName(const QString& name) {
    const QString last = QFileInfo(name).fileName();
    return last.isEmpty() ? name : last;
}

} // namespace

StagingStatusView::StagingStatusView(QWidget* parent)
    : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    resize(sizeHint());
}

void StagingStatusView::setStatus(const QList<StagingStatus::Pending>& pending,
                                  const QList<StagingStatus::LeftOut>& leftOut) {
    m_pending = pending;
    m_leftOut = leftOut;
    resize(sizeHint());
    updateGeometry();
    update();
}

QString StagingStatusView::progressText(qint64 done, qint64 total) {
    const QLocale locale;
    if (total < 0 && done == 0)
        return LocalizedString("Waiting...");
    if (total < 0)
        return LocalizedString("%1 copied").arg(locale.formattedDataSize(done));
    return LocalizedString("%1 of %2")
        .arg(locale.formattedDataSize(done), locale.formattedDataSize(total));
}

QStringList StagingStatusView::cardTexts() const {
    QStringList texts;
    for (const StagingStatus::Pending& item : m_pending)
        texts.append(
            (item.name.isEmpty() ? LocalizedString("Shared item") : displayName(item.name)) +
            u'\n' + progressText(item.done, item.total));
    for (const StagingStatus::LeftOut& item : m_leftOut)
        texts.append(displayName(item.name) + u'\n' +
                     LocalizedString("Not attached: %1").arg(item.reason));
    return texts;
}

QRect StagingStatusView::cardFrame(int index) const {
    return ExtensionAttachmentCollectionView::itemFrame(index);
}

QSize StagingStatusView::sizeHint() const {
    const int cards = cardCount();
    return {cards == 0 ? 0 : cardFrame(cards - 1).right() + 1, ExtensionAttachmentView::kHeight};
}

void StagingStatusView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QFont font = painter.font();
    font.setPixelSize(kTextPixels);
    painter.setFont(font);
    const QStringList texts = cardTexts();
    for (int i = 0; i < texts.size(); ++i) {
        const QRect card = cardFrame(i);
        const bool leftOut = i >= m_pending.size();
        // The icon stands where a thumbnail would, the texts below it.
        const QIcon icon =
            style()->standardIcon(leftOut ? QStyle::SP_MessageBoxWarning : QStyle::SP_FileIcon);
        const QRect iconRect(card.center().x() - kIconSide / 2, card.top() + 24, kIconSide,
                             kIconSide);
        icon.paint(&painter, iconRect);
        const QRect textRect(card.left(), iconRect.bottom() + 8, card.width(),
                             card.bottom() - iconRect.bottom() - 8 - kBarHeight - 4);
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(textRect, Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, texts.at(i));
        if (leftOut)
            continue;
        const StagingStatus::Pending& item = m_pending.at(i);
        const QRect bar(card.left() + 8, card.bottom() - kBarHeight, card.width() - 16, kBarHeight);
        QColor track = palette().color(QPalette::WindowText);
        track.setAlphaF(0.15f);
        painter.fillRect(bar, track);
        if (item.total > 0) {
            QRect done = bar;
            done.setWidth(int(double(bar.width()) * double(item.done) / double(item.total)));
            painter.fillRect(done, palette().color(QPalette::Highlight));
        }
    }
}

} // namespace velmora
