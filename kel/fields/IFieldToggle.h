// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/fields/IField.h"

class QButtonGroup;
class QLineEdit;
class QRadioButton;

/// A boolean: a pair of radio buttons (strings 4026 and 4027), or, for a
/// read-only element, the text of its value. A text over the buttons shows
/// what they cannot: not returned, or the server's default.
class KEL_EXPORT IFieldToggle : public IField {
public:
    IFieldToggle(IElementInfo& info, IContainer* container);
    ~IFieldToggle() override;

    void Create(unsigned int& id, IElementInfo& info) override;
    void GetValue(std::string& text) const override;
    void SetToNotReturned() override;
    void SetValue(const std::string& text) override;
    void SetValue(const TValue& value) override;
    void GetPartialRequest(std::string& request) override;
    void FillWithConfig(const std::string& key) override;
    void SaveContents(const std::string& key) const override;
    bool ValueChanged() const override;
    void Dump() override;
    /// A button was clicked: the text over the buttons goes.
    void ControlCallback(int code, void* data) override;
    bool SetToNullValue() override;
    bool SetToServerDefault() override;
    std::unique_ptr<TValue> GetTValue(bool always) override;
    /// The state shown is also what a change is measured against.
    void SetInitialValue(std::unique_ptr<TValue> value) override;

    QRadioButton* GetTrueButton() const { return m_pTrue; }
    QRadioButton* GetFalseButton() const { return m_pFalse; }
    QLineEdit* GetTextEdit() const { return m_pEdit; }

private:
    void Show(bool value);
    void Uncheck();
    void ShowText(const std::string& text);
    /// -1 neither, 0 false, 1 true.
    int CheckedState() const;

    QRadioButton* m_pTrue = nullptr;
    QRadioButton* m_pFalse = nullptr;
    QLineEdit* m_pEdit = nullptr;
    QButtonGroup* m_pGroup = nullptr;  // a child of the row
    int m_putIn = -1;                  // the state last put in: -1 none, 0 false, 1 true
};
