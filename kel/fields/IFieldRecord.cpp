// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/IFieldRecord.h"

#include "kel/controls/ILabel.h"
#include "kel/fields/IFieldBuilder.h"
#include "kel/fields/IFieldContainer.h"
#include "kel/frame/KELTrace.h"
#include "kel/model/IElementInfo.h"
#include "zed/TException.h"
#include "zed/value/TRecord.h"

#include <algorithm>

// ---- the record -----------------------------------------------------------

IFieldRecord::IFieldRecord(IElementInfo& info, IContainer* container) : KELCompositeField(info, container) {}

IFieldRecord::~IFieldRecord() = default;

void IFieldRecord::SetDictType(const TDictType& type)
{
    m_pRecordType.reset();
    if (type.GetDictObjectType() == ZED_DICT_TYPE_RECORD)
        m_pRecordType = type.ShareAs<TDictTypeRecord>();
}

void IFieldRecord::Create(unsigned int& id, IElementInfo& info)
{
    auto* container = new IFieldContainer(this, GetContainer());
    AdoptControl(container, id, info);
    container->setObjectName(QStringLiteral("Field Container"));
    SetFieldContainer(container);
    SetWindow(container);
    OfferFolding();
    m_access = static_cast<int>(info.GetAccess());
    try {
        if (info.HasDictType() && info.GetDictType()) {
            SetDictType(*info.GetDictType());
            m_pCounter = &id;
            CreateFields();
            m_pCounter = nullptr;
        }
    } catch (const TException& e) {
        m_pCounter = nullptr;
        KEL_TRACE(KEL_TRACE_EXCP, "KELFieldRecord", this)
            << "KEL Exception catched : IFieldRecord::Create  failed : " << e.what();
    }
}

void IFieldRecord::CreateFields()
{
    if (!KEL_NEEDS(GetFieldContainer(), "KELFieldRecord", "IFieldRecord::CreateFields", "m_pFieldContainer"))
        return;
    unsigned int own = 1;
    unsigned int& counter = m_pCounter ? *m_pCounter : own;
    if (m_pRecordType)
        for (const TDictTypeRecord::Member& member : m_pRecordType->GetMembers()) {
            IElementInfo info;
            info.SetID(static_cast<int>(member.id));
            info.SetName(member.name);
            info.SetPresentationName(member.name);
            info.SetAsInnerElement(member.type->GetDatatype(), member.type.get(),
                                   static_cast<ZED_T_DICT_ACCESS>(m_access));
            auto field = std::make_unique<IFieldRecordMember>(info, GetFieldContainer());
            field->Create(counter, info);
            m_labelSize = std::max(m_labelSize, field->GetLabel() ? field->GetLabel()->GetSize().width() : 0);
            GetFieldContainer()->InsertField(std::move(field));
        }
    // Every member's label takes the widest one's width, so the members' fields stand in one column.
    for (long at = GetFieldContainer()->GoFirst(); at >= 0;)
        if (auto* member = dynamic_cast<IFieldRecordMember*>(GetFieldContainer()->GetNext(at));
            member && member->GetLabel())
            member->GetLabel()->ResetSize(m_labelSize);
    QSize size;
    GetFieldContainer()->ComputeSize(size);
    IField::Resize(size);
    GetFieldContainer()->PlaceElements();
}

// The members' texts joined in parentheses were always overwritten by ")" in
// the end: a record has no one-line text, and ")" is what callers have seen.
void IFieldRecord::GetValue(std::string& text) const { text = ")"; }

void IFieldRecord::GetPartialRequest(std::string& request)
{
    if (GetFieldContainer() && GetFieldContainer()->GetCount() > 0)
        GetValue(request);
}

void IFieldRecord::SetToNotReturned()
{
    ForEachElement([](IField& member) { member.SetToNotReturned(); });
}

bool IFieldRecord::SetToNullValue()
{
    ForEachElement([](IField& member) { member.SetToNullValue(); });
    return true;
}

bool IFieldRecord::SetToServerDefault()
{
    ForEachElement([](IField& member) { member.SetToServerDefault(); });
    return true;
}

void IFieldRecord::SetValue(const TValue& value)
{
    if (value.GetDatatype() != ZED_DT_RECORD) {
        KEL_TRACE(KEL_TRACE_EXCP, "KELFieldRecord", this)
            << "KEL Exception catched : IFieldRecord::SetValue failed : a value of data type " << value.GetDatatype()
            << " is not a record";
        return;
    }
    const auto& record = static_cast<const TRecord&>(value);
    ForEachElement([&](IField& member) {
        const TValue& part = record[member.GetID()];
        if (part.IsPresent())
            member.SetValue(part);
        else
            member.SetToNotReturned();
    });
    SetInitialValue(value.Clone());
}

std::unique_ptr<TValue> IFieldRecord::GetTValue(bool partial)
{
    std::unique_ptr<TRecord> record;
    ForEachElement([&](IField& member) {
        if (!record)
            record = std::make_unique<TRecord>(m_pRecordType, GetID());
        if (std::unique_ptr<TValue> part = member.GetTValue(partial))
            record->Add(std::move(part));
    });
    if (!record && partial)
        record = std::make_unique<TRecord>(m_pRecordType, GetID());
    return record;
}

