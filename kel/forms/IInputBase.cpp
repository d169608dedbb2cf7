// SPDX-License-Identifier: BSD-3-Clause
#include "kel/forms/IInputBase.h"
#include "kel/frame/KELString.h"

#include "kel/config/IConfigList.h"
#include "kel/fields/IField.h"
#include "kel/forms/IFormLine.h"
#include "kel/forms/KELFormLines.h"
#include "kel/frame/ICreationFailedException.h"
#include "kel/frame/KELResources.h"
#include "kel/frame/KELTrace.h"
#include "kel/model/IElementInfo.h"
#include "kel/model/IPresentationContainer.h"
#include "zed/TException.h"
#include "zed/ZedAssert.h"
#include "zed/dict/TDictIterators.h"

IInputBase::IInputBase() = default;

IInputBase::~IInputBase() = default;

void IInputBase::CreatePresentation(const std::string& name, const TEntitySpec& entity, unsigned int directive)
{
    m_directive = directive;
    Present(name, entity, [this] {
        CreateLines("", "");
        return true;
    });
}

void IInputBase::CreateLines(const std::string& hidden, const std::string& positions)
{
    IPresentationContainer* container = GetContainer();
    if (!container)
        return;
    const IConfigList hiddenList(hidden, ',');
    const IConfigList positionList(positions, ',');
    const std::string prefix = "Dir:" + std::to_string(m_directive);
    try {
        unsigned int counter = 0;
        for (TDictArgumentIterator it(GetEntity().GetEntityClass(), m_directive, ZED_DICT_REQUEST); it.IsValid();
             it.Next()) {
            IElementInfo info(GetEntity(), GetName(), prefix);
            InitArgElementInfo(it.Get(), info);
            if (!info.IsDisplayed())
                continue;
            const std::string id = std::to_string(info.GetID());
            if (!hidden.empty() && hiddenList.FindAndGetIndex(id.c_str()) >= 0)
                continue;
            const long index = positions.empty() ? -1 : positionList.FindAndGetIndex(id.c_str());
            const unsigned int position = index >= 0 ? static_cast<unsigned int>(index) : counter;
            ++counter;
            std::unique_ptr<IPresentationElement> element = CreateElement(info);
            auto* line = dynamic_cast<IFormLine*>(element.get());
            if (!line)
                continue;
            line->SetPosition(position);
            const bool taken = container->InsertElement(std::move(element));
            ZEDAssertM(taken, KELResources::String(KELString::kDuplicateElement));
        }
    } catch (const TException& e) {
        KEL_TRACE(KEL_TRACE_EXCP, "KELInputBase", this)
            << "KEL Exception catched : IInputBase::CreatePresentation failed : " << e.what();
    }
}

bool IInputBase::FillRequest(TRequest& request)
{
    return KELFormLines::FillRequest(GetContainer(), request, m_refusal);
}

void IInputBase::GetRequest(std::string& out) { KELFormLines::GetRequest(GetContainer(), out); }

void IInputBase::FillWithDefaults() { KELFormLines::FillWithDefaults(GetContainer()); }

void IInputBase::FillWithCurrentConfig() { KELFormLines::FillWithConfig(GetContainer(), m_fillSection); }

void IInputBase::SaveContents(const std::string& section)
{
    KELFormLines::SaveContents(GetContainer(), section.empty() ? m_fillSection : section);
}
