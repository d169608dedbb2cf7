// SPDX-License-Identifier: BSD-3-Clause
#include "kel/model/IElementInfo.h"

#include "zed/value/TValue.h"

#include "zed/ZedAssert.h"

IElementInfo::IElementInfo() = default;

IElementInfo::IElementInfo(const TEntitySpec& entity, const std::string& name, const std::string& prefix)
    : m_entity(entity), m_name(name), m_prefix(prefix)
{
}

IElementInfo::IElementInfo(const IElementInfo& other)
    : m_isSetOfElement(other.m_isSetOfElement), m_isDisplayed(other.m_isDisplayed), m_id(other.m_id), m_dt(other.m_dt),
      m_entity(other.m_entity), m_presentationName(other.m_presentationName), m_name(other.m_name),
      m_completeId(other.m_completeId), m_prefix(other.m_prefix), m_hasDictType(other.m_hasDictType),
      m_defaultAllowed(other.m_defaultAllowed), m_default(other.m_default), m_required(other.m_required),
      m_units(other.m_units), m_description(other.m_description), m_range(other.m_range), m_access(other.m_access),
      m_maxSize(other.m_maxSize), m_keyword(other.m_keyword), m_startOffset(other.m_startOffset),
      m_stopOffset(other.m_stopOffset), m_maxColWidth(other.m_maxColWidth), m_defaultValue(other.m_defaultValue)
{
    if (other.m_pDictType)
        SetDictType(*other.m_pDictType);
    SetDictValue(other.m_pDictValue.get());
}

IElementInfo& IElementInfo::operator=(const IElementInfo& other)
{
    if (this != &other)
        *this = IElementInfo(other);
    return *this;
}

IElementInfo::~IElementInfo() = default;

void IElementInfo::SetDictTypeOf(const TValue& value)
{
    const TDictType* type = ZedHasDictType(value.GetDatatype()) ? value.GetDictType() : nullptr;
    SetHasDictType(type ? 1 : 0);
    if (type)
        SetDictType(*type);
}

void IElementInfo::SetAsInnerElement(unsigned int dt, const TDictType* type, ZED_T_DICT_ACCESS access)
{
    SetCompleteID("");
    SetDT(dt);
    SetHasDictType(type ? 1 : 0);
    if (type)
        SetDictType(*type);
    SetIsDisplayed(1);
    SetRequired(0);
    SetUnits("");
    SetAccess(access);
}

void IElementInfo::SetDictType(const TDictType& type)
{
    m_pDictType.reset();
    // Clone keeps the most derived class: records, constructors and enumerations stay what they are.
    m_pDictType = std::shared_ptr<const TDictType>(ZEDAssertAllocation(type.Clone().release()));
}

void IElementInfo::SetDictValue(const TDictValue* value)
{
    m_pDictValue.reset();
    if (!value)
        return;
    const ZED_T_DICT_OBJECT_TYPE kind = value->GetDictObjectType();
    if (kind != ZED_DICT_ARGUMENT && kind != ZED_DICT_ATTRIBUTE)
        return;
    m_pDictValue.reset(ZEDAssertAllocation(value->Clone().release()));
}
