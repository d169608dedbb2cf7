// SPDX-License-Identifier: BSD-3-Clause
#include "kel/output/IPresentationList.h"
#include "kel/frame/KELString.h"

#include "kel/controls/KELFilterBox.h"

#include "kel/config/IConfigList.h"
#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/frame/KELResources.h"
#include "kel/model/IElementInfo.h"
#include "kel/model/IPresentationContainer.h"
#include "kel/output/IColumn.h"
#include "kel/output/KELListModel.h"

#include <QHeaderView>
#include <QLocale>
#include <QTimer>

#include <map>

namespace {

// The ids of the element columns in their current visual order.
std::vector<unsigned int> VisualOrder(const IPresentationList& list, const IPresentationContainer& container)
{
    std::map<int, unsigned int> byVisual;
    container.ForEachElement([&](IPresentationElement& element) {
        if (auto* column = dynamic_cast<IColumn*>(&element))
            byVisual[list.header()->visualIndex(column->GetColumn())] = column->GetID();
    });
    std::vector<unsigned int> ids;
    for (const auto& [visual, id] : byVisual)
        ids.push_back(id);
    return ids;
}

std::string Join(const std::vector<std::string>& items)
{
    std::string text;
    for (const std::string& item : items)
        text += (text.empty() ? "" : ",") + item;
    return text;
}

}  // namespace

