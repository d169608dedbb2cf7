// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/IField.h"
#include "kel/frame/KELString.h"

#include <QFontMetrics>
#include <QLineEdit>

#include "kel/controls/IControlBase.h"
#include "kel/fields/IContainer.h"
#include "kel/fields/IFieldContainer.h"
#include "kel/fields/KELSetOfOwner.h"
#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/ICreationFailedException.h"
#include "kel/frame/KELResources.h"
#include "kel/frame/KELTrace.h"
#include "kel/model/IElementInfo.h"
#include "kel/model/KELElementHelp.h"

KELSetOfOwner::~KELSetOfOwner() = default;

IField::IField() = default;

IField::IField(IElementInfo& info, IContainer* container)
    : m_isSetOfElement(info.GetIsSetOfElement()), m_id(static_cast<unsigned int>(info.GetID())),
      m_completeId(info.GetCompleteID()), m_pContainer(container), m_dt(info.GetDT()),
      m_defaultAllowed(info.DefaultAllowed()), m_default(info.GetDefault())
{
    if (!container) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELField", this) << "KEL : IField::IField, pParentWnd must be valid !";
    }
    if (KELConfigContext* context = ConfigurationContext(); context && GetKELapp())
        GetKELapp()->GetConfigString(context, info.GetName(), m_completeId + ".Help", m_help, "", 1);
    m_hasHelp = m_help.empty() ? 0 : 1;
    m_readOnly = info.GetAccess() == ZED_ACCESS_READ_ONLY ? 1 : 0;
}

IField::IField(const IField& other) { *this = other; }

IField& IField::operator=(const IField& other)
{
    if (this == &other)
        return *this;
    m_coordinates = other.m_coordinates;
    m_size = other.m_size;
    m_pContainer = other.m_pContainer;
    m_pWnd = other.m_pWnd;
    m_indent = other.m_indent;
    m_isSetOfElement = other.m_isSetOfElement;
    m_hasHelp = other.m_hasHelp;
    m_readOnly = other.m_readOnly;
    m_help = other.m_help;
    m_defaultAllowed = other.m_defaultAllowed;
    m_default = other.m_default;
    return *this;
}

IField::~IField() { delete m_pWnd.data(); }

void IField::SetWindow(QWidget* window)
{
    m_pWnd = window;
    if (window)
        window->show();
}

void IField::HideWindow()
{
    if (m_pWnd)
        m_pWnd->hide();
}

void IField::ShowWindow()
{
    if (m_pWnd)
        m_pWnd->show();
}

bool IField::ValueChanged() const { return false; }

namespace {

// The set-of field that holds an element field, or why there is none.
KELSetOfOwner* SetOfParent(IField& field, const char* operation)
{
    auto* container = dynamic_cast<IFieldContainer*>(field.GetContainer());
    if (!container) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELField", &field)
            << "KEL : IField::" << operation << ", container field parent is NULL";
        return nullptr;
    }
    auto* owner = dynamic_cast<KELSetOfOwner*>(container->GetFieldParent());
    if (!owner) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELField", &field)
            << "KEL : IField::" << operation << ", SetOf field parent is NULL";
    }
    return owner;
}

}  // namespace

void IField::AddNewInSet()
{
    if (!m_isSetOfElement)
        return;
    if (KELSetOfOwner* owner = SetOfParent(*this, "AddNewInSet")) {
        owner->AddNewElement();
        dynamic_cast<IFieldContainer*>(m_pContainer)->GetFieldParent()->SizeHasChanged();
    }
}

void IField::RemoveFromSet()
{
    if (!m_isSetOfElement)
        return;
    if (KELSetOfOwner* owner = SetOfParent(*this, "RemoveFromSet"))
        owner->RemoveElement(m_id);  // this field may be gone now
}

std::string IField::GetHelp() const { return m_help; }

int IField::IsSetOfElement() { return m_isSetOfElement; }

int IField::HasHelp() { return m_hasHelp; }

void IField::SizeHasChanged() {}

void IField::MoveAndResize(const QPoint& position, const QSize& size)
{
    if (position == m_coordinates && size == m_size)
        return;
    m_coordinates = position;
    m_size = size;
    PlaceWindow("IField::MoveAndResize, m_pWnd must be valid !");
}

// Move, Resize and MoveAndResize deliberately trace without the "KEL : " prefix.
void IField::PlaceWindow(const char* problem)
{
    if (m_pWnd)
        m_pWnd->setGeometry(QRect(m_coordinates, m_size));
    else
        KEL_TRACE(KEL_TRACE_PBLM, "KELField", this) << problem;
}

QSize IField::GetSize() { return m_size; }

QPoint IField::GetCoordinates() { return m_coordinates; }

QPoint IField::Move(const QPoint& position)
{
    if (position == m_coordinates)
        return m_coordinates;
    m_coordinates = position;
    PlaceWindow("IField::Move, m_pWnd must be valid !");
    return m_coordinates;
}

QSize IField::Resize(const QSize& size)
{
    if (size == m_size)
        return m_size;
    m_size = size;
    PlaceWindow("IField::Resize, m_pWnd must be valid !");
    return m_size;
}

void IField::ControlCallback(int, void*) {}

void IField::SetInitialValue(std::unique_ptr<TValue> value)
{
    m_initialValueSet = true;
    m_pInitialValue = std::move(value);
}

