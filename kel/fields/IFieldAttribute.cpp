// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/IFieldAttribute.h"

#include "kel/fields/IFieldBuilder.h"
#include "kel/fields/IFieldContainer.h"
#include "kel/frame/KELTrace.h"
#include "zed/TApplication.h"
#include "zed/TException.h"
#include "zed/value/TAttribute.h"
#include "zed/value/TUserDefined.h"
#include "zed/value/TValueParser.h"

#include <QLineEdit>

#include <charconv>

IFieldAttributeID::~IFieldAttributeID() = default;

namespace {

const TDictClass* ClassOf(const TEntitySpec& entity)
{
    const TDictionary* dictionary = ZEDGetApplication()->GetDictionary().get();
    return dictionary && entity.GetDepth() ? dictionary->FindClass(entity.GetEntityClass()) : nullptr;
}

// An identifier from its text: a name of the class's attributes, or a code.
TAttributeID IdentifierOf(const std::string& text, const TEntitySpec& entity)
{
    if (const TDictClass* cls = ClassOf(entity))
        if (std::unique_ptr<TAttributeID> found = ZEDParseAttributeID(text, *cls))
            return *found;
    std::uint32_t code = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), code);
    return error == std::errc() && end == text.data() + text.size() ? TAttributeID(code) : TAttributeID();
}

}  // namespace

// ---- one attribute ------------------------------------------------------------

IFieldAttribute::IFieldAttribute(IElementInfo& info, IContainer* container)
    : KELCompositeField(info, container), m_entity(info.GetEntity())
{
}

IFieldAttribute::~IFieldAttribute() = default;

void IFieldAttribute::Create(unsigned int& id, IElementInfo& info)
{
    auto* container = new IFieldContainer(this, GetContainer());
    AdoptControl(container, id, info);
    container->setObjectName(QStringLiteral("Field Container"));
    SetFieldContainer(container);
    SetWindow(container);
    CreateFields(info);
}

void IFieldAttribute::CreateFields(IElementInfo& info)
{
    if (!KEL_NEEDS(GetFieldContainer(), "KELFieldAttribute", "IFieldAttribute::CreateFields", "m_pFieldContainer"))
        return;
    IElementInfo idInfo;
    idInfo.SetID(1);
    idInfo.SetPresentationName("");
    idInfo.SetName(info.GetName());
    idInfo.SetAsInnerElement(ZED_DT_ATTRIBUTEID, nullptr, info.GetAccess());
    auto field = std::make_unique<IFieldAttributeID>(idInfo, GetFieldContainer());
    field->Create(m_controlId, idInfo);
    m_pFieldAttributeID = field.get();
    if (auto* edit = qobject_cast<QLineEdit*>(field->GetWindow()); edit && !IsReadOnly())
        QObject::connect(edit, &QLineEdit::editingFinished, edit, [this] { IdentifierChosen(); });
    GetFieldContainer()->InsertField(std::move(field));
    QSize size;
    GetFieldContainer()->ComputeSize(size);
    IField::Resize(size);
    GetFieldContainer()->PlaceElements();
}

void IFieldAttribute::ConstructElementInfoFromValue(IElementInfo& info, const TValue& value)
{
    info.SetID(2);
    info.SetPresentationName("");
    info.SetAsInnerElement(value.GetDatatype(), nullptr, ZED_ACCESS_READ_ONLY);
    info.SetDictTypeOf(value);
}

void IFieldAttribute::DropValueField()
{
    m_typedFor = 0;
    m_pUserBase.reset();
    if (!m_pValueField || !GetFieldContainer())
        return;
    std::unique_ptr<IField> old = GetFieldContainer()->RemoveField(static_cast<int>(m_pValueField->GetID()));
    m_pValueField = nullptr;
}

void IFieldAttribute::PlaceValueField(std::unique_ptr<IField> field)
{
    m_pValueField = field.get();
    GetFieldContainer()->InsertField(std::move(field));
    SizeHasChanged();
}

