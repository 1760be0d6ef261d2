// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "recipients/SuggestionListModel.h"

#include "recipients/ExtensionSuggestionCellView.h"

namespace velmora {

void SuggestionListModel::setRows(const Suggestions& rows) {
    beginResetModel();
    m_rows = rows;
    endResetModel();
}

std::optional<Recipient> SuggestionListModel::objectAt(int row) const {
    if (row < 0 || row >= m_rows.size())
        return std::nullopt;
    return m_rows.at(row);
}

int SuggestionListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_rows.size());
}

int SuggestionListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : 1;
}

QVariant SuggestionListModel::data(const QModelIndex& index, int role) const {
    const auto object = objectAt(index.row());
    if (!object || index.column() != 0)
        return {};
    if (role == Qt::DisplayRole)
        return ExtensionSuggestionCellView::textForObject(*object);
    if (role == ObjectRole)
        return QVariant::fromValue(*object);
    return {};
}

Qt::ItemFlags SuggestionListModel::flags(const QModelIndex& index) const {
    // Selectable, never editable.
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::NoItemFlags;
}

QVariant SuggestionListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section != 0)
        return {};
    if (role == Qt::DisplayRole)
        return QStringLiteral("");
    if (role == ColumnIdentifierRole)
        return QStringLiteral("col");
    return {};
}

} // namespace velmora
