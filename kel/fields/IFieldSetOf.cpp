// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/IFieldSetOf.h"

#include "kel/fields/IFieldContainer.h"
#include "kel/frame/KELTrace.h"
#include "zed/TException.h"
#include "zed/value/TSetOf.h"

// ---- the set ----------------------------------------------------------------

IFieldSetOf::IFieldSetOf(IElementInfo& info, IContainer* container) : KELElementsField(info, container) {}

IFieldSetOf::~IFieldSetOf() = default;

void IFieldSetOf::SetDictType(const TDictType* type)
{
    m_pElementType.reset();
    if (type && type->GetDictObjectType() == ZED_DICT_TYPE_CONSTRUCTOR)
        m_pElementType = type->ShareAs<TDictTypeConstructorOf>();
}

void IFieldSetOf::Create(unsigned int& id, IElementInfo& info)
{
    if (info.HasDictType())
        SetDictType(info.GetDictType());
    CreateFrame(id, info, false);
}

bool IFieldSetOf::InitElementInfo()
{
    if (m_elementInfoReady)
        return true;
    if (!m_pElementType || !m_pElementType->GetElementType()) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELFieldSetOf", this)
            << "KEL : IFieldSetOf::InitElementInfo, m_pDictType must be valid, unable to create a new field !";
        return false;
    }
    const TDictType& element = *m_pElementType->GetElementType();
    m_elementInfo = IElementInfo();
    m_elementInfo.SetID(static_cast<int>(element.GetID()));
    m_elementInfo.SetName(element.GetName());
    m_elementInfo.SetPresentationName(element.GetPresentationName());
    m_elementInfo.SetAsInnerElement(element.GetDatatype(), &element, GetAccess());
    m_elementInfo.SetIsSetOfElement(1);
    m_elementInfoReady = 1;
    return true;
}

IField* IFieldSetOf::CreateNewField()
{
    if (!KEL_NEEDS(GetFieldContainer(), "KELFieldSetOf", "IFieldSetOf::CreateNewField", "m_pFieldContainer"))
        return nullptr;
    if (!InitElementInfo())
        return nullptr;
    m_elementInfo.SetID(static_cast<int>(m_nextElementId++));
    IField* field = GetFieldContainer()->InsertField(m_elementInfo);
    GetButtonMap()->update();
    return field;
}

void IFieldSetOf::SetValue(const TValue& value)
{
    if (!KEL_NEEDS(GetFieldContainer(), "KELFieldSetOf", "IFieldSetOf::SetValue", "m_pFieldContainer"))
        return;
    if (value.GetDatatype() != ZED_DT_SETOF && value.GetDatatype() != ZED_DT_SEQUENCEOF) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELFieldSetOf", this)
            << "KEL IFieldSetOf::SetValue unknown data type: " << value.GetDatatype();
        return;
    }
    const auto& set = static_cast<const TConstructedOf&>(value);
    ResizeTo(set.Size());
    std::size_t index = 0;
    ForEachElement([&](IField& element) {
        if (index < set.Size())
            element.SetValue(set.At(index++));
    });
    SetInitialValue(value.Clone());
    if (GetContainer())
        SizeHasChanged();
}

std::unique_ptr<TValue> IFieldSetOf::GetTValue(bool partial)
{
    auto set = std::make_unique<TSetOf>(m_pElementType, GetID(), m_pElementType && m_pElementType->IsSequence());
    ForEachElement([&](IField& element) {
        if (std::unique_ptr<TValue> part = element.GetTValue(partial))
            set->Add(std::move(part));
    });
    return set;
}

void IFieldSetOf::SetToNotReturned()
{
    KEL_TRACE(KEL_TRACE_PBLM, "KELFieldSetOf", this) << "KEL : IFieldSetOf::SetToNotReturned, not supported";
}
