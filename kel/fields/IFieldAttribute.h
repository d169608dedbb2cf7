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
/// another type arrives (the form grows or shrinks around it).
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

protected:
    const char* KindName() const override { return "IFieldAttribute"; }
    const char* DumpName() const override { return "Attribute"; }

private:
    void CreateFields(IElementInfo& info);
    void DropValueField();

    IField* m_pValueField = nullptr;                   // owned by the container
    IFieldAttributeID* m_pFieldAttributeID = nullptr;  // owned by the container
    unsigned int m_controlId = 1;
    TEntitySpec m_entity;                          // whose class names the attributes
};

/// A list of attributes: attribute fields grown and shrunk to the list's size
/// like a set's elements; an element's menu adds and removes attributes.
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
    bool Placed(const char* operation) const override;

private:

    int m_elementInfoReady = 0;
    unsigned int m_nextElementId = 1;
    IElementInfo m_elementInfo;
    ZED_T_DICT_ACCESS m_access = 1;
};
