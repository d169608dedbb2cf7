// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/fields/KELFieldWithoutValue.h"

class QLabel;

/// The units of an element, shown right after its field.
class KEL_EXPORT IFieldUnit : public KELFieldWithoutValue {
public:
    IFieldUnit(IElementInfo& info, IContainer* container);
    ~IFieldUnit() override;

    void Create(unsigned int& id, IElementInfo& info) override;
    const std::string& GetUnits() const { return m_units; }

protected:
    const char* DumpPrefix() const override { return "KEL : Unit Value : "; }

private:
    std::string m_units;
};
