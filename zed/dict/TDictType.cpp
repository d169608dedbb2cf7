// SPDX-License-Identifier: BSD-3-Clause
#include "zed/dict/TDictType.h"
#include "zed/dict/ZedFind.h"

#include "zed/ZedText.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>

TDictType::TDictType(unsigned int id, std::string name, std::string presentationName, ZED_T_DATATYPE valueDatatype)
    : m_id(id), m_name(std::move(name)), m_presentationName(std::move(presentationName)), m_valueDatatype(valueDatatype)
{
}

TDictType::~TDictType() = default;

std::unique_ptr<TDictType> TDictType::Clone() const { return std::make_unique<TDictType>(*this); }

std::shared_ptr<const TDictType> TDictType::Share() const
{
    if (auto self = weak_from_this().lock())
        return self;
    return std::shared_ptr<const TDictType>(Clone());
}

std::string TDictType::ToString() const { return m_name + " (data type " + std::to_string(m_valueDatatype) + ")"; }

TDictTypeRecord::TDictTypeRecord(unsigned int id, std::string name, std::string presentationName,
                                 std::vector<Member> members)
    : TDictType(id, std::move(name), std::move(presentationName), ZED_DT_RECORD), m_members(std::move(members))
{
}

TDictTypeRecord::~TDictTypeRecord() = default;

std::unique_ptr<TDictType> TDictTypeRecord::Clone() const { return std::make_unique<TDictTypeRecord>(*this); }

std::string TDictTypeRecord::ToString() const
{
    std::string text = "RECORD " + GetName() + " {";
    for (std::size_t i = 0; i < m_members.size(); ++i)
        text += (i ? ", " : " ") + m_members[i].name + " : " + m_members[i].type->GetName();
    return text + " }";
}

const TDictTypeRecord::Member* TDictTypeRecord::FindMember(unsigned int memberId) const
{
    return ZedFindIf(m_members, [&](const Member& member) { return member.id == memberId; });
}

TDictTypeConstructorOf::TDictTypeConstructorOf(unsigned int id, std::string name, std::string presentationName,
                                               bool sequence, TDictTypePtr elementType)
    : TDictType(id, std::move(name), std::move(presentationName), sequence ? ZED_DT_SEQUENCEOF : ZED_DT_SETOF),
      m_elementType(std::move(elementType))
{
}

TDictTypeConstructorOf::~TDictTypeConstructorOf() = default;

std::unique_ptr<TDictType> TDictTypeConstructorOf::Clone() const
{
    return std::make_unique<TDictTypeConstructorOf>(*this);
}

std::string TDictTypeConstructorOf::ToString() const
{
    return (IsSequence() ? "SEQUENCE OF " : "SET OF ") + m_elementType->GetName();
}

TDictTypeEnumeration::TDictTypeEnumeration(unsigned int id, std::string name, std::string presentationName,
                                           std::vector<Item> items)
    : TDictType(id, std::move(name), std::move(presentationName), ZED_DT_ENUMERATION), m_items(std::move(items))
{
}

TDictTypeEnumeration::~TDictTypeEnumeration() = default;

std::unique_ptr<TDictType> TDictTypeEnumeration::Clone() const { return std::make_unique<TDictTypeEnumeration>(*this); }

std::string TDictTypeEnumeration::ToString() const
{
    std::string text = "ENUMERATION " + GetName() + " {";
    for (std::size_t i = 0; i < m_items.size(); ++i)
        text += (i ? ", " : " ") + m_items[i].text + " = " + std::to_string(m_items[i].code);
    return text + " }";
}

const TDictTypeEnumeration::Item* TDictTypeEnumeration::FindCode(int code) const
{
    return ZedFindIf(m_items, [&](const Item& item) { return item.code == code; });
}

const TDictTypeEnumeration::Item* TDictTypeEnumeration::FindText(const std::string& text) const
{
    return ZedFindIf(m_items, [&](const Item& item) { return ZedSameIgnoringCase(item.text, text); });
}

TDictTypeUserDefined::TDictTypeUserDefined(unsigned int id, std::string name, std::string presentationName,
                                           TDictTypePtr base)
    : TDictType(id, std::move(name), std::move(presentationName), ZED_DT_USERDEFINED), m_base(std::move(base))
{
}

TDictTypeUserDefined::~TDictTypeUserDefined() = default;

std::unique_ptr<TDictType> TDictTypeUserDefined::Clone() const { return std::make_unique<TDictTypeUserDefined>(*this); }

std::string TDictTypeUserDefined::ToString() const { return "TYPE " + GetName() + " = " + m_base->ToString(); }

TDictTypeIterator::TDictTypeIterator(const TDictType& type)
{
    if (type.GetDictObjectType() == ZED_DICT_TYPE_ENUMERATION) {
        m_pEnumeration = static_cast<const TDictTypeEnumeration*>(&type);
        m_count = m_pEnumeration->GetItems().size();
    } else if (type.GetDictObjectType() == ZED_DICT_TYPE_RECORD) {
        m_pRecord = static_cast<const TDictTypeRecord*>(&type);
        m_count = m_pRecord->GetMembers().size();
    }
}

int TDictTypeIterator::GetCode() const
{
    if (!IsValid())
        throw std::out_of_range("TDictTypeIterator: no current item");
    return m_pEnumeration ? m_pEnumeration->GetItems().at(m_index).code
                          : static_cast<int>(m_pRecord->GetMembers().at(m_index).id);
}

const std::string& TDictTypeIterator::GetText() const
{
    if (!IsValid())
        throw std::out_of_range("TDictTypeIterator: no current item");
    return m_pEnumeration ? m_pEnumeration->GetItems().at(m_index).text : m_pRecord->GetMembers().at(m_index).name;
}

const TDictType* TDictTypeIterator::GetType() const
{
    return m_pRecord ? m_pRecord->GetMembers().at(m_index).type.get() : nullptr;
}
