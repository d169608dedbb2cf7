// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/forms/IInputOutputBase.h"
#include "kel/forms/IPresentationForm.h"

#include <string>

/// The attributes of an entity as a scrolling form: a line per displayed
/// attribute of a partition, ordered by the form's ".Position" setting; those
/// of its ".Hidden" setting keep their line (replies still reach them) but are
/// not shown. Refreshed by ProcessReply, applied by FillRequest.
class KEL_EXPORT IInputOutputForm : public IPresentationForm, public IInputOutputBase {
public:
    explicit IInputOutputForm(KELConfigContext* context, QWidget* parent = nullptr);
    ~IInputOutputForm() override;

    void CreatePresentation(const std::string& name, const TEntitySpec& entity, unsigned int partition) override;
    IPresentationContainer* CreateContainer() override;
    std::unique_ptr<IPresentationElement> CreateElement(IElementInfo& info) override;
    void PreCreate() override;
    void PostCreate() override;
    void PostProcessReply() override;
    void Dump() override;

    /// Reads ".Hidden" and ".Position" again and places the lines by them.
    void ResetPresentation();

protected:
    void PlaceLine(std::unique_ptr<IPresentationElement> line) override;

private:
    void ReadSettings();

    std::string m_hidden;
    std::string m_positions;
    unsigned int m_counter = 0;
};
