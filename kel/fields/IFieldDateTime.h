// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/fields/KELCheckedField.h"
#include "kel/fields/KELPlaceholderDefault.h"
#include "kel/fields/KELTextField.h"

class IControlDateTime;
class QString;

/// An absolute time that may be changed, in UTC as the access library keeps
/// times: typed as "MM/dd/yyy HH:mm:ss" or picked from a calendar. A field
/// without a value shows nothing but a placeholder (the format, or the
/// not-returned text); one left to the server's default shows string 4044 and
/// reads back as the default's text, so that its value goes marked default.
/// A text that is no time is marked where it stands, as a bad number is, and
/// stops the request with the reason.
class KEL_EXPORT IFieldDateTime : public KELTextField, public KELCheckedField, public KELPlaceholderDefault {
public:
    /// The format as operators know it, where "yyy" is the full year; Qt
    /// spells that "yyyy" (its "yyy" would show two digits and a letter y).
    static constexpr const char* kDisplayFormat = "MM/dd/yyy HH:mm:ss";
    static QString QtDisplayFormat(const char* format);

    IFieldDateTime(IElementInfo& info, IContainer* container);
    ~IFieldDateTime() override;

    void Create(unsigned int& id, IElementInfo& info) override;
    /// The time in the access library's text form; empty without a value; the
    /// text shown when it is no time.
    void GetValue(std::string& text) const override;
    void SetToNotReturned() override;
    void SetValue(const std::string& text) override;
    void SetValue(const TValue& value) override;
    void GetPartialRequest(std::string& request) override;
    bool ValueChanged() const override;
    void ControlCallback(int code, void* data) override;
    bool SetToNullValue() override;
    bool SetToServerDefault() override;
    std::unique_ptr<TValue> GetTValue(bool always) override;

    bool CheckText(std::string* reason = nullptr) override;
    IControlDateTime* GetControl() const { return m_pEdit; }

protected:
    const char* KindName() const override { return "IFieldDateTime"; }
    const char* DumpName() const override { return "DateTime"; }

private:
    void ShowNothing(const std::string& text) override;

    IControlDateTime* m_pEdit = nullptr;  // the window; a child of the container
    /// Left to the server: shown as such, and read back as the default's text.
};
