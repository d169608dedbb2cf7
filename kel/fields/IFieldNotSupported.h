// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/fields/KELFieldWithoutValue.h"
#include "zed/value/TValue.h"

#include <memory>

class QLineEdit;

/// The field of an element whose type has no field of its own: a read-only
/// line that shows a value's text form. A value it was given goes back
/// unchanged (a reply echoed, an attribute list passed on), so nothing that
/// cannot be edited is lost; a text or a reset leaves it with none.
class KEL_EXPORT IFieldNotSupported : public KELFieldWithoutValue {
public:
    static constexpr int kWidth = 350;

    IFieldNotSupported(IElementInfo& info, IContainer* container);
    ~IFieldNotSupported() override;

    void Create(unsigned int& id, IElementInfo& info) override;
    void SetToNotReturned() override;
    void SetValue(const std::string& text) override;
    void SetValue(const TValue& value) override;
    void GetPartialRequest(std::string& request) override;
    std::unique_ptr<TValue> GetTValue(bool always) override;

protected:
    void Show(const QString& text) override;
    const char* DumpPrefix() const override { return "KEL : NotSupported Value : "; }

private:
    QLineEdit* m_pEdit = nullptr;  // the window; a child of the container
    std::unique_ptr<TValue> m_pKept;
};
