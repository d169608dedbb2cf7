// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/fields/KELTextField.h"

class KELTypingLimit;
class QLineEdit;

/// The field of every element edited as one line of text: names, entity
/// specifications and classes, attribute identifiers, octet strings and
/// read-only times. Values it cannot convert it shows but does not return.
class KEL_EXPORT IFieldEdit : public KELTextField {
public:
    static constexpr int kWidth = kLineWidth;

    IFieldEdit(IElementInfo& info, IContainer* container);
    ~IFieldEdit() override;

    void Create(unsigned int& id, IElementInfo& info) override;
    void GetValue(std::string& text) const override;
    void SetToNotReturned() override;
    void SetValue(const std::string& text) override;
    void SetValue(const TValue& value) override;
    void GetPartialRequest(std::string& request) override;
    std::unique_ptr<TValue> GetTValue(bool always) override;

    /// The kind's value of a text by data type, or null where the kind gives none.
    static std::unique_ptr<TValue> ValueOfText(unsigned int dt, const std::string& text);

protected:
    const char* KindName() const override { return "IFieldEdit"; }
    const char* DumpName() const override { return "Edit"; }

private:
    QLineEdit* m_pEdit = nullptr;        // the window; a child of the container
    bool m_dump = false;                 // showing hexadecimal octets with their ASCII
    std::string m_dumped;                // those octets, as they came
    KELTypingLimit* m_pLimit = nullptr;  // the edit's typing limit; a child of the edit
};
