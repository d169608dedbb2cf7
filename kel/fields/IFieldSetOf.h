// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/fields/KELElementsField.h"
#include "kel/model/IElementInfo.h"
#include "zed/dict/TDictType.h"

#include <memory>

/// A set or sequence: a field container with one field per element (all of
/// the element type), the strip of remove buttons on its left and the add
/// button below. Element ids are never reused. A reply's value grows or
/// shrinks the set to its size.
class KEL_EXPORT IFieldSetOf : public KELElementsField {
public:
    IFieldSetOf(IElementInfo& info, IContainer* container);
    ~IFieldSetOf() override;

    void Create(unsigned int& id, IElementInfo& info) override;
    void SetToNotReturned() override;
    void SetValue(const TValue& value) override;
    using KELCompositeField::SetValue;
    /// A TSetOf, which says it is a sequence when the type is one.
    std::unique_ptr<TValue> GetTValue(bool partial) override;

    IField* CreateNewField() override;
    const TDictTypeConstructorOf* GetDictType() const { return m_pElementType.get(); }
    void SetDictType(const TDictType* type);

protected:
    bool InitElementInfo();
    const char* KindName() const override { return "IFieldSetOf"; }
    const char* DumpName() const override { return "SetOf"; }

private:
    int m_elementInfoReady = 0;
    IElementInfo m_elementInfo;
    unsigned int m_nextElementId = 1;
    std::shared_ptr<const TDictTypeConstructorOf> m_pElementType;
};
