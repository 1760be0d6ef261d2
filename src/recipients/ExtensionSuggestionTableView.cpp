// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "recipients/ExtensionSuggestionTableView.h"

#include "recipients/ExtensionSuggestionCellView.h"
#include "recipients/ExtensionSuggestionController.h"

#include <QGuiApplication>
#include <QHeaderView>
#include <QMouseEvent>
#include <QStyleHints>

namespace velmora {

ExtensionSuggestionTableView::ExtensionSuggestionTableView(const QRect& frame, QWidget* parent)
    : QTableView(parent) {
    setGeometry(frame);
    horizontalHeader()->hide();
    horizontalHeader()->setStretchLastSection(true);
    verticalHeader()->hide();
    verticalHeader()->setMinimumSectionSize(0);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(ExtensionSuggestionCellView::kRowHeight);
    setShowGrid(false);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setFrameShape(QFrame::NoFrame);
    setWordWrap(false);
    // The field keeps the keyboard; the list is steered through it.
    setFocusPolicy(Qt::NoFocus);
    setItemDelegate(new ExtensionSuggestionCellView(this));
    // The list never has the keyboard, so its selection takes the light colour of a list
    // without focus, under which the cells' black text stays easy to read.
    QPalette colours = palette();
    const QColor base = colours.color(QPalette::Base);
    const QColor highlight = colours.color(QPalette::Highlight);
    const QColor unfocused = QColor::fromRgbF(base.redF() * 0.7 + highlight.redF() * 0.3,
                                              base.greenF() * 0.7 + highlight.greenF() * 0.3,
                                              base.blueF() * 0.7 + highlight.blueF() * 0.3);
    for (const auto group : {QPalette::Active, QPalette::Inactive})
        colours.setColor(group, QPalette::Highlight, unfocused);
    setPalette(colours);
}

void ExtensionSuggestionTableView::setSuggestioncontroller(
    ExtensionSuggestionController* controller) {
    m_suggestioncontroller = controller;
}

QItemSelectionModel::SelectionFlags
ExtensionSuggestionTableView::selectionCommand(const QModelIndex& index, const QEvent*) const {
    // Exactly one row stays selected: no modifier toggles it off or adds another.
    return index.isValid() ? QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows
                           : QItemSelectionModel::NoUpdate;
}

void ExtensionSuggestionTableView::mousePressEvent(QMouseEvent* event) {
    const QModelIndex index = indexAt(event->position().toPoint());
    // Below the last row there is nothing to take, and the one selected row stays selected.
    if (!index.isValid())
        return;
    const bool firstClick = !m_doubleClickTime ||
                            event->timestamp() - *m_doubleClickTime >
                                quint64(QGuiApplication::styleHints()->mouseDoubleClickInterval());
    if (index.column() == 0 && firstClick && event->button() == Qt::LeftButton &&
        m_suggestioncontroller)
        m_suggestioncontroller->insertObjectFoRow(index.row());
    QTableView::mousePressEvent(event);
}

void ExtensionSuggestionTableView::mouseDoubleClickEvent(QMouseEvent* event) {
    // The second click of a double click takes nothing: the first one did.
    m_doubleClickTime = event->timestamp();
    QTableView::mouseDoubleClickEvent(event);
}

} // namespace velmora
