#include "recipients/TableViewZemlo.h"

#include <QItemSelectionModel>
#include <QTableView>
#include <QThread>

#include <algorithm>

namespace velmora::TableViewZemlo {

namespace {

// Runs work on the table's thread, waiting for it when called from elsewhere.
template <typename Work> auto onTableThread(QTableView* table, Work work) {
    if (QThread::currentThread() == table->thread())
        return work();
    decltype(work()) result{};
    QMetaObject::invokeMethod(
        table, [&] { result = work(); }, Qt::BlockingQueuedConnection);
    return result;
}

QList<int> selectedRows(QTableView* table) {
    QList<int> rows;
    if (const QItemSelectionModel* selection = table->selectionModel()) {
        for (const QModelIndex& index : selection->selectedIndexes())
            rows.append(index.row());
    }
    return rows;
}

int rowCount(QTableView* table) {
    return table->model() ? table->model()->rowCount() : 0;
}

} // namespace

int maxSelectedRow(QTableView* table) {
    return onTableThread(table, [table] {
        const QList<int> rows = selectedRows(table);
        return rows.isEmpty() ? -1 : *std::max_element(rows.begin(), rows.end());
    });
}

int minSelectedRow(QTableView* table) {
    return onTableThread(table, [table] {
        const QList<int> rows = selectedRows(table);
        return rows.isEmpty() ? -1 : *std::min_element(rows.begin(), rows.end());
    });
}

void SelectRow(QTableView* table, int row) {
    SelectRow(table, row, false, false);
}

void SelectRow(QTableView* table, int row, bool scroll, bool extend) {
    SelectRow(table, row, scroll, extend, false);
}

void SelectRow(QTableView* table, int row, bool scroll, bool extend, bool firstResponder) {
    onTableThread(table, [=] {
        SelectRowInternal(table, row, scroll, extend, firstResponder);
        return true;
    });
}

void SelectRowInternal(QTableView* table, int row, bool scroll, bool extend, bool firstResponder) {
    const int last = rowCount(table) - 1;
    row = std::min(std::max(row, 0), last);
    if (row >= 0 && table->selectionModel()) {
        const QModelIndex index = table->model()->index(row, 0);
        const auto flags =
            (extend ? QItemSelectionModel::Select : QItemSelectionModel::ClearAndSelect) |
            QItemSelectionModel::Rows;
        table->selectionModel()->setCurrentIndex(index, flags);
        if (scroll)
            table->scrollTo(index);
    }
    if (firstResponder)
        table->setFocus();
}

void SelectNext(QTableView* table) {
    SelectRow(table, maxSelectedRow(table) + 1, true, false);
}

void SelectPrev(QTableView* table) {
    SelectRow(table, minSelectedRow(table) - 1, true, false);
}

RowRange visibleRows(QTableView* table) {
    return onTableThread(table, [table] {
        const int rows = rowCount(table);
        const QRect visible = table->viewport()->rect();
        if (rows == 0 || visible.isEmpty())
            return RowRange{};
        const int first = std::max(0, table->rowAt(visible.top()));
        int last = table->rowAt(visible.bottom());
        if (last < 0)
            last = rows - 1;
        return RowRange{first, last - first + 1};
    });
}

} // namespace velmora::TableViewZemlo