// ---- a member --------------------------------------------------------------

IFieldRecordMember::IFieldRecordMember(IElementInfo& info, IContainer* container) : IField(info, container) {}

IFieldRecordMember::~IFieldRecordMember()
{
    m_pLabel.reset();
    m_pField.reset();
}

void IFieldRecordMember::Create(unsigned int& id, IElementInfo& info)
{
    m_pLabel = std::make_unique<ILabel>(ConfigurationContext(), info, GetContainer());
    m_pField = IFieldBuilder::CreateField(GetContainer(), id, info);
    m_pLabel->Create(id);
    m_extent = GetSize();
}

bool IFieldRecordMember::Whole(const char* operation) const
{
    if (m_pField && m_pLabel)
        return true;
    KEL_TRACE(KEL_TRACE_PBLM, "KELFieldRecord", this)
        << "KEL : IFieldRecordMember::" << operation << ", m_pField or m_pLabel is NULL";
    return false;
}

QSize IFieldRecordMember::GetSize()
{
    if (!Whole("GetSize"))
        return m_extent;
    const QSize label = m_pLabel->GetSize();
    const QSize field = m_pField->GetSize();
    return QSize(field.width() + label.width() + kLabelGap, std::max(label.height(), field.height()));
}

void IFieldRecordMember::PlaceField()
{
    const int labelWidth = m_pLabel->GetSize().width();
    m_pField->MoveAndResize(QPoint(m_place.x() + labelWidth + kLabelGap, m_place.y()),
                            QSize(m_extent.width() - labelWidth - kLabelGap, m_extent.height()));
}

QSize IFieldRecordMember::Resize(const QSize& size)
{
    m_extent = size;
    if (!Whole("Resize"))
        return m_extent;
    PlaceField();
    return m_extent;
}

QPoint IFieldRecordMember::Move(const QPoint& position)
{
    m_place = position;
    if (!Whole("Move"))
        return m_place;
    m_pLabel->Move(position);
    PlaceField();
    return m_place;
}

void IFieldRecordMember::MoveAndResize(const QPoint& position, const QSize& size)
{
    m_place = position;
    m_extent = size;
    if (!Whole("MoveAndResize"))
        return;
    m_pLabel->Move(position);
    PlaceField();
}

void IFieldRecordMember::SizeHasChanged()
{
    // A nested record grew: the member grows with it, and so does every container above.
    if (GetContainer())
        GetContainer()->SizeHasChanged();
}

void IFieldRecordMember::GetValue(std::string& text) const
{
    if (!m_pField || !m_pLabel) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELFieldRecord", this)
            << "KEL : IFieldRecordMember::GetValue, m_pField or m_pLabel is NULL";
        return;
    }
    m_pField->GetValue(text);
}

void IFieldRecordMember::SetToNotReturned()
{
    if (Whole("SetToNotReturned"))
        m_pField->SetToNotReturned();
}

void IFieldRecordMember::SetValue(const std::string& text)
{
    if (Whole("SetValue"))
        m_pField->SetValue(text);
}

void IFieldRecordMember::SetValue(const TValue& value)
{
    if (Whole("SetValue"))
        m_pField->SetValue(value);
}

void IFieldRecordMember::GetPartialRequest(std::string& request)
{
    if (Whole("GetPartialRequest"))
        m_pField->GetPartialRequest(request);
}

void IFieldRecordMember::FillWithConfig(const std::string&)
{
    KEL_TRACE(KEL_TRACE_PBLM, "KELFieldRecord", this) << "KEL : IFieldRecordMember::FillWithConfig not supported";
}

void IFieldRecordMember::SaveContents(const std::string&) const
{
    KEL_TRACE(KEL_TRACE_PBLM, "KELFieldRecord", this) << "KEL : IFieldRecordMember::SaveContents not supported";
}

void IFieldRecordMember::Dump()
{
    std::string text;
    if (m_pField)
        m_pField->GetValue(text);
    KEL_TRACE(KEL_TRACE_INFO, "KELFieldRecord", this) << "KEL : Record Member Value : " << text;
}

namespace {

bool FieldOnly(IField* field, const void* member, const char* operation)
{
    if (field)
        return true;
    KEL_TRACE(KEL_TRACE_PBLM, "KELFieldRecord", member)
        << "KEL : IFieldRecordMember::" << operation << ", m_pField is NULL";
    return false;
}

}  // namespace

bool IFieldRecordMember::SetToNullValue()
{
    return FieldOnly(m_pField.get(), this, "SetToNullValue") && m_pField->SetToNullValue();
}

bool IFieldRecordMember::SetToServerDefault()
{
    return FieldOnly(m_pField.get(), this, "SetToServerDefault") && m_pField->SetToServerDefault();
}

std::unique_ptr<TValue> IFieldRecordMember::GetTValue(bool partial)
{
    return FieldOnly(m_pField.get(), this, "GetTValue") ? m_pField->GetTValue(partial) : nullptr;
}
