// SPDX-License-Identifier: BSD-3-Clause
#include "kel/forms/IInputOutputForm.h"
#include "kel/frame/KELString.h"

#include "kel/config/IConfigList.h"
#include "kel/config/KELConfigContext.h"
#include "kel/forms/IFormLine.h"
#include "kel/frame/KELResources.h"
#include "kel/model/IPresentationContainer.h"
#include "zed/ZedAssert.h"

#include <algorithm>
#include <vector>

namespace {

// The line's place: its index in the position list, else the running counter.
void Arrange(IFormLine& line, const std::string& hidden, const std::string& positions, unsigned int& counter)
{
    const std::string id = std::to_string(line.GetID());
    const bool isHidden = !hidden.empty() && IConfigList(hidden, ',').FindAndGetIndex(id.c_str()) >= 0;
    line.SetVisibility(isHidden ? 0 : 1);
    if (isHidden)
        line.HideLine();
    else
        line.ShowLine();
    const long index = positions.empty() ? -1 : IConfigList(positions, ',').FindAndGetIndex(id.c_str());
    line.SetPosition(index >= 0 ? static_cast<unsigned int>(index) : counter);
    ++counter;
}

}  // namespace

IInputOutputForm::IInputOutputForm(KELConfigContext* context, QWidget* parent) : IPresentationForm(context, parent) {}

IInputOutputForm::~IInputOutputForm()
{
    // The lines' fields delete their controls, children of the container: while it still stands.
    SetContainer(nullptr);
}

IPresentationContainer* IInputOutputForm::CreateContainer() { return IPresentationForm::CreateContainer(); }

std::unique_ptr<IPresentationElement> IInputOutputForm::CreateElement(IElementInfo& info)
{
    return IPresentationForm::CreateElement(info);
}

void IInputOutputForm::PreCreate() { IPresentationForm::PreCreate(); }

void IInputOutputForm::PostCreate() { IPresentationForm::PostCreate(); }

void IInputOutputForm::PostProcessReply() { IPresentationForm::PostProcessReply(); }

void IInputOutputForm::Dump() {}

void IInputOutputForm::ReadSettings()
{
    m_hidden.clear();
    m_positions.clear();
    std::string section;
    GetSettingSectionName(section, 0);
    if (KELConfigContext* context = ConfigurationContext()) {
        context->GetConfigString(section, ".Hidden", m_hidden, "", 1);
        context->GetConfigString(section, ".Position", m_positions, "", 1);
    }
}

void IInputOutputForm::CreatePresentation(const std::string& name, const TEntitySpec& entity, unsigned int partition)
{
    SetName(name);
    SetEntity(entity);
    SetPartitionID(partition);
    SetCurrentState(entity.ToString().c_str(), partition);
    ReadSettings();
    m_counter = 0;
    PreCreate();
    SetContainer(CreateContainer());
    CreateLines();
    RememberValues();
    PostCreate();
}

void IInputOutputForm::PlaceLine(std::unique_ptr<IPresentationElement> element)
{
    if (auto* line = dynamic_cast<IFormLine*>(element.get()))
        Arrange(*line, m_hidden, m_positions, m_counter);
    IInputOutputBase::PlaceLine(std::move(element));
}

void IInputOutputForm::ResetPresentation()
{
    IPresentationContainer* container = GetContainer();
    if (!container)
        return;
    ReadSettings();
    std::vector<int> keys;
    container->ForEachElement([&](IPresentationElement& element) { keys.push_back(element.GetKey()); });
    std::vector<std::unique_ptr<IPresentationElement>> lines;
    for (int key : keys)
        lines.push_back(container->RemoveElement(key));
    // In id order, so that lines off the position list keep a stable order.
    std::sort(lines.begin(), lines.end(), [](const auto& a, const auto& b) { return a->GetID() < b->GetID(); });
    unsigned int counter = 0;
    for (std::unique_ptr<IPresentationElement>& element : lines) {
        if (auto* line = dynamic_cast<IFormLine*>(element.get()))
            Arrange(*line, m_hidden, m_positions, counter);
        const bool taken = container->InsertElement(std::move(element));
        ZEDAssertM(taken, KELResources::String(KELString::kDuplicateElement));
    }
    OnNewSize();
}
