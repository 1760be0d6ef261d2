// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QKeySequence>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QWidget>

class QComboBox;
class QLabel;
class QPushButton;

namespace velmora {

// The composer's keyboard reach. Tab walks From, Cancel, Send, To, Subject, the body and the
// attachment strip in that order (the body keeps Tab for itself); Ctrl+Tab and Ctrl+Shift+Tab
// leave any of them, forwards and backwards, as in every Qt text editor; Shift+Tab in To goes
// back to From; the mnemonic of From's label (Alt+F in English) focuses it, whichever field
// has the keyboard. Whichever of them
// has the focus gets a ring in the palette's highlight colour, since the borderless fields and
// flat buttons would otherwise show it faintly or not at all.
class ComposerKeyboard : public QObject {
    Q_OBJECT
public:
    struct Controls {
        QComboBox* from = nullptr;
        QLabel* fromLabel = nullptr; // its buddy is from; its text gives the mnemonic
        QPushButton* cancel = nullptr;
        QPushButton* send = nullptr;
        QWidget* to = nullptr;
        QWidget* subject = nullptr;
        QWidget* body = nullptr;
        QWidget* strip = nullptr;      // takes the focus itself
        QWidget* stripFrame = nullptr; // what the ring goes around for it
        QWidget* topmost = nullptr;    // stays above the ring (the suggestion list)
    };

    // Sets up the chain, the keys and the ring on root, which holds every control.
    ComposerKeyboard(QWidget* root, const Controls& controls, QObject* parent = nullptr);

    // The controls in focus order.
    QList<QWidget*> chain() const;
    // The ring around the focused control; hidden while none of them has the focus.
    QWidget* focusRing() const { return m_ring.data(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Moves the focus to the next (or previous) shown, enabled control after from, round the
    // chain.
    void moveFocus(QWidget* from, bool forward);
    void focusChanged(QWidget* now);
    void placeRing();

    Controls m_controls;
    QKeySequence m_mnemonic;
    QList<QPointer<QWidget>> m_chain;
    QPointer<QWidget> m_focused; // the chain's control that has the focus, if any
    // The ring is a child of the root and the list one of its panels; either may go first when
    // the composer is torn down, while focus changes are still reported.
    QPointer<QWidget> m_ring;
    QPointer<QWidget> m_topmost;
};

} // namespace velmora
