// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <QTreeWidget>

#include <memory>

/// The two-column list of the console's output windows. The selected rows
/// (their first two columns) are copied to the clipboard or dragged out as
/// plain text; a click on a column sorts by it, always ascending, ignoring
/// case in the operator's locale. Each item's data (Qt::UserRole of column 0)
/// is its row index, renumbered after every sort.
class KEL_EXPORT IListViewOutput : public QTreeWidget {
public:
    explicit IListViewOutput(QWidget* parent = nullptr);
    ~IListViewOutput() override;

    /// A row at the end, owned by the list, sorting by the list's rule.
    QTreeWidgetItem* AddRow(const QString& first, const QString& second);
    /// A row in no list yet, sorting by the list's rule once added: what is
    /// set on it before AppendRow costs no change notifications.
    static std::unique_ptr<QTreeWidgetItem> MakeRow(const QString& first, const QString& second);
    /// Adds a made row at the end; the list owns it from then on.
    QTreeWidgetItem* AppendRow(std::unique_ptr<QTreeWidgetItem> row);
    /// Deletes the first count rows at once; the rest keep their selection
    /// and the current row stays current.
    void RemoveFirstRows(int count);
    /// The number of rows copied; with none selected the clipboard is left alone.
    int CopyToClipboard();
    /// Sorts by the column, as a click on its header does.
    void OnColumnclick(int column);
    /// The text of the selected rows: column 0, string 4021, column 1, string 4020.
    QString SelectedText() const;

protected:
    void UpdateItemData();
    void startDrag(Qt::DropActions supportedActions) override;
};
