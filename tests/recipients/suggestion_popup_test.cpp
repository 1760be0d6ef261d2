// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "RecipientsHost.h"
#include "recipients/ExtensionSuggestionCellView.h"
#include "recipients/ExtensionSuggestionTableView.h"
#include "recipients/TableViewZemlo.h"

#include <QScrollBar>

#include <atomic>
#include <thread>

using namespace velmora;
using velmora::test::RecipientsTest;

namespace {

QPoint rowCenter(QTableView* table, int row) {
    return table->visualRect(table->model()->index(row, 0)).center();
}

TEST_F(RecipientsTest, ThirtyRowsScrollOnlyWhenTheSelectionLeavesTheViewFromAnyThread) {
    typeAndWait(QStringLiteral("bulk"), 30);
    QTableView* table = host->controller->table();
    // No rank, nothing glued to the text; a group shows its name and member count.
    EXPECT_EQ(host->rowTexts().first(), QStringLiteral("Bulk <bulk00@list.test>"));
    const auto team = std::make_shared<ExtensionGroup>();
    team->setName(QStringLiteral("Team"));
    EXPECT_EQ(ExtensionSuggestionCellView::textForObject(team), QStringLiteral("Team"));
    EXPECT_EQ(table->rowHeight(0), 22);
    // 200 points show nine whole rows and part of the tenth.
    EXPECT_EQ(TableViewZemlo::visibleRows(table), (TableViewZemlo::RowRange{0, 10}));
    EXPECT_GT(table->verticalScrollBar()->maximum(), 0);
    for (int i = 0; i < 8; ++i)
        QTest::keyClick(host->field, Qt::Key_Down);
    EXPECT_EQ(TableViewZemlo::maxSelectedRow(table), 8);
    EXPECT_EQ(table->verticalScrollBar()->value(), 0);
    QTest::keyClick(host->field, Qt::Key_Down);
    EXPECT_GT(table->verticalScrollBar()->value(), 0);
    for (int i = 0; i < 40; ++i)
        QTest::keyClick(host->field, Qt::Key_Down);
    EXPECT_EQ(TableViewZemlo::maxSelectedRow(table), 29);
    const TableViewZemlo::RowRange last = TableViewZemlo::visibleRows(table);
    EXPECT_EQ(last.location + last.length, 30);

    // The selection helpers called from another thread run on the main thread. Hidden first, so
    // that no repaint meanwhile hands image work to Qt's own worker threads, whose hand-over the
    // thread sanitizer cannot see in an uninstrumented Qt.
    host->hide();
    std::atomic<int> seen = -2;
    std::atomic<bool> done = false;
    std::thread worker([&] {
        TableViewZemlo::SelectRow(table, 12, true, false);
        seen = TableViewZemlo::maxSelectedRow(table);
        TableViewZemlo::SelectRow(table, -5); // clamped to the first row
        done = true;
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return done.load(); }, 5000));
    worker.join();
    EXPECT_EQ(seen, 12);
    EXPECT_EQ(TableViewZemlo::minSelectedRow(table), 0);
    TableViewZemlo::SelectRow(table, 99); // clamped to the last row
    EXPECT_EQ(TableViewZemlo::maxSelectedRow(table), 29);
}

TEST_F(RecipientsTest, ASingleClickTakesARowAndADoubleClickTakesItOnce) {
    typeAndWait(QStringLiteral("ann"), 3);
    QTableView* table = host->controller->table();
    // Below the last row: nothing taken, the selection stays.
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, QPoint(50, 150));
    EXPECT_EQ(host->manageCalls, 0);
    EXPECT_EQ(TableViewZemlo::maxSelectedRow(table), 0);
    EXPECT_TRUE(host->controller->visible());

    // Through the window, as the window system delivers a double click.
    QTest::mouseDClick(host->windowHandle(), Qt::LeftButton, {},
                       table->viewport()->mapTo(host.get(), rowCenter(table, 1)));
    EXPECT_EQ(host->tokens(), QStringList{QStringLiteral("[Ann Smith <ann.smith@x.test>]")});
    EXPECT_EQ(host->manageCalls, 1);
    EXPECT_FALSE(host->controller->visible());

    // The list takes no focus: typing goes on in the field.
    host->field->setFocus();
    QTest::keyClicks(host->field, QStringLiteral("hann"));
    ASSERT_TRUE(host->waitForRows(1));
    QTest::mouseClick(host->windowHandle(), Qt::LeftButton, {},
                      table->viewport()->mapTo(host.get(), rowCenter(table, 0)));
    EXPECT_TRUE(host->field->hasFocus());
    EXPECT_EQ(host->tokens(), (QStringList{QStringLiteral("[Ann Smith <ann.smith@x.test>]"),
                                           QStringLiteral("[<hannah@w.test>]")}));
    EXPECT_EQ(host->manageCalls, 2);
    // No modifier toggles the one selected row off.
    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::ControlModifier, rowCenter(table, 0));
    EXPECT_EQ(TableViewZemlo::maxSelectedRow(table), 0);
}

} // namespace
