// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "recipients/SuggestionMatcher.h"

#include <QAbstractTableModel>

namespace velmora {

// The rows of the suggestion list: one column of addresses and groups, replaced all at once.
class SuggestionListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    // The row's address or group, for the cell that paints it.
    static constexpr int ObjectRole = Qt::UserRole + 1;
    // The column's identifier ("col") in its header data; its title is empty.
    static constexpr int ColumnIdentifierRole = Qt::UserRole + 2;

    using QAbstractTableModel::QAbstractTableModel;

    void setRows(const Suggestions& rows);
    const Suggestions& rows() const { return m_rows; }
    // The row's object, or none when there is no such row.
    std::optional<Recipient> objectAt(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    // The cell's text as DisplayRole; the object as ObjectRole.
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    Suggestions m_rows;
};

} // namespace velmora

Q_DECLARE_METATYPE(velmora::Recipient)
