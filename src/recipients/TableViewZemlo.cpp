// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "recipients/TableViewZemlo.h"

#include <QItemSelectionModel>
#include <QTableView>
#include <QThread>

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace velmora::TableViewZemlo {

namespace {

// Runs work on the table's thread, waiting for it when called from elsewhere. The wait is on a
// standard mutex and condition (visible to the thread sanitizer, unlike a blocking queued
// call). A table deleted before the work ran drops the call, and the wait ends too.
template <typename Work> auto onTableThread(QTableView* table, Work work) {
    using Result = decltype(work());
    if (QThread::currentThread() == table->thread())
        return work();
    struct Handoff {
        std::mutex mutex;
        std::condition_variable finished;
        bool done = false;
        Result result{};

        void finish() {
            const std::lock_guard lock(mutex);
            done = true;
            finished.notify_all();
        }
    };
    // Owned by the queued call; its end also ends the wait when the call was dropped unrun.
    // (Where the call's last copy ends is Qt's affair: it may be this thread.)
    struct DropGuard {
        explicit DropGuard(std::shared_ptr<Handoff> h)
            : handoff(std::move(h)) {}
        ~DropGuard() { handoff->finish(); }
        std::shared_ptr<Handoff> handoff;
    };
    auto handoff = std::make_shared<Handoff>();
    auto guard = std::make_shared<DropGuard>(handoff);
    QMetaObject::invokeMethod(
        table,
        [guard, work] {
            Handoff& h = *guard->handoff;
            {
                const std::lock_guard lock(h.mutex);
                h.result = work();
            }
            h.finish();
        },
        Qt::QueuedConnection);
    guard.reset();
    std::unique_lock lock(handoff->mutex);
    handoff->finished.wait(lock, [&] { return handoff->done; });
    return handoff->result;
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
