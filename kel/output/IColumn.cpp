#include "kel/output/IColumn.h"

#include "kel/frame/KELResources.h"
#include "kel/output/IPresentationList.h"
#include "zed/value/TValue.h"

IColumn::IColumn(unsigned int id, std::string title, int column, IPresentationList* list)
    : IPresentationElement(id), m_title(std::move(title)), m_column(column), m_pList(list)
{
}

IColumn::~IColumn() = default;

void IColumn::SetValue(const TValue& value)
{
    if (m_pList)
        m_pList->SetCurrentCell(m_column, QString::fromStdString(value.ToString()));
}

void IColumn::SetToNotReturned()
{
    if (m_pList)
        m_pList->SetCurrentCell(m_column, QString::fromStdString(KELResources::String(4025)));
}
