// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/IFieldCombo.h"
#include "kel/frame/KELString.h"

#include "kel/fields/KELEnumerationCodes.h"

#include "kel/controls/KELControl.h"
#include "kel/fields/IContainer.h"
#include "kel/frame/KELResources.h"
#include "kel/frame/KELTrace.h"
#include "kel/model/IElementInfo.h"
#include "zed/value/TEnumeration.h"

#include <QComboBox>
#include <QFontMetrics>
#include <QLineEdit>

#include <charconv>

IFieldCombo::IFieldCombo(IElementInfo& info, IContainer* container) : KELTextField(info, container)
{
    if (info.GetDictType())
        SetDictType(*info.GetDictType());
}

IFieldCombo::~IFieldCombo() = default;

void IFieldCombo::SetDictType(const TDictType& type)
{
    m_pEnumeration.reset();
    if (type.GetDictObjectType() == ZED_DICT_TYPE_ENUMERATION)
        m_pEnumeration = type.ShareAs<TDictTypeEnumeration>();
}

void IFieldCombo::Create(unsigned int& id, IElementInfo& info)
{
    KEL_NEEDS(GetContainer(), "KELField", "IFieldCombo::Create", "m_pParentWnd");
    if (!m_pEnumeration) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELField", this) << "KEL : IFieldCombo::Create, the Enumeration has no dict type !";
    }
    QWidget* window;
    if (IsReadOnly()) {
        auto* edit = new KELControl<QLineEdit>(this, GetContainer());
        AdoptControl(edit, *edit, id, info);
        m_pEdit = edit;
        window = edit;
    } else {
        auto* combo = new KELControl<QComboBox>(this, GetContainer());
        AdoptControl(combo, id, info);
        if (m_pEnumeration)
            for (const TDictTypeEnumeration::Item& item : m_pEnumeration->GetItems())
                combo->addItem(QString::fromStdString(item.text), item.code);
        combo->setCurrentIndex(-1);
        m_pCombo = combo;
        window = combo;
    }
    SetWindow(window);
    const QFontMetrics metrics(window->font());
    int widest = 0;
    if (m_pEnumeration)
        for (const TDictTypeEnumeration::Item& item : m_pEnumeration->GetItems())
            widest = std::max(widest, metrics.horizontalAdvance(QString::fromStdString(item.text)));
    const int height = m_pCombo ? m_pCombo->sizeHint().height() : TextLineHeight(window->font());
    Resize(QSize(std::max(150, widest + 40), height));
}

const TDictTypeEnumeration::Item* IFieldCombo::Find(const std::string& text) const
{
    if (!m_pEnumeration)
        return nullptr;
    if (const TDictTypeEnumeration::Item* item = m_pEnumeration->FindText(text))
        return item;
    int code = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), code);
    return error == std::errc() && end == text.data() + text.size() ? m_pEnumeration->FindCode(code) : nullptr;
}

void IFieldCombo::Choose(const TDictTypeEnumeration::Item* item)
{
    ForgetServerDefault();
    if (m_pCombo)
        m_pCombo->setCurrentIndex(m_pCombo->findData(item->code));
    // Shown read-only, with its number where the operator asked; its value stays the name.
    m_shownText = item->text;
    if (m_pEdit)
        m_pEdit->setText(QString::fromStdString(KELEnumerationCodes::Text(item->text, item->code)));
}

void IFieldCombo::ShowNothing(const std::string& text)
{
    ForgetServerDefault();
    if (m_pCombo) {
        m_pCombo->setCurrentIndex(-1);
        m_pCombo->setPlaceholderText(QString::fromStdString(text));
    }
    m_shownText = text;
    if (m_pEdit)
        m_pEdit->setText(QString::fromStdString(text));
}

void IFieldCombo::SetValue(const std::string& text)
{
    const TDictTypeEnumeration::Item* item = Find(text);
    if (!item) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELField", this) << "KEL : IFieldCombo::SetValue : Enable to find  ";
        return;
    }
    Choose(item);
}

void IFieldCombo::SetValue(const TValue& value)
{
    if (value.GetDatatype() != ZED_DT_ENUMERATION) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELField", this) << "KEL : IFieldCombo::SetValue : Enable to find  ";
        return;
    }
    if (!value.IsPresent() || value.HasReason()) {
        ShowNothing(value.ToString());
        return;
    }
    const int code = static_cast<const TEnumeration&>(value).GetCode();
    const TDictTypeEnumeration::Item* item = m_pEnumeration ? m_pEnumeration->FindCode(code) : nullptr;
    if (!item) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELField", this) << "KEL : IFieldCombo::SetValue : Enable to find  ";
        return;
    }
    Choose(item);
    RememberPutIn(item->text);
    SetInitialValue(value.Clone());
}

void IFieldCombo::GetValue(std::string& text) const
{
    // The server's default holds only while nothing is chosen: a pick by the
    // operator (mouse or keyboard) replaces it.
    if (ServerDefaultHolds() && (!m_pCombo || m_pCombo->currentIndex() < 0))
        text = GetDefault();
    else if (m_pCombo)
        text = m_pCombo->currentIndex() < 0 ? std::string() : m_pCombo->currentText().toStdString();
    else if (m_pEdit)
        text = m_shownText;
}

void IFieldCombo::GetPartialRequest(std::string& request) { GetValue(request); }

void IFieldCombo::SetToNotReturned() { ShowNothing(KELResources::String(KELString::kNotReturned)); }

bool IFieldCombo::SetToNullValue()
{
    ShowNothing(std::string());
    return true;
}

bool IFieldCombo::SetToServerDefault() { return ShowServerDefault(); }

std::unique_ptr<TValue> IFieldCombo::GetTValue(bool always)
{
    return ScalarTValue(
        always, [this] { return std::make_unique<TEnumeration>(m_pEnumeration); },
        [this](const std::string& text) -> std::unique_ptr<TValue> {
            const TDictTypeEnumeration::Item* item = Find(text);
            return item ? std::make_unique<TEnumeration>(m_pEnumeration, item->code) : nullptr;
        });
}

void IFieldCombo::FillWithConfig(const std::string& key)
{
    std::string text;
    if (!ReadConfigText(key, text))
        return;
    const TDictTypeEnumeration::Item* item = Find(text);
    if (!item) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELField", this) << "KEL : IFieldCombo::FillWithConfig : Enable to find  ";
        return;
    }
    Choose(item);
}

bool IFieldCombo::ValueChanged() const { return TextChangedSincePutIn(); }
