// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/fields/IFieldEdit.h"
#include "kel/fields/KELElementsField.h"
#include "kel/model/IElementInfo.h"

class IFieldContainer;

/// An attribute identifier, entered and shown as text (a name of the entity's
/// class, or a code).
class KEL_EXPORT IFieldAttributeID : public IFieldEdit {
public:
    using IFieldEdit::IFieldEdit;
    ~IFieldAttributeID() override;
};

/// An attribute: a field container with the identifier field and, once a value
/// has come, a value field of the value's own type, replaced when a value of
/// another type arrives (the form grows or shrinks around it). In an attribute
/// that can be changed, an identifier the operator enters that names an
/// attribute of the entity's class gets a value field of that attribute's
/// type, to be typed into.
class KEL_EXPORT IFieldAttribute : public KELCompositeField {
public:
    IFieldAttribute(IElementInfo& info, IContainer* container);
    ~IFieldAttribute() override;

    void Create(unsigned int& id, IElementInfo& info) override;
    /// "<identifier> = <value>"
    void GetValue(std::string& text) const override;
    void SetToNotReturned() override;
    void SetValue(const TValue& value) override;
    using KELCompositeField::SetValue;
    void GetPartialRequest(std::string& request) override;
    /// Leaves only the identifier field.
    bool SetToNullValue() override;
    /// The same, and false: an attribute has no server default of its own.
    bool SetToServerDefault() override;
    std::unique_ptr<TValue> GetTValue(bool partial) override;

    IFieldAttributeID* GetIDField() const { return m_pFieldAttributeID; }
    IField* GetValueField() const { return m_pValueField; }
    /// The element info of a value field: id 2, the value's type, read-only.
    static void ConstructElementInfoFromValue(IElementInfo& info, const TValue& value);
    /// The operator has entered an identifier: a value field of its attribute's type.
    void IdentifierChosen();

protected:
    const char* KindName() const override { return "IFieldAttribute"; }
    const char* DumpName() const override { return "Attribute"; }

private:
    void CreateFields(IElementInfo& info);
    void DropValueField();
    void PlaceValueField(std::unique_ptr<IField> field);

    IField* m_pValueField = nullptr;                   // owned by the container
    unsigned int m_typedFor = 0;                       // the attribute whose value field the operator chose
    TDictTypePtr m_pUserBase;                          // a user type's base, which that field edits
    IFieldAttributeID* m_pFieldAttributeID = nullptr;  // owned by the container
    unsigned int m_controlId = 1;
    TEntitySpec m_entity;  // whose class names the attributes
};

/// A list of attributes: attribute fields grown and shrunk to the list's size
/// like a set's elements, added with its add button or an element's menu and
/// removed with the strip beside them or the menu. Its line has no label, so
/// it shows its name above its attributes.
class KEL_EXPORT IFieldAttrList : public KELElementsField {
public:
    IFieldAttrList(IElementInfo& info, IContainer* container);
    ~IFieldAttrList() override;

    void Create(unsigned int& id, IElementInfo& info) override;
    void SetToNotReturned() override;
    void SetValue(const TValue& value) override;
    using KELCompositeField::SetValue;
    std::unique_ptr<TValue> GetTValue(bool partial) override;

    IField* CreateNewField() override;

protected:
    bool InitElementInfo();
    const char* KindName() const override { return "IFieldAttrList"; }
    const char* DumpName() const override { return "AttributeList"; }

private:
    int m_elementInfoReady = 0;
    unsigned int m_nextElementId = 1;
    IElementInfo m_elementInfo;
};
