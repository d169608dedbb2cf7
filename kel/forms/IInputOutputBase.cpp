// SPDX-License-Identifier: BSD-3-Clause
#include "kel/forms/IInputOutputBase.h"
#include "kel/frame/KELString.h"

#include "kel/forms/IFormLine.h"
#include "kel/forms/KELFormLines.h"
#include "kel/frame/KELResources.h"
#include "kel/model/IElementInfo.h"
#include "kel/model/IPresentationContainer.h"
#include "zed/ZedAssert.h"
#include "zed/call/TReply.h"
#include "zed/dict/TDictIterators.h"
#include "zed/value/TAttribute.h"

IInputOutputBase::IInputOutputBase() = default;

IInputOutputBase::~IInputOutputBase() = default;

void IInputOutputBase::CreatePresentation(const std::string& name, const TEntitySpec& entity, unsigned int partition)
{
    m_partition = partition;
    Present(name, entity, [this] {
        CreateLines();
        RememberValues();
        return true;
    });
}

void IInputOutputBase::CreateLines()
{
    if (!GetContainer())
        return;
    for (TDictAttributeIterator it(GetEntity().GetEntityClass(), m_partition); it.IsValid(); it.Next()) {
        IElementInfo info(GetEntity(), GetName(), "");
        InitAttrElementInfo(it.Get(), info);
        if (!info.IsDisplayed())
            continue;
        if (std::unique_ptr<IPresentationElement> line = CreateElement(info))
            PlaceLine(std::move(line));
    }
}

void IInputOutputBase::PlaceLine(std::unique_ptr<IPresentationElement> line)
{
    const bool taken = GetContainer()->InsertElement(std::move(line));
    ZEDAssertM(taken, KELResources::String(KELString::kDuplicateElement));
}

void IInputOutputBase::ProcessReply(const TReply& reply)
{
    const auto* list = static_cast<const TAttributeList*>(reply.FindFirst(ZED_DT_ATTRIBUTELIST));
    if (!list)
        return;
    if (IPresentationContainer* container = GetContainer())
        container->ForEachElement([&](IPresentationElement& element) {
            auto* line = dynamic_cast<IFormLine*>(&element);
            if (!line)
                return;
            const TValue& value = (*list)[line->GetID()];
            if (value.IsPresent())
                line->SetValue(value);
            else
                line->SetToNotReturned();
            // What the network now holds is the line's new starting point: its
            // label stops showing a change at once, not at the next keystroke.
            line->RememberValue();
            line->OnIdleUpdateCmdUI(0, 0);
        });
    PostProcessReply();
}

void IInputOutputBase::PostProcessReply() {}

// Only what the operator changed since the last refresh is set.
bool IInputOutputBase::FillRequest(TRequest& request)
{
    bool filled = true;
    m_refusal.clear();
    if (IPresentationContainer* container = GetContainer())
        container->ForEachElement([&](IPresentationElement& element) {
            auto* line = dynamic_cast<IFormLine*>(&element);
            if (!filled || !line || !line->ValueChanged())
                return;
            filled = line->FillRequest(request);
            if (!filled)
                m_refusal = line->GetRefusal();
        });
    return filled;
}

void IInputOutputBase::RememberValues()
{
    if (IPresentationContainer* container = GetContainer())
        container->ForEachElement([](IPresentationElement& element) {
            if (auto* line = dynamic_cast<IFormLine*>(&element))
                line->RememberValue();
        });
}

void IInputOutputBase::GetRequest(std::string& out) { KELFormLines::GetRequest(GetContainer(), out); }

void IInputOutputBase::FillWithDefaults() { KELFormLines::FillWithDefaults(GetContainer()); }

void IInputOutputBase::FillWithCurrentConfig(const std::string& section)
{
    KELFormLines::FillWithConfig(GetContainer(), section);
}

void IInputOutputBase::SaveContents(const std::string& section) { KELFormLines::SaveContents(GetContainer(), section); }
