// SPDX-License-Identifier: BSD-3-Clause
#include "kel/output/IColumn.h"
#include "kel/frame/KELString.h"

#include "kel/frame/KELResources.h"
#include "kel/output/IPresentationList.h"
#include "kel/fields/KELEnumerationCodes.h"
#include "zed/ZedText.h"
#include "zed/value/TEnumeration.h"
#include "zed/value/TValue.h"

namespace {

// An enumeration with its number where the operator asked for it; a cell is
// one line, so what a value holds of control characters shows escaped.
std::string ShownText(const TValue& value)
{
    if (value.GetDatatype() == ZED_DT_ENUMERATION && value.IsPresent() && !value.HasReason())
        return KELEnumerationCodes::Text(value.ToString(), static_cast<const TEnumeration&>(value).GetCode());
    return ZedEscapeControls(value.ToString());
}

}  // namespace

IColumn::IColumn(unsigned int id, std::string title, int column, IPresentationList* list)
    : IPresentationElement(id), m_title(std::move(title)), m_column(column), m_pList(list)
{
}

IColumn::~IColumn() = default;

void IColumn::SetValue(const TValue& value)
{
    if (m_pList)
        m_pList->SetCurrentCell(m_column, QString::fromStdString(ShownText(value)));
}

void IColumn::SetToNotReturned()
{
    if (m_pList)
        m_pList->SetCurrentCell(m_column, QString::fromStdString(KELResources::String(KELString::kNotReturned)));
}
