// SPDX-License-Identifier: BSD-3-Clause
#include "kel/controls/IControlContainer.h"

#include "kel/controls/KELFormLineLayout.h"
#include "kel/fields/IField.h"
#include "kel/fields/KELFormContext.h"

#include <algorithm>

KELFormLineLayout::~KELFormLineLayout() = default;

IControlContainer::IControlContainer(IPresentationForm* form, QWidget* parent) : IContainer(parent), m_pForm(form) {}

IControlContainer::~IControlContainer()
{
    // The lines' fields delete their controls, children of this window: before QWidget's own teardown.
    ClearElements();
}

template <class Visit>
void IControlContainer::ForEachLine(Visit visit) const
{
    ForEachElement([&](IPresentationElement& element) {
        if (auto* line = dynamic_cast<KELFormLineLayout*>(&element))
            visit(*line);
    });
}

void IControlContainer::ComputeLabelSize()
{
    m_labelMaxWidth = 0;
    ForEachLine([&](KELFormLineLayout& line) {
        if (QWidget* label = line.GetLabelWindow())
            m_labelMaxWidth = std::max(m_labelMaxWidth, static_cast<unsigned int>(label->width()));
    });
}

void IControlContainer::ComputeUnitSize()
{
    m_unitMaxWidth = 0;
    ForEachLine([&](KELFormLineLayout& line) {
        if (IField* units = line.GetUnitField())
            m_unitMaxWidth = std::max(m_unitMaxWidth, static_cast<unsigned int>(units->GetSize().width()));
    });
}

QSize IControlContainer::Layout(bool place)
{
    ComputeLabelSize();
    ComputeUnitSize();
    int extent = place ? (width() > 0 ? width() : kMinWidth) : 0;
    int y = kTop;
    int previousX = 0;
    const int labelColumn = static_cast<int>(m_labelMaxWidth) + kLabelGap;
    ForEachLine([&](KELFormLineLayout& line) {
        IField* field = line.GetLineField();
        if (!field || !line.IsLineShown())
            return;
        const int x = static_cast<int>(line.GetIndentLevel()) * kIndentStep;
        if (x != previousX && x < previousX)
            y += kOutdentGap;
        previousX = x;
        const QSize own = field->GetSize();
        const QSize size(std::max(own.width(), kMinFieldWidth), own.height());
        const QPoint at(x + labelColumn, y);
        if (place) {
            if (QWidget* label = line.GetLabelWindow())
                label->move(std::max(x, kLabelLeft), y);
            field->MoveAndResize(at, size);
            if (IField* units = line.GetUnitField())
                units->MoveAndResize(QPoint(at.x() + size.width(), y), units->GetSize());
        }
        extent = std::max(extent, at.x() + size.width() + static_cast<int>(m_unitMaxWidth));
        y += own.height() + kLineGap;
    });
    return QSize(extent, y);
}

void IControlContainer::PlaceElements()
{
    Layout(true);
    update();
}

void IControlContainer::ComputeSize(QSize& size) { size = Layout(false); }

void IControlContainer::SizeHasChanged()
{
    if (KELFormContext* form = GetFormContext()) {
        form->OnNewSize();
        return;
    }
    PlaceElements();
    QSize size;
    ComputeSize(size);
    resize(size.expandedTo(QSize(kMinWidth, 0)));
}
