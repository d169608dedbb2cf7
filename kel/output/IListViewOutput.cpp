// SPDX-License-Identifier: BSD-3-Clause
#include "kel/output/IListViewOutput.h"
#include "kel/frame/KELString.h"

#include "kel/frame/KELResources.h"

#include <QApplication>
#include <QClipboard>
#include <QDrag>
#include <QHeaderView>
#include <QMimeData>

#include <algorithm>

namespace {

// The locale-aware, case-insensitive order of the design's lists.
class KELListItem : public QTreeWidgetItem {
public:
    using QTreeWidgetItem::QTreeWidgetItem;
    bool operator<(const QTreeWidgetItem& other) const override
    {
        const int column = treeWidget() ? treeWidget()->sortColumn() : 0;
        return QString::localeAwareCompare(text(column).toCaseFolded(), other.text(column).toCaseFolded()) < 0;
    }
};

// Shows the wait cursor for a scope.
class WaitCursor {
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

}  // namespace

IListViewOutput::IListViewOutput(QWidget* parent) : QTreeWidget(parent)
{
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragOnly);
    // Sorting is ours: always ascending, whatever the header would toggle.
    setSortingEnabled(false);
    header()->setSectionsClickable(true);
    connect(header(), &QHeaderView::sectionClicked, this, [this](int column) { OnColumnclick(column); });
}

QTreeWidgetItem* IListViewOutput::AddRow(const QString& first, const QString& second)
{
    return AppendRow(MakeRow(first, second));
}

std::unique_ptr<QTreeWidgetItem> IListViewOutput::MakeRow(const QString& first, const QString& second)
{
    return std::make_unique<KELListItem>(QStringList{first, second});
}

QTreeWidgetItem* IListViewOutput::AppendRow(std::unique_ptr<QTreeWidgetItem> row)
{
    row->setData(0, Qt::UserRole, topLevelItemCount());
    QTreeWidgetItem* item = row.release();
    addTopLevelItem(item);
    return item;
}

void IListViewOutput::RemoveFirstRows(int count)
{
    count = std::min(count, topLevelItemCount());
    if (count <= 0)
        return;
    // The tree takes rows out one at a time, each moving every row after it:
    // taking all of them and putting the kept ones back moves each row once.
    const int current = currentIndex().row();
    const QModelIndexList selected = selectionModel()->selectedRows();
    QList<QTreeWidgetItem*> rows = invisibleRootItem()->takeChildren();
    for (int i = 0; i < count; ++i)
        delete rows[i];
    rows.remove(0, count);
    addTopLevelItems(rows);
    for (const QModelIndex& row : selected)
        if (row.row() >= count)
            topLevelItem(row.row() - count)->setSelected(true);
    if (current >= count)
        setCurrentItem(topLevelItem(current - count), 0, QItemSelectionModel::NoUpdate);
}

IListViewOutput::~IListViewOutput() = default;

QString IListViewOutput::SelectedText() const
{
    const QString end = QString::fromStdString(KELResources::String(KELString::kLineEnd));
    const QString between = QString::fromStdString(KELResources::String(KELString::kColumnSeparator));
    QString text;
    // In display order, whatever order they were selected in.
    for (int i = 0; i < topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = topLevelItem(i);
        if (row->isSelected())
            text += row->text(0) + between + row->text(1) + end;
    }
    return text;
}

int IListViewOutput::CopyToClipboard()
{
    const WaitCursor wait;
    const QString text = SelectedText();
    if (text.isEmpty())
        return 0;
    QApplication::clipboard()->setText(text);
    return static_cast<int>(selectedItems().size());
}

void IListViewOutput::startDrag(Qt::DropActions)
{
    const QString text = SelectedText();
    if (text.isEmpty())
        return;
    auto* data = new QMimeData;
    data->setText(text);
    auto* drag = new QDrag(this);
    drag->setMimeData(data);
    drag->exec(Qt::CopyAction);
}

void IListViewOutput::OnColumnclick(int column)
{
    const WaitCursor wait;
    sortItems(column, Qt::AscendingOrder);
    header()->setSortIndicator(column, Qt::AscendingOrder);
    UpdateItemData();
}

void IListViewOutput::UpdateItemData()
{
    for (int i = 0; i < topLevelItemCount(); ++i)
        topLevelItem(i)->setData(0, Qt::UserRole, i);
}
