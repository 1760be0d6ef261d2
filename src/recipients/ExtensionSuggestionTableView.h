// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QPointer>
#include <QTableView>

#include <optional>

namespace velmora {

class ExtensionSuggestionController;

// The suggestion list: one column, no headers or grid, rows 22 high, one row selected
// at a time. It never takes the focus from the field being typed in, and a single click on a
// row takes that row into the field.
class ExtensionSuggestionTableView : public QTableView {
    Q_OBJECT
public:
    explicit ExtensionSuggestionTableView(const QRect& frame, QWidget* parent = nullptr);

    ExtensionSuggestionController* suggestioncontroller() const { return m_suggestioncontroller; }
    void setSuggestioncontroller(ExtensionSuggestionController* controller);

protected:
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    QPointer<ExtensionSuggestionController> m_suggestioncontroller;
    // When the last double click came, so that a third quick click does not count as a first.
    std::optional<quint64> m_doubleClickTime;
};

} // namespace velmora
