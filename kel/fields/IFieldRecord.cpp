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

IFieldRecord::IFieldRecord(IElementInfo& info, IContainer* container) : IField(info, container) {}

IFieldRecord::~IFieldRecord()
{
    // Members go before their container window (which the base deletes).
    if (m_pFieldContainer)
        m_pFieldContainer->ClearAndDestroy();
}

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
    m_pFieldContainer = container;
    SetWindow(container);
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
        KEL_TRACE(KEL_TRACE_EXCP, "KELFieldRecord", this) << "KEL Exception catched : IFieldRecord::Create  failed : "
                                                          << e.what();
    }
}

void IFieldRecord::CreateFields()
{
    if (!m_pFieldContainer) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELFieldRecord", this)
            << "KEL : IFieldRecord::CreateFields, m_pFieldContainer must be valid !";
        return;
    }
    unsigned int own = 1;
    unsigned int& counter = m_pCounter ? *m_pCounter : own;
    if (m_pRecordType)
        for (const TDictTypeRecord::Member& member : m_pRecordType->GetMembers()) {
            IElementInfo info;
            info.SetCompleteID("");
            info.SetID(static_cast<int>(member.id));
            info.SetName(member.name);
            info.SetPresentationName(member.name);
            info.SetDT(member.type->GetDatatype());
            info.SetHasDictType(1);
            info.SetDictType(*member.type);
            info.SetIsDisplayed(1);
            info.SetRequired(0);
            info.SetUnits("");
            info.SetAccess(static_cast<ZED_T_DICT_ACCESS>(m_access));
            auto field = std::make_unique<IFieldRecordMember>(info, m_pFieldContainer);
            field->Create(counter, info);
            m_labelSize = std::max(m_labelSize, field->GetLabel() ? field->GetLabel()->GetSize().width() : 0);
            m_pFieldContainer->InsertField(std::move(field));
        }
    // Every member's label takes the widest one's width, so the members' fields stand in one column.
    for (long at = m_pFieldContainer->GoFirst(); at >= 0;)
        if (auto* member = dynamic_cast<IFieldRecordMember*>(m_pFieldContainer->GetNext(at)); member && member->GetLabel())
            member->GetLabel()->ResetSize(m_labelSize);
    QSize size;
    m_pFieldContainer->ComputeSize(size);
    IField::Resize(size);
    m_pFieldContainer->PlaceElements();
}

// The members' texts joined in parentheses were always overwritten by ")" in
// the end: a record has no one-line text, and ")" is what callers have seen.
void IFieldRecord::GetValue(std::string& text) const { text = ")"; }

void IFieldRecord::GetPartialRequest(std::string& request)
{
    if (m_pFieldContainer && m_pFieldContainer->GetCount() > 0)
        GetValue(request);
}

namespace {

template <class Visit>
void ForEachMember(IFieldContainer* container, Visit visit)
{
    if (!container)
        return;
    for (long at = container->GoFirst(); at >= 0;)
        visit(*container->GetNext(at));
}

} // namespace

void IFieldRecord::SetToNotReturned()
{
    ForEachMember(m_pFieldContainer, [](IField& member) { member.SetToNotReturned(); });
}

bool IFieldRecord::SetToNullValue()
{
    ForEachMember(m_pFieldContainer, [](IField& member) { member.SetToNullValue(); });
    return true;
}

bool IFieldRecord::SetToServerDefault()
{
    ForEachMember(m_pFieldContainer, [](IField& member) { member.SetToServerDefault(); });
    return true;
}

void IFieldRecord::SetValue(const std::string&)
{
    KEL_TRACE(KEL_TRACE_PBLM, "KELFieldRecord", this) << "KEL : IFieldRecord::SetValue string not supported";
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
    ForEachMember(m_pFieldContainer, [&](IField& member) {
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
    ForEachMember(m_pFieldContainer, [&](IField& member) {
        if (!record)
            record = std::make_unique<TRecord>(m_pRecordType, GetID());
        if (std::unique_ptr<TValue> part = member.GetTValue(partial))
            record->Add(std::move(part));
    });
    if (!record && partial)
        record = std::make_unique<TRecord>(m_pRecordType, GetID());
    return record;
}

void IFieldRecord::FillWithConfig(const std::string&)
{
    KEL_TRACE(KEL_TRACE_PBLM, "KELFieldRecord", this) << "KEL : IFieldRecord::FillWithConfig not supported";
}

void IFieldRecord::SaveContents(const std::string&) const
{
    KEL_TRACE(KEL_TRACE_PBLM, "KELFieldRecord", this) << "KEL : IFieldRecord::SaveContents not supported";
}

void IFieldRecord::Dump()
{
    std::string text;
    GetValue(text);
    KEL_TRACE(KEL_TRACE_INFO, "KELFieldRecord", this) << "KEL : Record Value : " << text;
}

void IFieldRecord::SizeHasChanged()
{
    if (!m_pFieldContainer)
        return;
    QSize size;
    m_pFieldContainer->ComputeSize(size);
    IField::Resize(size);
    if (GetContainer())
        GetContainer()->SizeHasChanged();
}

QSize IFieldRecord::GetSize() { return IField::GetSize(); }

QSize IFieldRecord::Resize(const QSize& size)
{
    if (!m_pFieldContainer || !GetContainer())
        return IField::GetSize();
    IField::MoveAndResize(GetCoordinates(), size);
    m_pFieldContainer->PlaceElements();
    return size;
}

void IFieldRecord::MoveAndResize(const QPoint& position, const QSize& size)
{
    if (!m_pFieldContainer || !GetContainer())
        return;
    IField::MoveAndResize(position, size);
    m_pFieldContainer->setGeometry(QRect(position, size));
    m_pFieldContainer->PlaceElements();
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
    KEL_TRACE(KEL_TRACE_PBLM, "KELFieldRecord", member) << "KEL : IFieldRecordMember::" << operation << ", m_pField is NULL";
    return false;
}

} // namespace

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
