// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/IFieldToggle.h"
#include "kel/frame/KELString.h"

#include "kel/controls/KELControl.h"
#include "kel/fields/IContainer.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELResources.h"
#include "kel/frame/KELTrace.h"
#include "kel/model/IElementInfo.h"
#include "zed/value/TScalarValues.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QRadioButton>

namespace {

QString TrueText() { return QString::fromStdString(KELResources::String(KELString::kTrue)); }
QString FalseText() { return QString::fromStdString(KELResources::String(KELString::kFalse)); }

}  // namespace

IFieldToggle::IFieldToggle(IElementInfo& info, IContainer* container) : IField(info, container) {}

IFieldToggle::~IFieldToggle() = default;

void IFieldToggle::Create(unsigned int& id, IElementInfo& info)
{
    // The field's window is the row that holds its controls, so that they move together.
    auto* row = new QWidget(GetContainer());
    const QString name =
        QString::fromStdString(info.GetPresentationName().empty() ? info.GetName() : info.GetPresentationName());
    if (!IsReadOnly()) {
        auto* yes = new KELControl<QRadioButton>(this, row);
        AdoptControl(yes, id, info);
        auto* no = new KELControl<QRadioButton>(this, row);
        AdoptControl(no, id, info);
        yes->setText(TrueText());
        no->setText(FalseText());
        yes->setAccessibleName(name + QLatin1Char(' ') + TrueText());
        no->setAccessibleName(name + QLatin1Char(' ') + FalseText());
        m_pGroup = new QButtonGroup(row);
        m_pGroup->addButton(yes);
        m_pGroup->addButton(no);
        QObject::connect(m_pGroup, &QButtonGroup::buttonClicked, row,
                         [this] { ControlCallback(KEL_CONTROL_CLICKED, nullptr); });
        auto* layout = new QHBoxLayout(row);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(yes);
        layout->addWidget(no);
        layout->addStretch();
        m_pTrue = yes;
        m_pFalse = no;
    }
    auto* edit = new KELControl<QLineEdit>(this, row);
    AdoptControl(edit, id, info);
    IControlBase::ShowAsReadOnly(edit);
    edit->SetFlag(1);
    m_pEdit = edit;
    SetWindow(row);
    const int textHeight = TextLineHeight(edit->font());
    QSize size(150, textHeight);
    if (m_pTrue) {
        const QSize buttons = row->sizeHint();
        size = QSize(std::max(buttons.width(), 150), std::max(buttons.height(), textHeight));
        edit->hide();
    }
    Resize(size);
    edit->setGeometry(QRect(QPoint(0, 0), size));
}

void IFieldToggle::ShowText(const std::string& text)
{
    if (!m_pEdit)
        return;
    m_pEdit->setText(QString::fromStdString(text));
    m_pEdit->resize(GetSize());
    m_pEdit->show();
    m_pEdit->raise();
}

void IFieldToggle::Uncheck()
{
    if (!m_pGroup)
        return;
    m_pGroup->setExclusive(false);
    m_pTrue->setChecked(false);
    m_pFalse->setChecked(false);
    m_pGroup->setExclusive(true);
}

void IFieldToggle::Show(bool value)
{
    if (IsReadOnly()) {
        ShowText(KELResources::String(value ? KELString::kTrue : KELString::kFalse));
        return;
    }
    if (!m_pTrue)
        return;
    m_pTrue->setChecked(value);
    m_pFalse->setChecked(!value);
    m_pEdit->hide();
}

void IFieldToggle::SetValue(const TValue& value)
{
    if (value.GetDatatype() != ZED_DT_BOOLEAN) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELField", this)
            << "KEL : IFieldToggle::SetValue, a value of data type " << value.GetDatatype() << " is not a boolean";
        return;
    }
    if (!value.IsPresent() || value.HasReason()) {
        SetToNotReturned();
        return;
    }
    Show(static_cast<const TBoolean&>(value).GetValue());
    SetInitialValue(value.Clone());
}

void IFieldToggle::SetValue(const std::string& text)
{
    const bool on =
        QString::fromStdString(text).compare(TrueText(), Qt::CaseInsensitive) == 0 || (!text.empty() && text[0] == '1');
    Show(on);
}

void IFieldToggle::GetValue(std::string& text) const
{
    if (IsReadOnly() || !m_pTrue)
        return;
    text = KELResources::String(m_pTrue->isChecked() ? 4026 : m_pFalse->isChecked() ? 4027 : 4025);
}

void IFieldToggle::GetPartialRequest(std::string& request)
{
    if (IsReadOnly() || !m_pTrue)
        return;
    request = m_pTrue->isChecked() ? "True" : m_pFalse->isChecked() ? "False" : "";
}

// Neither choice checked gives no value, even when one is asked for always,
// unless the text edit shows what stands for it (not returned, the default).
std::unique_ptr<TValue> IFieldToggle::GetTValue(bool)
{
    std::unique_ptr<TValue> value;
    if (m_pTrue && (m_pTrue->isChecked() || m_pFalse->isChecked()))
        value = std::make_unique<TBoolean>(m_pTrue->isChecked());
    else if (m_pEdit && m_pEdit->isVisibleTo(m_pEdit->parentWidget()))
        value = std::make_unique<TBoolean>();
    if (!value)
        return nullptr;
    value->SetID(GetID());
    if (!value->IsPresent() && DefaultAllowed() == ZED_DEFAULT_SERVER && m_pEdit
        && m_pEdit->text().toStdString() == GetDefault())
        value->SetDefault();
    return value;
}

void IFieldToggle::SetToNotReturned()
{
    if (IsReadOnly()) {
        ShowText(KELResources::String(KELString::kNotReturned));
        return;
    }
    Uncheck();
}

bool IFieldToggle::SetToNullValue()
{
    Uncheck();
    if (m_pEdit && !IsReadOnly())
        m_pEdit->hide();
    return true;
}

bool IFieldToggle::SetToServerDefault()
{
    SetToNullValue();
    ShowText(GetDefault());
    return true;
}

void IFieldToggle::ControlCallback(int code, void*)
{
    if (code == KEL_CONTROL_CLICKED && m_pEdit && !IsReadOnly())
        m_pEdit->hide();
}

void IFieldToggle::FillWithConfig(const std::string& key)
{
    KELConfigContext* context = ConfigurationContext();
    if (!context || !GetKELapp())
        return;
    bool on = true;
    if (GetKELapp()->GetConfigBool(context, key, GetCompleteID(), on, true, 1) != 1)
        return;
    Show(on);
}

void IFieldToggle::SaveContents(const std::string& key) const
{
    if (!m_pTrue || (!m_pTrue->isChecked() && !m_pFalse->isChecked()))
        return;  // nothing chosen, nothing to keep
    SaveConfigText(key, KELResources::String(m_pTrue->isChecked() ? 4026 : 4027), "IFieldToggle");
}

int IFieldToggle::CheckedState() const
{
    if (!m_pTrue)
        return -1;
    return m_pTrue->isChecked() ? 1 : m_pFalse->isChecked() ? 0 : -1;
}

void IFieldToggle::SetInitialValue(std::unique_ptr<TValue> value)
{
    m_putIn = CheckedState();
    IField::SetInitialValue(std::move(value));
}

bool IFieldToggle::ValueChanged() const { return !IsReadOnly() && m_pTrue && CheckedState() != m_putIn; }

void IFieldToggle::Dump()
{
    std::string text;
    GetValue(text);
    KEL_TRACE(KEL_TRACE_INFO, "KELField", this) << "KEL : Toggle Value : " << text;
}