bool IField::RevertToInitial()
{
    if (m_initialValueSet) {
        // A value left to the server goes back to being left to it.
        if (m_pInitialValue && m_pInitialValue->IsDefault())
            SetToServerDefault();
        else if (m_pInitialValue)
            SetValue(*m_pInitialValue);
        else
            SetToNullValue();
        return true;
    }
    // Held for the call, so that the null is not taken for an initial value.
    m_initialValueSet = true;
    SetToNullValue();
    m_initialValueSet = false;
    return false;
}

void IField::KeepValueAsInitial()
{
    // Composites are not filled from settings: theirs stays what a reply gave.
    switch (m_dt) {
    case ZED_DT_RECORD:
    case ZED_DT_SETOF:
    case ZED_DT_SEQUENCEOF:
    case ZED_DT_ATTRIBUTE:
    case ZED_DT_ATTRIBUTELIST: return;
    default: break;
    }
    std::unique_ptr<TValue> value = GetTValue(false);
    if (value && (value->IsPresent() || value->IsDefault()))
        SetInitialValue(std::move(value));
}

bool IField::LockInitialValueSet(bool lock)
{
    const bool previous = m_initialValueSet;
    m_initialValueSet = lock;
    return previous;
}

void IField::SetToDefault()
{
    if (m_readOnly)
        return;
    if (m_defaultAllowed == ZED_DEFAULT_DICTIONARY)
        SetValue(GetDefault());
    else if (m_defaultAllowed == ZED_DEFAULT_SERVER)
        SetToServerDefault();
}

IPresentationForm* IField::GetParentForm() const { return m_pContainer ? m_pContainer->GetParentForm() : nullptr; }

KELConfigContext* IField::ConfigurationContext() const
{
    return m_pContainer ? m_pContainer->GetConfigContext() : nullptr;
}

void IField::AdoptControl(QWidget* control, unsigned int& id, const IElementInfo& info)
{
    ZEDAssertCreationFailed(control != nullptr, KELResources::String(KELString::kFormWindowFailed));
    control->setProperty(KEL_CONTROL_ID_PROPERTY, id++);
    // Inherited from the form's container mostly; set only where it is not.
    if (const IApplication* app = GetKELapp(); app && control->font() != *app->GetRegularFont())
        control->setFont(*app->GetRegularFont());
    const std::string& name = info.GetPresentationName().empty() ? info.GetName() : info.GetPresentationName();
    control->setAccessibleName(QString::fromStdString(name));
    // The help text, then what the dictionary says the element takes: F1 shows both.
    const std::string details = KELElementHelp::Describe(info);
    control->setAccessibleDescription(
        QString::fromStdString(m_help.empty() || details.empty() ? m_help + details : m_help + "\n\n" + details));
    if (m_pContainer && info.HasDictType() && info.GetDictType())
        m_pContainer->AddToolTip(control, QString::fromStdString(info.GetDictType()->GetName()));
}

void IField::AdoptControl(QWidget* window, IControlBase& control, unsigned int& id, const IElementInfo& info)
{
    AdoptControl(window, id, info);
    if (!IsReadOnly())
        return;
    // A line edit is made read-only and loses its frame; other controls only look so.
    if (auto* line = qobject_cast<QLineEdit*>(window))
        IControlBase::ShowAsReadOnly(line);
    else
        IControlBase::ShowAsReadOnly(window);
    control.SetFlag(1);
}

int IField::TextLineHeight(const QFont& font)
{
    // Forms are made in the GUI thread, all in the same font mostly.
    static QFont measured;
    static int height = -1;
    if (height < 0 || font != measured) {
        height = QFontMetrics(font).boundingRect(QStringLiteral("Text")).height() + 3;
        measured = font;
    }
    return height;
}

std::unique_ptr<TValue> IField::ScalarTValue(bool always, const std::function<std::unique_ptr<TValue>()>& makeEmpty,
                                             const std::function<std::unique_ptr<TValue>(const std::string&)>& convert)
{
    std::string text;
    GetValue(text);
    std::unique_ptr<TValue> value;
    if (text.empty()) {
        if (!always)
            return nullptr;
        value = makeEmpty();
    } else if (m_defaultAllowed == ZED_DEFAULT_SERVER && text == m_default) {
        value = makeEmpty();
        if (value)
            value->SetDefault();
    } else {
        value = convert(text);
    }
    if (value)
        value->SetID(m_id);
    return value;
}

bool IField::ReadConfigText(const std::string& key, std::string& text) const
{
    KELConfigContext* context = ConfigurationContext();
    IApplication* app = GetKELapp();
    if (!context || !app)
        return false;
    std::string stored;
    app->GetConfigString(context, key, m_completeId, stored, "", 1);
    if (stored.empty())
        return false;
    text = stored;
    return true;
}

void IField::SaveConfigText(const std::string& key, const std::string& text, const char* kind) const
{
    KELConfigContext* context = ConfigurationContext();
    IConfiguration* file = context ? context->GetUserConfigFile() : nullptr;
    if (!file) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELField", this)
            << "KEL : " << kind << "::SaveContents : user config file pointer is NULL  ";
        return;
    }
    file->SetString(key, m_completeId, text, 1);
}
