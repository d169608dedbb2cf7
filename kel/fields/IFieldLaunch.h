// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/fields/KELFieldWithoutValue.h"

class QPushButton;

/// An element for which an application is registered: a button that starts
/// the first such application for the form's entity, directive and element.
class KEL_EXPORT IFieldLaunch : public KELFieldWithoutValue {
public:
    IFieldLaunch(IElementInfo& info, IContainer* container, std::string application);
    ~IFieldLaunch() override;

    void Create(unsigned int& id, IElementInfo& info) override;
    const std::string& GetApplication() const { return m_application; }
    /// Starts the application; false (traced) when it could not be started.
    bool Launch();

protected:
    const char* DumpPrefix() const override { return "KEL : Launch Value : "; }

private:
    std::string m_application;
};
