// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/fields/IContainer.h"
#include "kel/model/IPresentationContainer.h"

class IPresentationForm;
class KELFormLineLayout;

/// The window of a form in which its lines stand, one under the other: label,
/// then the field in a column after the widest label, then the units.
class KEL_EXPORT IControlContainer : public IContainer, public IPresentationContainer {
public:
    static constexpr int kIndentStep = 20;
    static constexpr int kMinWidth = 600;
    static constexpr int kTop = 5;
    static constexpr int kLabelLeft = 10;  // a label never stands further left
    static constexpr int kLabelGap = 25;   // between the widest label and the fields
    static constexpr int kMinFieldWidth = 150;
    static constexpr int kOutdentGap = 10;  // above a line less indented than the one before
    static constexpr int kLineGap = 2;

    explicit IControlContainer(IPresentationForm* form, QWidget* parent = nullptr);
    ~IControlContainer() override;

    IPresentationForm* GetForm() const { return m_pForm; }
    void PlaceElements() override;
    /// Lays the lines out again and takes the size they need.
    void SizeHasChanged() override;
    void ComputeSize(QSize& size);
    unsigned int GetLabelMaxWidth() const { return m_labelMaxWidth; }
    unsigned int GetUnitMaxWidth() const { return m_unitMaxWidth; }

protected:
    void ComputeLabelSize();
    void ComputeUnitSize();

private:
    /// Walks the lines with the layout's rules; place moves each one.
    QSize Layout(bool place);
    template <class Visit>
    void ForEachLine(Visit visit) const;

    IPresentationForm* m_pForm;  // not owned
    unsigned int m_labelMaxWidth = 0;
    unsigned int m_unitMaxWidth = 0;
};
