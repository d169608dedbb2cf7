// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/IFieldNotSupported.h"
#include "kel/frame/KELString.h"

#include "kel/controls/KELControl.h"
#include "kel/fields/IContainer.h"
#include "kel/frame/KELResources.h"

#include <QFontMetrics>
#include <QLineEdit>

IFieldNotSupported::IFieldNotSupported(IElementInfo& info, IContainer* container)
    : KELFieldWithoutValue(info, container)
{
}

IFieldNotSupported::~IFieldNotSupported() = default;

void IFieldNotSupported::Create(unsigned int& id, IElementInfo& info)
{
    auto* edit = new KELControl<QLineEdit>(this, GetContainer());
    AdoptControl(edit, id, info);
    IControlBase::ShowAsReadOnly(edit);
    edit->setPlaceholderText(QString::fromStdString(KELResources::String(KELString::kNotSupported)));
    m_pEdit = edit;
    SetWindow(edit);
    Resize(QSize(kWidth, QFontMetrics(edit->font()).height() + 3));
}

void IFieldNotSupported::Show(const QString& text)
{
    if (m_pEdit)
        m_pEdit->setText(text);
}

void IFieldNotSupported::SetToNotReturned()
{
    m_pKept.reset();
    KELFieldWithoutValue::SetToNotReturned();
}

void IFieldNotSupported::SetValue(const std::string& text)
{
    m_pKept.reset();
    KELFieldWithoutValue::SetValue(text);
}

void IFieldNotSupported::SetValue(const TValue& value)
{
    KELFieldWithoutValue::SetValue(value.ToString());
    m_pKept = value.Clone();
}

void IFieldNotSupported::GetPartialRequest(std::string& request)
{
    if (m_pKept)
        GetValue(request);
}

std::unique_ptr<TValue> IFieldNotSupported::GetTValue(bool)
{
    if (!m_pKept)
        return nullptr;
    std::unique_ptr<TValue> value = m_pKept->Clone();
    value->SetID(GetID());
    return value;
}
