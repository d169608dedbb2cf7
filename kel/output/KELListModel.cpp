// SPDX-License-Identifier: BSD-3-Clause
#include "kel/output/KELListModel.h"

#include <algorithm>
#include <numeric>

KELListModel::KELListModel(QObject* parent) : QAbstractTableModel(parent) {}

KELListModel::~KELListModel() = default;

int KELListModel::AddColumn(const QString& title)
{
    const int column = static_cast<int>(m_titles.size());
    beginInsertColumns(QModelIndex(), column, column);
    m_titles.push_back(title);
    for (std::vector<QString>& row : m_rows)
        row.resize(m_titles.size());
    endInsertColumns();
    return column;
}

void KELListModel::SetMostRows(std::size_t most) { m_most = most; }

int KELListModel::AddRow()
{
    if (m_most && m_rows.size() >= m_most) {
        const std::size_t drop =
            std::min(m_rows.size(), m_rows.size() - m_most + std::max<std::size_t>(1, m_most / 10));
        beginRemoveRows(QModelIndex(), 0, static_cast<int>(drop) - 1);
        m_rows.erase(m_rows.begin(), m_rows.begin() + static_cast<std::ptrdiff_t>(drop));
        endRemoveRows();
        m_dropped += drop;
    }
    const int row = static_cast<int>(m_rows.size());
    beginInsertRows(QModelIndex(), row, row);
    m_rows.emplace_back(m_titles.size());
    endInsertRows();
    return row;
}

void KELListModel::SetCell(int row, int column, const QString& text)
{
    if (row < 0 || row >= rowCount() || column < 0 || column >= columnCount())
        return;
    m_rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] = text;
    const QModelIndex at = index(row, column);
    emit dataChanged(at, at, {Qt::DisplayRole});
}

QString KELListModel::Cell(int row, int column) const
{
    if (row < 0 || row >= rowCount() || column < 0 || column >= columnCount())
        return {};
    return m_rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
}

void KELListModel::Clear()
{
    beginResetModel();
    m_rows.clear();
    endResetModel();
}

int KELListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int KELListModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_titles.size());
}

QVariant KELListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    return Cell(index.row(), index.column());
}

QVariant KELListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= columnCount())
        return {};
    return m_titles.at(section);
}

void KELListModel::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= columnCount())
        return;
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    // Each text is folded once, not once per comparison.
    std::vector<QString> keys(m_rows.size());
    for (std::size_t i = 0; i < m_rows.size(); ++i)
        keys[i] = m_rows[i][static_cast<std::size_t>(column)].toCaseFolded();
    std::vector<std::size_t> order_(m_rows.size());
    std::iota(order_.begin(), order_.end(), 0);
    std::stable_sort(order_.begin(), order_.end(), [&](std::size_t a, std::size_t b) {
        const int c = QString::localeAwareCompare(keys[a], keys[b]);
        return order == Qt::AscendingOrder ? c < 0 : c > 0;
    });
    std::vector<std::vector<QString>> sorted;
    sorted.reserve(m_rows.size());
    std::vector<int> newRow(m_rows.size());
    for (std::size_t i = 0; i < order_.size(); ++i) {
        sorted.push_back(std::move(m_rows[order_[i]]));
        newRow[order_[i]] = static_cast<int>(i);
    }
    m_rows = std::move(sorted);
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex& old : before)
        after.push_back(index(newRow[static_cast<std::size_t>(old.row())], old.column()));
    changePersistentIndexList(before, after);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}
