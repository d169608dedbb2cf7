// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "zed/dict/TDictType.h"
#include "zed/value/TValueList.h"

/// A record value: member values found by member identifier (each member
/// value's identifier is its member's code). Like every container value it is
/// present from construction: a record with no members is still a value.
class ZED_EXPORT TRecord final : public TValue {
public:
    using Definition = std::shared_ptr<const TDictTypeRecord>;

    explicit TRecord(Definition definition = nullptr, unsigned int id = 0);
    ~TRecord() override;

    ZED_T_DATATYPE GetDatatype() const override { return ZED_DT_RECORD; }
    const Definition& GetDefinition() const { return m_definition; }
    const TDictType* GetDictType() const override { return m_definition.get(); }

    /// Adds a copy, or takes the value; a member already held is replaced.
    void Add(const TValue& member) { m_members.Put(member); }
    void Add(TValuePtr member) { m_members.Put(std::move(member)); }
    /// The member's value, or an absent value.
    const TValue& operator[](unsigned int memberId) const { return m_members[memberId]; }
    const TValueList& GetMembers() const { return m_members; }
    std::size_t Size() const { return m_members.Size(); }

protected:
    std::unique_ptr<TValue> CloneValue() const override;
    /// "{ Host = r1, Port = 80 }", members named by the definition.
    std::string ContentText() const override;
    bool SameContent(const TValue& other) const override;

private:
    Definition m_definition;
    TValueList m_members;
};
