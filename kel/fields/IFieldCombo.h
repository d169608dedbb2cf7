// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/fields/KELPlaceholderDefault.h"
#include "kel/fields/KELTextField.h"
#include "zed/dict/TDictType.h"

#include <memory>

class QComboBox;
class QLineEdit;

/// An enumeration: a drop-down list of the enumeration's item texts, each
/// keeping its code; a read-only element shows its item's text instead. With
/// nothing chosen the list shows what stands for it (nothing, string 4025 for
/// not returned, string 4044 for the server's default).
class KEL_EXPORT IFieldCombo : public KELTextField, public KELPlaceholderDefault {
public:
    IFieldCombo(IElementInfo& info, IContainer* container);
    ~IFieldCombo() override;

    void Create(unsigned int& id, IElementInfo& info) override;
    /// The chosen item's text; the default's text when left to the server.
    void GetValue(std::string& text) const override;
    void SetToNotReturned() override;
    /// Chooses the item of that text (any case) or code.
    void SetValue(const std::string& text) override;
    void SetValue(const TValue& value) override;
    void GetPartialRequest(std::string& request) override;
    /// Chooses the saved item; one the list lacks is traced and leaves the choice.
    void FillWithConfig(const std::string& key) override;
    bool ValueChanged() const override;
    bool SetToNullValue() override;
    bool SetToServerDefault() override;
    std::unique_ptr<TValue> GetTValue(bool always) override;

    const TDictTypeEnumeration* GetDictType() const { return m_pEnumeration.get(); }
    void SetDictType(const TDictType& type);

protected:
    const char* KindName() const override { return "IFieldCombo"; }
    const char* DumpName() const override { return "Combo"; }

private:
    /// The item of a text or code, or null.
    const TDictTypeEnumeration::Item* Find(const std::string& text) const;
    void Choose(const TDictTypeEnumeration::Item* item);
    void ShowNothing(const std::string& text) override;

    QComboBox* m_pCombo = nullptr;  // the window when editable
    QLineEdit* m_pEdit = nullptr;   // the window when read-only
    std::string m_shownText;        // what the read-only box holds, by its name
    std::shared_ptr<const TDictTypeEnumeration> m_pEnumeration;
};