void IFieldAttribute::IdentifierChosen()
{
    if (IsReadOnly() || !m_pFieldAttributeID || !GetFieldContainer())
        return;
    std::string text;
    m_pFieldAttributeID->GetValue(text);
    const TDictClass* cls = ClassOf(m_entity);
    const TAttributeID id = IdentifierOf(text, m_entity);
    const TDictAttribute* attribute = cls && id.IsPresent() ? cls->FindAttribute(id.GetValue()) : nullptr;
    // An identifier no attribute has keeps what there is; the same one keeps what was typed.
    if (!attribute || (m_pValueField && m_typedFor == attribute->GetID()))
        return;
    // A user type is edited as its base, and its value given back wrapped.
    TDictTypePtr type = attribute->GetTypePtr();
    TDictTypePtr userBase;
    if (type->GetDictObjectType() == ZED_DICT_TYPE_USERDEFINED)
        type = userBase = static_cast<const TDictTypeUserDefined&>(*type).GetBase();
    // A value that was there goes into the field to edit.
    std::unique_ptr<TValue> kept = m_pValueField ? m_pValueField->GetTValue(false) : nullptr;
    if (kept && kept->GetDatatype() == ZED_DT_USERDEFINED)
        kept = static_cast<const TUserDefined&>(*kept).GetValue().Clone();
    if (kept && kept->GetDatatype() != type->GetDatatype())
        kept.reset();
    DropValueField();
    IElementInfo info;
    info.SetID(2);
    info.SetEntity(m_entity);
    info.SetName(attribute->GetName());
    info.SetPresentationName(attribute->GetPresentationName());
    info.SetAsInnerElement(type->GetDatatype(), type.get(), ZED_ACCESS_READ_WRITE);
    info.SetMaxSize(attribute->GetValueLength());
    try {
        std::unique_ptr<IField> field = IFieldBuilder::CreateField(GetFieldContainer(), m_controlId, info);
        if (kept && kept->IsPresent())
            field->SetValue(*kept);
        PlaceValueField(std::move(field));
        m_typedFor = attribute->GetID();
        m_pUserBase = userBase;
    } catch (const TException& e) {
        KEL_TRACE(KEL_TRACE_EXCP, "KELFieldAttribute", this)
            << "KEL Exception catched : IFieldAttribute::IdentifierChosen failed : " << e.what();
    }
}

void IFieldAttribute::SetValue(const TValue& value)
{
    if (!KEL_NEEDS(m_pFieldAttributeID, "KELFieldAttribute", "IFieldAttribute::SetValue", "m_pFieldAttributeID"))
        return;
    if (value.GetDatatype() != ZED_DT_ATTRIBUTE) {
        KEL_TRACE(KEL_TRACE_EXCP, "KELFieldAttribute", this)
            << "KEL Exception catched : IFieldAttribute::SetValue failed : a value of data type " << value.GetDatatype()
            << " is not an attribute";
        return;
    }
    const auto& attribute = static_cast<const TAttribute&>(value);
    try {
        m_pFieldAttributeID->SetValue(attribute.GetAttributeID());
        DropValueField();
        if (attribute.HasValue()) {
            IElementInfo info;
            ConstructElementInfoFromValue(info, attribute.GetValue());
            std::unique_ptr<IField> field = IFieldBuilder::CreateField(GetFieldContainer(), m_controlId, info);
            field->SetValue(attribute.GetValue());
            PlaceValueField(std::move(field));
        } else {
            SizeHasChanged();
        }
        SetInitialValue(value.Clone());
    } catch (const TException& e) {
        KEL_TRACE(KEL_TRACE_EXCP, "KELFieldAttribute", this)
            << "KEL Exception catched : IFieldAttribute::SetValue failed : " << e.what();
    }
}

std::unique_ptr<TValue> IFieldAttribute::GetTValue(bool partial)
{
    std::string text;
    if (m_pFieldAttributeID)
        m_pFieldAttributeID->GetValue(text);
    auto attribute = std::make_unique<TAttribute>(IdentifierOf(text, m_entity), GetID());
    if (m_pValueField)
        if (std::unique_ptr<TValue> value = m_pValueField->GetTValue(partial))
            attribute->SetValue(m_pUserBase ? std::make_unique<TUserDefined>(m_pUserBase, std::move(value))
                                            : std::move(value));
    return attribute;
}

