// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <string>

class IPresentationForm;
class KELConfigContext;
class TEntitySpec;

/// What a field learns from the form it stands in: the form itself, its
/// configuration context, and the entity and directive it is showing. The
/// presentation form implements it; fields find it by walking up their
/// container's widget parents, so they never depend on the form's own class.
class KEL_EXPORT KELFormContext {
public:
    virtual ~KELFormContext();

    virtual IPresentationForm* GetPresentationForm() = 0;
    /// Null when the form has none.
    virtual KELConfigContext* GetFormConfigContext() const = 0;
    virtual const TEntitySpec& GetCurrentEntity() const = 0;
    virtual unsigned int GetCurrentDirective() const = 0;
    /// The form's lines need another size: the form follows them.
    virtual void OnNewSize();
    /// The section of the form's settings; empty when it has none.
    virtual std::string GetSettingSection() const;
};
