#pragma once

#include "kel/fields/IField.h"

class IFieldContainer;

/// What the fields that hold fields share (records, sets, attributes,
/// attribute lists): the field container of their inner fields, destroyed
/// with them; a layout that moves the container and lets it place its fields;
/// a change of size passed up to the container above; and what such a field
/// cannot do (a text value, settings), traced with the kind's name.
class KEL_EXPORT KELCompositeField : public IField {
public:
    KELCompositeField(IElementInfo& info, IContainer* container);
    ~KELCompositeField() override;

    /// Not supported: "KEL : <kind>::SetValue string not supported".
    void SetValue(const std::string& text) override;
    using IField::SetValue;
    void FillWithConfig(const std::string& key) override;
    void SaveContents(const std::string& key) const override;
    /// "KEL : <name> Value : <text>"
    void Dump() override;
    void SizeHasChanged() override;
    void MoveAndResize(const QPoint& position, const QSize& size) override;
    QSize Resize(const QSize& size) override;

    IFieldContainer* GetFieldContainer() const { return m_pFieldContainer; }

protected:
    /// "IFieldRecord": names the kind in its messages.
    virtual const char* KindName() const = 0;
    /// "Record": names the kind in its trace line.
    virtual const char* DumpName() const = 0;
    /// Whether container and parent are there to lay out; a kind that must
    /// say so when they are not traces it here.
    virtual bool Placed(const char* operation) const;
    void SetFieldContainer(IFieldContainer* container) { m_pFieldContainer = container; }

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

    IFieldContainer* m_pFieldContainer = nullptr;  // a child window; the inner fields are its own
};
