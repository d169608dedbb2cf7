#pragma once

#include "kel/fields/KELElementsField.h"
#include "kel/model/IElementInfo.h"
#include "zed/dict/TDictType.h"

#include <QWidget>

#include <memory>

class IFieldContainer;
class IFieldSetOf;
class QToolButton;

/// The strip of remove buttons beside a set's elements: one 15 by 15 button
/// from a pixel below each element's top. A press and a release on the same
/// button remove its element; a press released elsewhere removes nothing.
/// From the keyboard: Tab reaches the strip, Up and Down choose an element,
/// Delete or Space removes it.
class KEL_EXPORT IFieldSetOfButtonMap : public QWidget {
public:
    static constexpr int kButton = 15;

    IFieldSetOfButtonMap(IFieldSetOf& set, IFieldContainer& elements, QWidget* parent);
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
    IField* ElementAt(const QPoint& point) const;
    IField* Chosen() const;

    IFieldSetOf& m_set;
    IFieldContainer& m_elements;
    QPoint m_pressed{-1, -1};
    int m_chosen = 0;  // the element chosen from the keyboard, by index
};

/// A set or sequence: a field container with one field per element (all of
/// the element type), the strip of remove buttons on its left and the add
/// button below. Element ids are never reused. A reply's value grows or
/// shrinks the set to its size.
class KEL_EXPORT IFieldSetOf : public KELElementsField {
public:
    static constexpr int kStripGap = 3;

    IFieldSetOf(IElementInfo& info, IContainer* container);
    ~IFieldSetOf() override;

    void Create(unsigned int& id, IElementInfo& info) override;
    void SetToNotReturned() override;
    void SetValue(const TValue& value) override;
    using KELCompositeField::SetValue;
    void SizeHasChanged() override;
    void MoveAndResize(const QPoint& position, const QSize& size) override;
    QSize GetSize() override;
    QPoint Move(const QPoint& position) override;
    QSize Resize(const QSize& size) override;
    std::unique_ptr<TValue> GetTValue(bool partial) override;

    /// The add button: a new element, unless the set is read-only.
    void OnClicked();
    IField* CreateNewField() override;
    const TDictTypeConstructorOf* GetDictType() const { return m_pElementType.get(); }
    void SetDictType(const TDictType* type);
    QToolButton* GetAddButton() const { return m_pAdd; }
    IFieldSetOfButtonMap* GetButtonMap() const { return m_pStrip; }

protected:
    bool InitElementInfo();
    const char* KindName() const override { return "IFieldSetOf"; }
    const char* DumpName() const override { return "SetOf"; }
    bool Placed(const char* operation) const override;

private:
    void Arrange();

    int m_elementInfoReady = 0;
    IElementInfo m_elementInfo;
    unsigned int m_nextElementId = 1;
    ZED_T_DICT_ACCESS m_access = 1;
    std::shared_ptr<const TDictTypeConstructorOf> m_pElementType;
    IFieldSetOfButtonMap* m_pStrip = nullptr;
    QToolButton* m_pAdd = nullptr;
    QWidget* m_pFrame = nullptr;  // the field's window: strip, elements and add button
};
