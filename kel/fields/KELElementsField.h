#pragma once

#include "kel/fields/IField.h"
#include "kel/fields/KELSetOfOwner.h"

#include <memory>

class IFieldContainer;

// What the fields of many like elements share (a set, an attribute list):
// the container of element fields, grown and shrunk to a value's size, the
// "{a,b}" text, null and server default applied to every element, and the
// removal of an element, which may come from inside the element's own
// control (its popup menu): its windows go at once, the field itself once
// that event is done.
class KEL_EXPORT KELElementsField : public IField, public KELSetOfOwner {
public:
    KELElementsField(IElementInfo& info, IContainer* container);
    ~KELElementsField() override;

    // "{a,b}"
    void GetValue(std::string& text) const override;
    void GetPartialRequest(std::string& request) override;
    bool SetToNullValue() override;
    bool SetToServerDefault() override;

    // A new element field; null (traced) when none can be made.
    virtual IField* CreateNewField() = 0;
    void RemoveField(int id);
    IFieldContainer* GetFieldContainer() const { return m_pFieldContainer; }

    void AddNewElement() override { CreateNewField(); }
    void RemoveElement(unsigned int id) override { RemoveField(static_cast<int>(id)); }

protected:
    // "IFieldSetOf": names the kind in its messages.
    virtual const char* KindName() const = 0;
    void SetFieldContainer(IFieldContainer* container) { m_pFieldContainer = container; }
    // Removes surplus elements from the end or adds new ones until there are count.
    void ResizeTo(std::size_t count);
    template <class Visit>
    void ForEachElement(Visit visit) const
    {
        if (!m_pFieldContainer)
            return;
        for (long at = FirstElement(); at >= 0;)
            visit(*NextElement(at));
    }

private:
    long FirstElement() const;
    IField* NextElement(long& position) const;

    IFieldContainer* m_pFieldContainer = nullptr;  // in the field's window; Qt owns it
};
