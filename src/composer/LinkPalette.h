// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QObject>

class QTextEdit;

namespace velmora {

// Keeps the links of a text view in the palette's link colour. Qt's HTML reader gives each link
// the link colour of the palette at the time of reading, as a fixed colour of the text; when the
// palette changes (a switch to a dark theme) this gives the links that still have the old
// colour the new one, so they stay readable. Links the HTML coloured itself keep their colour.
// The recolouring is one step of the view's undo history. Owned by the view it watches.
class LinkPalette : public QObject {
    Q_OBJECT
public:
    explicit LinkPalette(QTextEdit* view);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void recolour();

    QTextEdit* m_view;
    QColor m_link; // the link colour the view's links were given last
};

} // namespace velmora
