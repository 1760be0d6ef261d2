// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/ExtensionCopyRecipientsView.h"

#include "directory/ExtensionAddress.h"
#include "platform/LocalizedString.h"

#include <QEvent>
#include <QLabel>
#include <QToolButton>

#include <algorithm>

namespace velmora {

namespace {

constexpr int kLineHeight = 18;
constexpr int kSpacing = 4;     // between a recipient and its button, and between recipients
constexpr int kHeadingGap = 10; // before a heading that follows recipients on the same line

} // namespace

ExtensionCopyRecipientsView::ExtensionCopyRecipientsView(QWidget* parent)
    : QWidget(parent)
    , m_notice(new QLabel(this)) {
    m_notice->setWordWrap(true);
    m_notice->setTextFormat(Qt::PlainText);
    m_notice->setForegroundRole(QPalette::PlaceholderText);
    m_notice->hide();
}

void ExtensionCopyRecipientsView::addRecipient(Field field,
                                               const std::shared_ptr<ExtensionAddress>& address) {
    if (!address)
        return;
    list(field).append(address);
    rebuild();
}

void ExtensionCopyRecipientsView::removeRecipient(Field field, qsizetype index) {
    AddressList& addresses = list(field);
    if (index < 0 || index >= addresses.size())
        return;
    addresses.removeAt(index);
    rebuild();
}

AddressList ExtensionCopyRecipientsView::recipients(Field field) const {
    return field == Field::Cc ? m_cc : m_bcc;
}

void ExtensionCopyRecipientsView::setNotice(const QString& text) {
    if (text == m_notice->text())
        return;
    m_notice->setText(text);
    m_notice->setVisible(!text.isEmpty());
    flow(width(), true);
    Q_EMIT changed();
}

QString ExtensionCopyRecipientsView::notice() const {
    return m_notice->text();
}

bool ExtensionCopyRecipientsView::isEmpty() const {
    return m_cc.isEmpty() && m_bcc.isEmpty() && m_notice->text().isEmpty();
}

int ExtensionCopyRecipientsView::heightForWidth(int width) const {
    return flow(width, false);
}

void ExtensionCopyRecipientsView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    flow(width(), true);
}

void ExtensionCopyRecipientsView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    // Texts measured in another font take other room.
    if (event->type() == QEvent::FontChange)
        flow(width(), true);
}

void ExtensionCopyRecipientsView::rebuild() {
    // Later, not now: the remove button that asked for this is still in its click.
    for (const Piece& piece : std::as_const(m_pieces)) {
        for (QWidget* widget :
             {static_cast<QWidget*>(piece.label), static_cast<QWidget*>(piece.remove)}) {
            if (widget) {
                widget->hide();
                widget->deleteLater();
            }
        }
    }
    m_pieces.clear();

    const auto add = [this](Field field, const QString& heading) {
        const AddressList& addresses = list(field);
        if (addresses.isEmpty())
            return;
        m_pieces.append({new QLabel(heading, this), nullptr});
        for (qsizetype i = 0; i < addresses.size(); ++i) {
            const QString mail = addresses.at(i)->mail();
            auto* label = new QLabel(this);
            label->setTextFormat(Qt::PlainText);
            label->setText(mail);
            auto* remove = new QToolButton(this);
            remove->setText(QStringLiteral("\u00d7"));
            remove->setAutoRaise(true);
            remove->setToolTip(LocalizedString("Remove %1").arg(mail));
            remove->setAccessibleName(LocalizedString("Remove %1").arg(mail));
            connect(remove, &QToolButton::clicked, this,
                    [this, field, i] { removeRecipient(field, i); });
            m_pieces.append({label, remove});
        }
    };
    add(Field::Cc, LocalizedString("Cc:"));
    add(Field::Bcc, LocalizedString("Bcc:"));
    for (const Piece& piece : std::as_const(m_pieces)) {
        piece.label->show();
        if (piece.remove)
            piece.remove->show();
    }
    flow(width(), true);
    Q_EMIT changed();
}

int ExtensionCopyRecipientsView::flow(int width, bool place) const {
    width = std::max(width, 1);
    int x = 0;
    int y = 0;
    bool lineUsed = false;
    for (const Piece& piece : m_pieces) {
        const bool heading = piece.remove == nullptr;
        const int labelWidth = piece.label->sizeHint().width();
        const int pieceWidth = labelWidth + (heading ? 0 : kSpacing + kLineHeight);
        int start = lineUsed ? x + (heading ? kHeadingGap : kSpacing) : 0;
        if (lineUsed && start + pieceWidth > width) {
            y += kLineHeight;
            start = 0;
        }
        if (place) {
            // A piece wider than the row still shows the whole address: it is elided by no one,
            // only wrapped onto a line of its own.
            piece.label->setGeometry(start, y, labelWidth, kLineHeight);
            if (piece.remove)
                piece.remove->setGeometry(start + labelWidth + kSpacing, y, kLineHeight,
                                          kLineHeight);
        }
        x = start + pieceWidth;
        lineUsed = true;
    }
    int height = lineUsed ? y + kLineHeight : 0;
    if (!m_notice->text().isEmpty()) {
        const int noticeHeight = std::max(kLineHeight, m_notice->heightForWidth(width));
        if (place)
            m_notice->setGeometry(0, height, width, noticeHeight);
        height += noticeHeight;
    }
    return height;
}

} // namespace velmora
