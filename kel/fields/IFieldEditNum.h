// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/fields/KELCheckedField.h"
#include "kel/fields/KELTextField.h"
#include "zed/dict/TDictObjects.h"

#include <optional>

class KELTypingLimit;
class IControlEditNum;

/// The one-line field of a number. The eight numeric kinds differ only in how
/// they check a text (Valid) and which value they give (MakeValue).
///
/// An invalid text is never refused in the operator's way: when the control
/// loses the focus it is marked where it stands, with the reason as tooltip
/// and accessible description, and the mark goes as soon as the text is
/// valid; a valid text is rewritten in the kind's own form.
class KEL_EXPORT IFieldEditNum : public KELTextField, public KELCheckedField {
public:
    IFieldEditNum(IElementInfo& info, IContainer* container);
    ~IFieldEditNum() override;

    void Create(unsigned int& id, IElementInfo& info) override;
    void GetValue(std::string& text) const override;
    /// Deliberately empty, unlike the text field.
    void SetToNotReturned() override;
    void SetValue(const std::string& text) override;
    /// Shows the value and keeps it as the initial value.
    void SetValue(const TValue& value) override;
    /// The text, or string 4025 for an empty one.
    void GetPartialRequest(std::string& request) override;
    bool ValueChanged() const override;
    void ControlCallback(int code, void* data) override;
    std::unique_ptr<TValue> GetTValue(bool always) override;

    /// True when the text holds a number of the kind (anything after it is
    /// ignored); the text is then rewritten in the kind's format.
    virtual bool Valid(std::string& text) = 0;
    /// False, with the reason, when the text is neither empty nor valid.
    bool CheckText(std::string* reason = nullptr) override;

protected:
    const char* KindName() const override { return "IFieldEditNum"; }
    const char* DumpName() const override { return "Num"; }
    /// The kind's value of a text, converted as atol or atof would.
    virtual std::unique_ptr<TValue> MakeValue(const std::string& text) const = 0;
    virtual std::unique_ptr<TValue> MakeEmpty() const = 0;

private:
    // Outside the dictionary's narrower range, when it has one: why.
    std::string OutOfRange(const std::string& text) const;

    std::optional<TDictRange> m_range;
    IControlEditNum* m_pEdit = nullptr;  // the window; a child of the container
    KELTypingLimit* m_pLimit = nullptr;  // the edit's typing limit; a child of the edit
};
