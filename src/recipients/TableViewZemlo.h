// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

class QTableView;

namespace velmora {

// The selection helpers every suggestion table uses. Called from another thread, each runs on
// the table's (the main) thread and waits for it, without a time limit.
namespace TableViewZemlo {

struct RowRange {
    int location = 0;
    int length = 0;
    friend bool operator==(const RowRange&, const RowRange&) = default;
};

// The largest (smallest) selected row, or -1 when nothing is selected.
int maxSelectedRow(QTableView* table);
int minSelectedRow(QTableView* table);

void SelectRow(QTableView* table, int row);
void SelectRow(QTableView* table, int row, bool scroll, bool extend);
void SelectRow(QTableView* table, int row, bool scroll, bool extend, bool firstResponder);
// Clamps row to the table's rows (never wrapping), selects exactly it (added to the selection
// when extending), scrolls it into view and focuses the table when asked. With no rows nothing
// is selected.
void SelectRowInternal(QTableView* table, int row, bool scroll, bool extend, bool firstResponder);
// The row after the last selected one (the first row when none is), scrolled into view.
void SelectNext(QTableView* table);
// The row before the first selected one (the first row when none is), scrolled into view.
void SelectPrev(QTableView* table);
// The rows that lie, whole or in part, in the visible part of the table.
RowRange visibleRows(QTableView* table);

} // namespace TableViewZemlo

} // namespace velmora
