// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/controls/KELFormLineLayout.h"
#include "kel/model/IPresentationElement.h"
#include "kel/model/KELValueElement.h"

#include <QString>

#include <memory>
#include <string>

class IContainer;
class IElementInfo;
class IField;
class IFieldUnit;
class ILabel;
class TValue;

/// One line of a form: the label, the field of the element and its units. It
/// forwards the form's operations to the field and turns the field's contents
/// into an argument of the directive's request. Its key is its position.
class KEL_EXPORT IFormLine : public IPresentationElement, public KELValueElement, public KELFormLineLayout {
public:
    /// Makes label, field and units on the container, their controls taking
    /// ids from the counter. A part that cannot be made throws
    /// ICreationFailedException, after what was made is gone again.
    IFormLine(IElementInfo& info, IContainer* container, unsigned int& counter);
    IFormLine(const IFormLine&) = delete;
    IFormLine& operator=(const IFormLine&) = delete;
    ~IFormLine() override;

    void SetToNotReturned() override;
    /// "Name = value" for a line with a value; out stays as it was otherwise.
    virtual void GetPartialRequest(std::string& out);
    virtual void FillWithConfig(const std::string& section);
    virtual void SaveContents(const std::string& section) const;
    void SetValue(const TValue& value) override;
    /// Whether the field's text differs from the one it showed when first asked.
    virtual bool ValueChanged();
    /// What the field shows now becomes what ValueChanged compares with (a
    /// line refreshed from a reply has not been changed by the operator).
    void RememberValue();
    void Dump() override;
    /// Adds the line's argument; false (after telling the operator) only when
    /// a required argument has no value, so the call must not be sent.
    bool FillRequest(TRequest& request) override;
    /// What the operator was told when FillRequest last refused; empty when it did not.
    const std::string& GetRefusal() const { return m_refusal; }
    virtual void SetVisibility(int visibility) { m_visibility = visibility; }
    virtual int GetVisibility() const { return m_visibility; }
    /// The position is also the line's key in its form.
    virtual void SetPosition(unsigned int position);
    virtual unsigned int GetPosition() const { return m_position; }

    ILabel* GetLabel() const { return m_pLabel.get(); }
    IField* GetField() const { return m_pField.get(); }
    IFieldUnit* GetUnit() const { return m_pUnit.get(); }
    void ShowLine();
    void HideLine();
    int IsHidden() const { return m_hidden; }
    /// Whether the filter's text is in the line's label, help or value.
    bool MatchesFilter(const QString& filter) const;
    /// Left out by a form's filter for the moment: its windows hidden and it
    /// takes no room, whatever its designed visibility, which stays as it was.
    void SetFilteredOut(bool out);
    bool IsFilteredOut() const { return m_filteredOut; }
    /// The idle pass: the label shows whether the line changed.
    int OnIdleUpdateCmdUI(unsigned long wParam, long lParam);

    /// What the control container lays out.
    QWidget* GetLabelWindow() const override;
    IField* GetLineField() const override { return m_pField.get(); }
    IField* GetUnitField() const override;
    unsigned int GetIndentLevel() const override { return 0; }
    bool IsLineShown() const override { return m_visibility != 0 && !m_filteredOut; }

private:
    bool Refuse(std::string message);

    std::string m_initialText;
    std::string m_refusal;
    bool m_snapshotTaken = false;
    bool m_changedState = false;
    unsigned int m_position = 0;
    int m_visibility = 1;
    int m_hidden = 0;
    bool m_filteredOut = false;
    std::unique_ptr<IFieldUnit> m_pUnit;
    std::unique_ptr<ILabel> m_pLabel;
    unsigned int m_counterAtConstruction;
    std::unique_ptr<IField> m_pField;
    IContainer* m_pContainer;  // the control container, the windows' parent; not owned
};
