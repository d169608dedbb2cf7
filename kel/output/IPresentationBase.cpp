// SPDX-License-Identifier: BSD-3-Clause
#include "kel/output/IPresentationBase.h"
#include "kel/frame/KELString.h"

#include "kel/frame/KELResources.h"
#include "kel/frame/KELTrace.h"
#include "kel/model/IElementInfo.h"
#include "kel/model/IPresentationContainer.h"
#include "kel/output/IPresentation.h"

#include <algorithm>
#include <cctype>

IPresentation::~IPresentation() = default;

IPresentationBase::IPresentationBase() = default;

IPresentationBase::~IPresentationBase() = default;

void IPresentationBase::SetContainer(IPresentationContainer* container)
{
    // CreateContainer may have handed its container over already.
    if (container != m_ownedContainer.get())
        m_ownedContainer.reset();
    m_pContainer = container;
}

void IPresentationBase::TakeContainer(std::unique_ptr<IPresentationContainer> container)
{
    m_ownedContainer = std::move(container);
    m_pContainer = m_ownedContainer.get();
}

void IPresentationBase::Dump()
{
    if (!m_pContainer)
        return;
    m_pContainer->ForEachElement([](IPresentationElement& element) { element.Dump(); });
}

void IPresentationBase::Present(const std::string& name, const TEntitySpec& entity,
                                const std::function<bool()>& createLines)
{
    SetName(name);
    SetEntity(entity);
    PreCreate();
    SetContainer(CreateContainer());
    if (createLines())
        PostCreate();
}

void IPresentationBase::PreCreate() {}

void IPresentationBase::PostCreate() {}

namespace {

// The steps that attributes and arguments share; what differs is passed in.
void FillFromDictionary(const TDictValue& value, IElementInfo& info, const char* operation, const void* object)
{
    info.SetPresentationName(value.GetPresentationName());
    const unsigned int dt = value.GetDatatype();
    info.SetDT(dt);
    info.SetHasDictType(1);
    info.SetDictType(value.GetType());
    if (ZedHasDictType(dt)) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELPresentationBase", object)
            << "KEL :IPresentationBase::" << operation
            << " : DictType for this value is : " << value.GetType().ToString();
    }
    const bool reserved = dt == ZED_DT_RESERVED14 || dt == ZED_DT_RESERVED15 || dt == ZED_DT_RESERVED16;
    info.SetDictValue(reserved ? &value : nullptr);
    info.SetIsDisplayed(value.IsDisplayed() ? 1 : 0);
    info.SetUnits(value.GetUnits());
    info.SetDescription(value.GetDescription());
    info.SetRange(value.GetRange());
    info.SetDefaultAllowed(value.DefaultAllowed());
    if (value.DefaultAllowed() == ZED_DEFAULT_SERVER)
        info.SetDefault(KELResources::String(KELString::kServerDefault));
    else if (value.GetDefaultValue() != KELResources::String(KELString::kNoDefault))
        info.SetDefault(value.GetDefaultValue());
    else
        info.SetDefaultAllowed(ZED_DEFAULT_NONE);
}

// Names holding this fragment (upper case) are shown by no field.
void MarkSecret(const std::string& name, IElementInfo& info)
{
    std::string upper = name;
    std::transform(upper.begin(), upper.end(), upper.begin(), [](unsigned char c) { return std::toupper(c); });
    const std::string fragment = KELResources::String(KELString::kSecretFragment);
    if (!fragment.empty() && upper.find(fragment) != std::string::npos)
        info.SetDT(ZED_DT_MARKER);  // the data type no field shows
}

}  // namespace

void IPresentationBase::InitAttrElementInfo(const TDictAttribute& attribute, IElementInfo& info) const
{
    info.SetID(static_cast<int>(attribute.GetID()));
    info.SetCompleteID("Attr:" + std::to_string(attribute.GetID()));
    FillFromDictionary(attribute, info, "InitAttrElementInfo", this);
    info.SetRequired(0);
    info.SetAccess(attribute.GetAccess());
    const unsigned int length = attribute.GetValueLength();
    const unsigned int column = attribute.GetSQLColumnSize();
    info.SetMaxSize(column != 0 && column < length ? column : length);
    MarkSecret(attribute.GetName(), info);
}

void IPresentationBase::InitArgElementInfo(const TDictArgument& argument, IElementInfo& info) const
{
    info.SetID(static_cast<int>(argument.GetID()));
    info.SetCompleteID(info.GetPrefix() + ".Arg:" + std::to_string(argument.GetID()));
    FillFromDictionary(argument, info, "InitArgElementInfo", this);
    info.SetRequired(argument.IsRequired() ? 1 : 0);
    info.SetAccess(0);
    info.SetMaxSize(argument.GetValueLength());
    MarkSecret(argument.GetName(), info);
}
