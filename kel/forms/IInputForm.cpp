// SPDX-License-Identifier: BSD-3-Clause
#include "kel/forms/IInputForm.h"

#include "kel/config/KELConfigContext.h"
#include "kel/controls/IControlContainer.h"

IInputForm::IInputForm(KELConfigContext* context, QWidget* parent) : IPresentationForm(context, parent) {}

IInputForm::~IInputForm()
{
    // The lines' fields delete their controls, children of the container: while it still stands.
    SetContainer(nullptr);
}

IPresentationContainer* IInputForm::CreateContainer() { return IPresentationForm::CreateContainer(); }

std::unique_ptr<IPresentationElement> IInputForm::CreateElement(IElementInfo& info)
{
    return IPresentationForm::CreateElement(info);
}

void IInputForm::PreCreate() { IPresentationForm::PreCreate(); }

void IInputForm::PostCreate() { IPresentationForm::PostCreate(); }

void IInputForm::Dump() {}

void IInputForm::CreatePresentation(const std::string& name, const TEntitySpec& entity, unsigned int directive)
{
    SetName(name);
    SetEntity(entity);
    SetDirectiveID(directive);
    SetCurrentState(entity.ToString().c_str(), directive);
    PreCreate();
    SetContainer(CreateContainer());

    std::string section;
    GetSettingSectionName(section, 0);
    std::string hidden, positions;
    if (KELConfigContext* context = ConfigurationContext()) {
        context->GetConfigString(section, ".Hidden", hidden, "", 1);
        context->GetConfigString(section, ".Position", positions, "", 1);
    }
    CreateLines(hidden, positions);
    PostCreate();
}

void IInputForm::CleanPresentation()
{
    SetContainer(nullptr);
    ForgetControlContainer();
    delete takeWidget();
}
