// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/forms/IInputBase.h"
#include "kel/forms/IPresentationForm.h"

/// The form in which an operator enters the arguments of one directive on one
/// entity: a line per displayed argument, in the order of the form's
/// ".Position" setting and without those of its ".Hidden" setting (both lists
/// of argument ids, in the section "<entity id> - <directive> - 0"). The
/// application builds the call, has the form fill its request, and sends it.
class KEL_EXPORT IInputForm : public IPresentationForm, public IInputBase {
public:
    explicit IInputForm(KELConfigContext* context, QWidget* parent = nullptr);
    ~IInputForm() override;

    void CreatePresentation(const std::string& name, const TEntitySpec& entity, unsigned int directive) override;
    IPresentationContainer* CreateContainer() override;
    std::unique_ptr<IPresentationElement> CreateElement(IElementInfo& info) override;
    void PreCreate() override;
    void PostCreate() override;
    void Dump() override;

    /// Deletes the control container with every line; a new CreatePresentation may follow.
    void CleanPresentation();
};
