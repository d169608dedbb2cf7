// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/fields/KELCompositeField.h"
#include "kel/fields/KELSetOfOwner.h"

#include <QWidget>

#include <memory>

class IFieldContainer;
class KELElementsField;
class QLabel;
class QToolButton;

/// The strip of remove buttons beside the elements of a set or an attribute
/// list: one 15 by 15 button from a pixel below each element's top. A press
/// and a release on the same button remove its element; a press released
/// elsewhere removes nothing. From the keyboard: Tab reaches the strip, Up and
/// Down choose an element, Delete or Space removes it.
class KEL_EXPORT IFieldSetOfButtonMap : public QWidget {
public:
    static constexpr int kButton = 15;

    IFieldSetOfButtonMap(KELElementsField& owner, IFieldContainer& elements, QWidget* parent);
    ~IFieldSetOfButtonMap() override;

    /// The button of the element at that place in the container, in strip coordinates.
    QRect ButtonOf(IField& element) const;
    int GetChosen() const { return m_chosen; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    IField* Chosen() const;

    KELElementsField& m_owner;
    IFieldContainer& m_elements;
    QPoint m_pressed{-1, -1};
    int m_chosen = 0;  // the element chosen from the keyboard, by index
};

/// What the fields of many like elements share (a set, an attribute list):
/// their element fields, grown and shrunk to a value's size; the window that
/// holds them, with the strip of remove buttons on the left, the elements
/// right of it and the add button below (and, for a field whose line has no
/// label, its name above); the "{a,b}" text; null and server default applied
/// to every element; and the removal of an element, which may come from inside
/// the element's own control (its popup menu): its windows go at once, the
/// field itself once that event is done. Layout operations without their
/// container or parent window trace "KEL : <kind>::<operation>,
/// m_pFieldContainer or m_pParentWnd must be valid !".
class KEL_EXPORT KELElementsField : public KELCompositeField, public KELSetOfOwner {
public:
    static constexpr int kStripGap = 3;

    KELElementsField(IElementInfo& info, IContainer* container);
    ~KELElementsField() override;

    /// "{a,b}"
    void GetValue(std::string& text) const override;
    void GetPartialRequest(std::string& request) override;
    bool SetToNullValue() override;
    bool SetToServerDefault() override;
    void SizeHasChanged() override;
    void MoveAndResize(const QPoint& position, const QSize& size) override;
    QSize GetSize() override;
    QPoint Move(const QPoint& position) override;
    QSize Resize(const QSize& size) override;

    /// A new element field; null (traced) when none can be made.
    virtual IField* CreateNewField() = 0;
    void RemoveField(int id);
    /// The add button: a new element, unless the field is read-only.
    void OnClicked();

    void AddNewElement() override { CreateNewField(); }
    void RemoveElement(unsigned int id) override { RemoveField(static_cast<int>(id)); }

    QToolButton* GetAddButton() const { return m_pAdd; }
    IFieldSetOfButtonMap* GetButtonMap() const { return m_pStrip; }
    /// The name shown above the elements; null when the line's label shows it.
    QLabel* GetCaption() const { return m_pCaption; }

protected:
    /// Makes the field's window, its field container, the add button (which
    /// takes the running control id) and the strip; with a caption, its name
    /// above them.
    void CreateFrame(unsigned int& id, IElementInfo& info, bool caption);
    ZED_T_DICT_ACCESS GetAccess() const { return m_access; }
    /// Removes surplus elements from the end or adds new ones until there are count.
    void ResizeTo(std::size_t count);
    bool Placed(const char* operation) const override;

private:
    void Arrange();

    ZED_T_DICT_ACCESS m_access = 1;
    QWidget* m_pFrame = nullptr;  // the field's window: strip, elements and add button
    IFieldSetOfButtonMap* m_pStrip = nullptr;
    QToolButton* m_pAdd = nullptr;
    QLabel* m_pCaption = nullptr;
};
