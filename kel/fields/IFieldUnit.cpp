// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/IFieldUnit.h"

#include "kel/fields/IContainer.h"
#include "kel/model/IElementInfo.h"

#include <QFontMetrics>
#include <QLabel>

IFieldUnit::IFieldUnit(IElementInfo& info, IContainer* container)
    : KELFieldWithoutValue(info, container), m_units(info.GetUnits())
{
}

IFieldUnit::~IFieldUnit() = default;

void IFieldUnit::Create(unsigned int& id, IElementInfo& info)
{
    auto* label = new QLabel(QString::fromStdString(m_units), GetContainer());
    AdoptControl(label, id, info);
    // A units text describes its field; it is not a control of its own to reach.
    label->setAccessibleName(QString::fromStdString(m_units));
    label->setAccessibleDescription(QString());
    label->setToolTip(QString());
    SetWindow(label);
    const QFontMetrics metrics(label->font());
    Resize(QSize(m_units.empty() ? 0 : metrics.horizontalAdvance(label->text()) + 4, metrics.height() + 3));
}