void IFieldAttribute::GetValue(std::string& text) const
{
    if (!KEL_NEEDS(m_pFieldAttributeID, "KELFieldAttribute", "IFieldAttribute::GetValue", "m_pFieldAttributeID"))
        return;
    std::string id, value;
    m_pFieldAttributeID->GetValue(id);
    if (m_pValueField)
        m_pValueField->GetValue(value);
    text = id + " = " + value;
}

void IFieldAttribute::GetPartialRequest(std::string& request) { GetValue(request); }

void IFieldAttribute::SetToNotReturned()
{
    if (!KEL_NEEDS(m_pFieldAttributeID, "KELFieldAttribute", "IFieldAttribute::SetToNotReturned",
                   "m_pFieldAttributeID"))
        return;
    m_pFieldAttributeID->SetToNotReturned();
}

bool IFieldAttribute::SetToNullValue()
{
    DropValueField();
    SizeHasChanged();
    return true;
}

bool IFieldAttribute::SetToServerDefault()
{
    SetToNullValue();
    return false;
}

// ---- a list of attributes -------------------------------------------------------

IFieldAttrList::IFieldAttrList(IElementInfo& info, IContainer* container) : KELElementsField(info, container)
{
    m_elementInfo.SetEntity(info.GetEntity());
}

IFieldAttrList::~IFieldAttrList() = default;

void IFieldAttrList::Create(unsigned int& id, IElementInfo& info) { CreateFrame(id, info, true); }

bool IFieldAttrList::InitElementInfo()
{
    if (m_elementInfoReady)
        return true;
    m_elementInfo.SetPresentationName("");
    m_elementInfo.SetAsInnerElement(ZED_DT_ATTRIBUTE, nullptr, GetAccess());
    m_elementInfo.SetIsSetOfElement(1);
    m_elementInfoReady = 1;
    return true;
}

IField* IFieldAttrList::CreateNewField()
{
    if (!KEL_NEEDS(GetFieldContainer(), "KELFieldAttribute", "IFieldAttrList::CreateNewField", "m_pFieldContainer"))
        return nullptr;
    InitElementInfo();
    m_elementInfo.SetID(static_cast<int>(m_nextElementId++));
    auto field = std::make_unique<IFieldAttribute>(m_elementInfo, GetFieldContainer());
    field->Create(GetFieldContainer()->NextControlId(), m_elementInfo);
    IField* made = field.get();
    GetFieldContainer()->InsertField(std::move(field));
    return made;
}

void IFieldAttrList::SetValue(const TValue& value)
{
    if (!KEL_NEEDS(GetFieldContainer(), "KELFieldAttribute", "IFieldAttrList::SetValue", "m_pFieldContainer"))
        return;
    if (value.GetDatatype() != ZED_DT_ATTRIBUTELIST) {
        KEL_TRACE(KEL_TRACE_EXCP, "KELFieldAttribute", this)
            << "KEL Exception catched : IFieldAttrList::SetValue failed : a value of data type " << value.GetDatatype()
            << " is not an attribute list";
        return;
    }
    const auto& list = static_cast<const TAttributeList&>(value);
    ResizeTo(list.Size());
    std::size_t index = 0;
    ForEachElement([&](IField& element) { element.SetValue(list.At(index++)); });
    SetInitialValue(value.Clone());
    SizeHasChanged();
}

std::unique_ptr<TValue> IFieldAttrList::GetTValue(bool partial)
{
    auto list = std::make_unique<TAttributeList>(GetID());
    ForEachElement([&](IField& element) {
        std::unique_ptr<TValue> part = element.GetTValue(partial);
        if (part && part->GetDatatype() == ZED_DT_ATTRIBUTE)
            list->Add(std::unique_ptr<TAttribute>(static_cast<TAttribute*>(part.release())));
    });
    return list;
}

void IFieldAttrList::SetToNotReturned()
{
    KEL_TRACE(KEL_TRACE_PBLM, "KELFieldAttribute", this) << "KEL : IFieldAttrList::SetToNotReturned, not supported";
}
