// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/fields/IField.h"

class IFieldContainer;
class QLineEdit;
class QToolButton;

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

    /// Folded, the field stands as one line: its value's text in place of
    /// its inner fields. A toggle before it folds and unfolds it (a click, or
    /// Space once Tab has reached it); the state of a form's line is kept in
    /// the form's section ("<line>.Folded") and comes back with the form.
    void SetFolded(bool folded);
    bool IsFolded() const { return m_folded; }
    /// The toggle; null for a field inside another, which folds with it.
    QToolButton* GetFoldToggle() const { return m_pToggle; }

    QSize GetSize() override;
    void HideWindow() override;
    void ShowWindow() override;

protected:
    /// "IFieldRecord": names the kind in its messages.
    virtual const char* KindName() const = 0;
    /// "Record": names the kind in its trace line.
    virtual const char* DumpName() const = 0;
    /// Whether container and parent are there to lay out; a kind that must
    /// say so when they are not traces it here.
    virtual bool Placed(const char* operation) const;
    void SetFieldContainer(IFieldContainer* container) { m_pFieldContainer = container; }
    /// Once the kind's window is made: a field on a form line gets its fold
    /// toggle and the folded state its form kept.
    void OfferFolding();
    /// Puts the toggle beside the window and, folded, the line of text in its
    /// place: a kind that lays itself out calls it once it has.
    void PlaceFolding();

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

    std::string FoldedKey() const;
    std::string FoldedText();

    IFieldContainer* m_pFieldContainer = nullptr;  // a child window; the inner fields are its own
    QToolButton* m_pToggle = nullptr;              // beside the window, a child of its parent
    QLineEdit* m_pSummary = nullptr;               // in place of the window while folded; likewise
    bool m_folded = false;
};
