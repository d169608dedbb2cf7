// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/fields/IField.h"

/// The value operations of a field that gives no value (a placeholder, a
/// units text, a launch button): it takes what it is given for display only,
/// contributes nothing to a request and keeps nothing in the configuration.
class KEL_EXPORT KELFieldWithoutValue : public IField {
public:
    KELFieldWithoutValue(IElementInfo& info, IContainer* container);
    ~KELFieldWithoutValue() override;

    void GetValue(std::string& text) const override;
    void SetToNotReturned() override;
    void SetValue(const std::string& text) override;
    void SetValue(const TValue& value) override;
    void GetPartialRequest(std::string& request) override;
    void FillWithConfig(const std::string& key) override;
    void SaveContents(const std::string& key) const override;
    void Dump() override;
    bool SetToNullValue() override;
    bool SetToServerDefault() override;
    std::unique_ptr<TValue> GetTValue(bool always) override;

protected:
    /// What the kind shows; the base keeps it for GetValue and Dump.
    virtual void Show(const QString& text);
    /// "KEL : <kind> Value : "
    virtual const char* DumpPrefix() const = 0;

private:
    std::string m_shown;
};