IPresentationList::IPresentationList(KELConfigContext* context, QWidget* parent)
    : QTreeView(parent), IPresentation(context), m_pModel(new KELListModel(this)),
      m_pFilter(new KELFilterBox(this, [this](const QString& text) { ApplyFilter(text); }))
{
    setModel(m_pModel);
    setRootIsDecorated(false);
    setUniformRowHeights(true);  // what keeps 100,000 rows smooth
    setAlternatingRowColors(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSortingEnabled(true);
    header()->setSectionsMovable(true);
    header()->setStretchLastSection(true);
    m_pModel->AddColumn(QString::fromStdString(KELResources::String(KELString::kEntity)));
    // A row is judged when its cells are in: each cell's change judges its row again.
    connect(m_pModel, &QAbstractItemModel::dataChanged, this, [this](const QModelIndex& from, const QModelIndex& to) {
        if (!m_filter.isEmpty())
            for (int row = from.row(); row <= to.row(); ++row)
                FilterRow(row);
        if (!m_filter.isEmpty())
            CountSoon();
    });
    connect(m_pModel, &QAbstractItemModel::layoutChanged, this, [this] { ApplyFilter(m_filter); });
    connect(m_pModel, &QAbstractItemModel::rowsInserted, this, [this] { CountSoon(); });
    connect(m_pModel, &QAbstractItemModel::rowsRemoved, this, [this] { CountSoon(); });
    connect(m_pModel, &QAbstractItemModel::modelReset, this, [this] { CountSoon(); });
}

void IPresentationList::CountSoon()
{
    if (m_countDue)
        return;
    m_countDue = true;
    QTimer::singleShot(0, this, [this] { Count(); });
}

void IPresentationList::Count()
{
    m_countDue = false;
    const int rows = m_pModel->rowCount();
    const QLocale locale;
    const QString all = locale.toString(rows) + (rows == 1 ? QStringLiteral(" row") : QStringLiteral(" rows"));
    if (m_filter.isEmpty()) {
        m_pFilter->SetCount(rows ? all : QString());
        return;
    }
    int shown = 0;
    for (int row = 0; row < rows; ++row)
        shown += isRowHidden(row, QModelIndex()) ? 0 : 1;
    m_pFilter->SetCount(locale.toString(shown) + QStringLiteral(" of ") + all);
}

void IPresentationList::FilterRow(int row)
{
    bool shown = m_filter.isEmpty();
    for (int column = 0; !shown && column < m_pModel->columnCount(); ++column)
        shown = KELFilterBox::Matches(m_filter, m_pModel->index(row, column).data().toString());
    setRowHidden(row, QModelIndex(), !shown);
}

void IPresentationList::ApplyFilter(const QString& text)
{
    if (text.isEmpty() && m_filter.isEmpty())
        return;  // nothing hidden, nothing to hide
    m_filter = text;
    for (int row = 0; row < m_pModel->rowCount(); ++row)
        FilterRow(row);
    Count();
}

void IPresentationList::updateGeometries()
{
    QTreeView::updateGeometries();
    if (m_placing)
        return;
    // The tree keeps its header in the room above its viewport; the filter
    // line goes above that, and the header moves down by its height.
    m_placing = true;
    const int headerHeight = header()->isHidden() ? 0 : header()->height();
    setViewportMargins(0, m_pFilter->Room() + headerHeight, 0, 0);
    const QRect view = viewport()->geometry();
    header()->setGeometry(view.left(), view.top() - headerHeight, view.width(), headerHeight);
    m_pFilter->Place(0);
    m_placing = false;
}

IPresentationList::~IPresentationList()
{
    // Columns point back at the list: they go first.
    m_pContainer.reset();
}

IPresentationContainer* IPresentationList::CreateContainer()
{
    m_pContainer = std::make_unique<IPresentationContainer>();
    return m_pContainer.get();
}

std::unique_ptr<IPresentationElement> IPresentationList::CreateElement(IElementInfo& info)
{
    const std::string& name = info.GetPresentationName().empty() ? info.GetName() : info.GetPresentationName();
    const int column = m_pModel->AddColumn(QString::fromStdString(name));
    return std::make_unique<IColumn>(static_cast<unsigned int>(info.GetID()), name, column, this);
}

void IPresentationList::OnInitialUpdate()
{
    KELConfigContext* context = ConfigurationContext();
    if (!context || !m_pContainer || m_section.empty())
        return;
    std::string hidden, positions, widths;
    context->GetConfigString(m_section, ".Hidden", hidden, "", 1);
    context->GetConfigString(m_section, ".Position", positions, "", 1);
    context->GetConfigString(m_section, ".Width", widths, "", 1);
    const IConfigList hiddenList(hidden, ','), positionList(positions, ','), widthList(widths, ',');
    std::map<long, int> placed;  // index in the position list to logical column
    m_pContainer->ForEachElement([&](IPresentationElement& element) {
        auto* column = dynamic_cast<IColumn*>(&element);
        if (!column)
            return;
        const std::string id = std::to_string(column->GetID());
        setColumnHidden(column->GetColumn(), !hidden.empty() && hiddenList.FindAndGetIndex(id.c_str()) >= 0);
        if (const long at = positions.empty() ? -1 : positionList.FindAndGetIndex(id.c_str()); at >= 0)
            placed[at] = column->GetColumn();
        // ".Width" holds "id:width" items.
        for (long it = widths.empty() ? -1 : widthList.GetHeadPosition(); it >= 0;) {
            std::string item;
            it = widthList.GetNext(item, it);
            const std::size_t colon = item.find(':');
            if (colon != std::string::npos && item.substr(0, colon) == id)
                setColumnWidth(column->GetColumn(), std::max(10, std::atoi(item.c_str() + colon + 1)));
        }
    });
    // Listed columns come first after the entity, in the list's order.
    int visual = 1;
    for (const auto& [at, logical] : placed)
        header()->moveSection(header()->visualIndex(logical), visual++);
}

void IPresentationList::SaveColumnSettings() const
{
    KELConfigContext* context = ConfigurationContext();
    IConfiguration* user = context ? context->GetUserConfigFile() : nullptr;
    if (!user || !m_pContainer || m_section.empty())
        return;
    std::vector<std::string> positions, hidden, widths;
    for (unsigned int id : VisualOrder(*this, *m_pContainer)) {
        positions.push_back(std::to_string(id));
        const auto* column = dynamic_cast<const IColumn*>(m_pContainer->FindElement(static_cast<int>(id)));
        if (!column)
            continue;
        if (isColumnHidden(column->GetColumn()))
            hidden.push_back(std::to_string(id));
        widths.push_back(std::to_string(id) + ":" + std::to_string(columnWidth(column->GetColumn())));
    }
    user->SetString(m_section, ".Position", Join(positions), 1);
    user->SetString(m_section, ".Hidden", Join(hidden), 1);
    user->SetString(m_section, ".Width", Join(widths), 1);
}

int IPresentationList::BeginRow(const std::string& entity)
{
    m_currentRow = m_pModel->AddRow();
    m_pModel->SetCell(m_currentRow, 0, QString::fromStdString(entity));
    return m_currentRow;
}

void IPresentationList::SetCurrentCell(int column, const QString& text)
{
    if (m_currentRow >= 0)
        m_pModel->SetCell(m_currentRow, column, text);
}
