// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/ComposerKeyboard.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

namespace velmora {

namespace {

constexpr int kRingWidth = 2;
constexpr int kRingOutset = 2; // how far the ring stands off the control's edges

// Paints a rounded ring along its edges in the highlight colour; lets every click through.
class FocusRing : public QWidget {
public:
    explicit FocusRing(QWidget* parent)
        : QWidget(parent) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
        hide();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette().color(QPalette::Highlight), kRingWidth));
        painter.setBrush(Qt::NoBrush);
        const qreal inset = kRingWidth / 2.0;
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), 4, 4);
    }
};

bool isControlTab(const QKeyEvent& key, bool* forward) {
    if (!(key.modifiers() & Qt::ControlModifier))
        return false;
    if (key.key() == Qt::Key_Backtab ||
        (key.key() == Qt::Key_Tab && (key.modifiers() & Qt::ShiftModifier))) {
        *forward = false;
        return true;
    }
    if (key.key() == Qt::Key_Tab) {
        *forward = true;
        return true;
    }
    return false;
}

} // namespace

ComposerKeyboard::ComposerKeyboard(QWidget* root, const Controls& controls, QObject* parent)
    : QObject(parent)
    , m_controls(controls)
    , m_ring(new FocusRing(root))
    , m_topmost(controls.topmost) {
    for (QWidget* control :
         {static_cast<QWidget*>(controls.from), static_cast<QWidget*>(controls.cancel),
          static_cast<QWidget*>(controls.send), controls.to, controls.subject, controls.body,
          controls.strip}) {
        if (!control)
            continue;
        if (!(control->focusPolicy() & Qt::TabFocus))
            control->setFocusPolicy(Qt::StrongFocus);
        if (!m_chain.isEmpty() && m_chain.back())
            QWidget::setTabOrder(m_chain.back(), control);
        m_chain.append(control);
        control->installEventFilter(this);
    }
    if (controls.stripFrame)
        controls.stripFrame->installEventFilter(this);

    if (controls.fromLabel && controls.from) {
        controls.fromLabel->setBuddy(controls.from);
        m_mnemonic = QKeySequence::mnemonic(controls.fromLabel->text());
    }
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget*, QWidget* now) { focusChanged(now); });
}

QList<QWidget*> ComposerKeyboard::chain() const {
    QList<QWidget*> controls;
    for (const QPointer<QWidget>& control : m_chain) {
        if (control)
            controls.append(control);
    }
    return controls;
}

bool ComposerKeyboard::eventFilter(QObject* watched, QEvent* event) {
    auto* widget = qobject_cast<QWidget*>(watched);
    switch (event->type()) {
    case QEvent::KeyPress: {
        const auto* key = static_cast<QKeyEvent*>(event);
        bool forward = true;
        if (isControlTab(*key, &forward)) {
            moveFocus(widget, forward);
            return true;
        }
        // From To, Shift+Tab goes back to the sender rather than to the buttons.
        if (widget == m_controls.to && m_controls.from && key->key() == Qt::Key_Backtab &&
            !(key->modifiers() & Qt::ControlModifier)) {
            m_controls.from->setFocus(Qt::BacktabFocusReason);
            return true;
        }
        break;
    }
    case QEvent::ShortcutOverride: {
        // Ctrl+Tab is ours, before any field or shortcut takes it; the mnemonic belongs to
        // From's label, even in a field that would type a character with it.
        const auto* key = static_cast<QKeyEvent*>(event);
        bool forward = true;
        if (isControlTab(*key, &forward)) {
            event->accept();
            return true;
        }
        if (!m_mnemonic.isEmpty() && QKeySequence(key->keyCombination()) == m_mnemonic) {
            event->ignore();
            return true;
        }
        break;
    }
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
        if (m_focused)
            placeRing();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void ComposerKeyboard::moveFocus(QWidget* from, bool forward) {
    const QList<QWidget*> controls = chain();
    const qsizetype count = controls.size();
    const qsizetype start = controls.indexOf(from);
    for (qsizetype step = 1; step <= count; ++step) {
        const qsizetype at =
            ((start < 0 ? (forward ? -1 : 0) : start) + (forward ? step : -step) + count * 2) %
            count;
        QWidget* next = controls[at];
        if (next->isVisible() && next->isEnabled()) {
            next->setFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            return;
        }
    }
}

void ComposerKeyboard::focusChanged(QWidget* now) {
    m_focused = nullptr;
    for (QWidget* control : chain()) {
        if (now && (now == control || control->isAncestorOf(now))) {
            m_focused = control;
            break;
        }
    }
    placeRing();
}

void ComposerKeyboard::placeRing() {
    QWidget* around = m_focused;
    if (around && around == m_controls.strip && m_controls.stripFrame)
        around = m_controls.stripFrame;
    if (!m_ring)
        return;
    QWidget* root = m_ring->parentWidget();
    if (!around || !root || !around->isVisible()) {
        m_ring->hide();
        return;
    }
    const QRect frame(around->mapTo(root, QPoint(0, 0)), around->size());
    const int out = kRingOutset + kRingWidth;
    m_ring->setGeometry(frame.adjusted(-out, -out, out, out));
    if (m_topmost && m_topmost->parentWidget() == root)
        m_ring->stackUnder(m_topmost);
    else
        m_ring->raise();
    m_ring->show();
    m_ring->update();
}

} // namespace velmora
