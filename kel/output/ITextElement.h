// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/model/IPresentationElement.h"
#include "kel/model/KELValueElement.h"

#include <string>

/// An element of a text presentation: a name and the text of its last value.
class KEL_EXPORT ITextElement : public IPresentationElement, public KELValueElement {
public:
    ITextElement(unsigned int id, std::string name);
    ~ITextElement() override;

    void SetValue(const TValue& value) override;
    void SetToNotReturned() override;

    const std::string& GetName() const { return m_name; }
    const std::string& GetText() const { return m_text; }

private:
    std::string m_name;
    std::string m_text;
};
