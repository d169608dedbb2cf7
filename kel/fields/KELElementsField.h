#pragma once

#include "kel/fields/KELCompositeField.h"
#include "kel/fields/KELSetOfOwner.h"

#include <memory>

class IFieldContainer;

/// What the fields of many like elements share (a set, an attribute list):
/// their element fields, grown and shrunk to a value's size, the
/// "{a,b}" text, null and server default applied to every element, and the
/// removal of an element, which may come from inside the element's own
/// control (its popup menu): its windows go at once, the field itself once
/// that event is done.
class KEL_EXPORT KELElementsField : public KELCompositeField, public KELSetOfOwner {
public:
    KELElementsField(IElementInfo& info, IContainer* container);
    ~KELElementsField() override;

    /// "{a,b}"
    void GetValue(std::string& text) const override;
    void GetPartialRequest(std::string& request) override;
    bool SetToNullValue() override;
    bool SetToServerDefault() override;

    /// A new element field; null (traced) when none can be made.
    virtual IField* CreateNewField() = 0;
    void RemoveField(int id);

    void AddNewElement() override { CreateNewField(); }
    void RemoveElement(unsigned int id) override { RemoveField(static_cast<int>(id)); }

protected:
    /// Removes surplus elements from the end or adds new ones until there are count.
    void ResizeTo(std::size_t count);
};
