// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <QAbstractTableModel>
#include <QStringList>

#include <vector>

/// The rows of a list output: text cells under column titles. Rows are only
/// ever added (a list is a log of what came back) and sorted; a cell is a
/// shared QString, so repeated texts cost one copy. A list may be bounded:
/// past its most rows, the oldest go, a tenth of the bound at a time so that
/// a flood costs one removal per many rows, and are counted.
class KEL_EXPORT KELListModel : public QAbstractTableModel {
public:
    explicit KELListModel(QObject* parent = nullptr);
    ~KELListModel() override;

    /// A new column at the end; its index.
    int AddColumn(const QString& title);
    /// A new row of empty cells at the end; its index.
    int AddRow();
    void SetCell(int row, int column, const QString& text);
    QString Cell(int row, int column) const;
    void Clear();
    /// At most this many rows (0: no bound); more drop the oldest.
    void SetMostRows(std::size_t most);
    /// Rows dropped for the bound since the list began.
    std::size_t GetDroppedRows() const { return m_dropped; }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    /// Ascending or descending by the column's text, ignoring case, in the
    /// operator's locale; rows that compare equal keep their order.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

private:
    QStringList m_titles;
    std::vector<std::vector<QString>> m_rows;
    std::size_t m_most = 0;
    std::size_t m_dropped = 0;
};
