// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "zed/ZedExport.h"
#include "zed/dict/ZedDictCodes.h"
#include "zed/value/ZedDatatypes.h"

#include <memory>
#include <string>
#include <vector>

/// A type of the dictionary: what values of an argument, attribute, record
/// member or set element look like. Types are immutable once the dictionary is
/// loaded and are shared (never copied deeply) by everything that refers to
/// them; the dictionary refuses recursive types, so sharing forms no cycle.
class ZED_EXPORT TDictType : public std::enable_shared_from_this<TDictType> {
public:
    TDictType(unsigned int id, std::string name, std::string presentationName, ZED_T_DATATYPE valueDatatype);
    TDictType(const TDictType&) = default;
    TDictType& operator=(const TDictType&) = default;
    virtual ~TDictType();

    unsigned int GetID() const { return m_id; }
    const std::string& GetName() const { return m_name; }
    const std::string& GetPresentationName() const { return m_presentationName; }
    /// The data-type code of values of this type (spelt as TValue spells it).
    ZED_T_DATATYPE GetDatatype() const { return m_valueDatatype; }
    virtual ZED_T_DICT_OBJECT_TYPE GetDictObjectType() const { return ZED_DICT_TYPE; }

    /// A copy of the most derived class.
    virtual std::unique_ptr<TDictType> Clone() const;
    /// A shared handle on this type: itself when a shared pointer already
    /// holds it (dictionary types), otherwise a shared copy.
    std::shared_ptr<const TDictType> Share() const;
    template <typename Derived>
    std::shared_ptr<const Derived> ShareAs() const
    {
        return std::static_pointer_cast<const Derived>(Share());
    }
    /// How the type describes itself in trace lines and listings.
    virtual std::string ToString() const;

private:
    unsigned int m_id;
    std::string m_name;
    std::string m_presentationName;
    ZED_T_DATATYPE m_valueDatatype;
};

using TDictTypePtr = std::shared_ptr<const TDictType>;

/// A record: named members, each identified by a code and of its own type.
class ZED_EXPORT TDictTypeRecord : public TDictType {
public:
    /// A member of the record: its code, names and type.
    struct Member {
        unsigned int id;
        std::string name;
        std::string presentationName;
        TDictTypePtr type;
    };

    TDictTypeRecord(unsigned int id, std::string name, std::string presentationName, std::vector<Member> members);
    ~TDictTypeRecord() override;

    ZED_T_DICT_OBJECT_TYPE GetDictObjectType() const override { return ZED_DICT_TYPE_RECORD; }
    std::unique_ptr<TDictType> Clone() const override;
    std::string ToString() const override;

    const std::vector<Member>& GetMembers() const { return m_members; }
    /// Null when the record has no member of that code.
    const Member* FindMember(unsigned int memberId) const;

private:
    std::vector<Member> m_members;
};

/// A set-of (data type 52) or sequence-of (53) of elements of one type.
class ZED_EXPORT TDictTypeConstructorOf : public TDictType {
public:
    TDictTypeConstructorOf(unsigned int id, std::string name, std::string presentationName, bool sequence,
                           TDictTypePtr elementType);
    ~TDictTypeConstructorOf() override;

    ZED_T_DICT_OBJECT_TYPE GetDictObjectType() const override { return ZED_DICT_TYPE_CONSTRUCTOR; }
    std::unique_ptr<TDictType> Clone() const override;
    std::string ToString() const override;

    bool IsSequence() const { return GetDatatype() == ZED_DT_SEQUENCEOF; }
    const TDictTypePtr& GetElementType() const { return m_elementType; }

private:
    TDictTypePtr m_elementType;
};

/// An enumeration: codes with their texts, in dictionary order.
class ZED_EXPORT TDictTypeEnumeration : public TDictType {
public:
    /// One value of the enumeration: its code and its text.
    struct Item {
        int code;
        std::string text;
    };

    TDictTypeEnumeration(unsigned int id, std::string name, std::string presentationName, std::vector<Item> items);
    ~TDictTypeEnumeration() override;

    ZED_T_DICT_OBJECT_TYPE GetDictObjectType() const override { return ZED_DICT_TYPE_ENUMERATION; }
    std::unique_ptr<TDictType> Clone() const override;
    std::string ToString() const override;

    const std::vector<Item>& GetItems() const { return m_items; }
    /// Null when no item has the code.
    const Item* FindCode(int code) const;
    /// The item whose text equals the given one ignoring case, or null.
    const Item* FindText(const std::string& text) const;

private:
    std::vector<Item> m_items;
};

/// A named type over a base type (data type 79): its values are TUserDefined
/// values that wrap a value of the base, which carries the user type's name.
class ZED_EXPORT TDictTypeUserDefined : public TDictType {
public:
    TDictTypeUserDefined(unsigned int id, std::string name, std::string presentationName, TDictTypePtr base);
    ~TDictTypeUserDefined() override;

    ZED_T_DICT_OBJECT_TYPE GetDictObjectType() const override { return ZED_DICT_TYPE_USERDEFINED; }
    std::unique_ptr<TDictType> Clone() const override;
    std::string ToString() const override;

    /// The definition of the wrapped values: the base's kind under this type's name.
    const TDictTypePtr& GetBase() const { return m_base; }

private:
    TDictTypePtr m_base;
};

/// Walks the items of an enumeration or the members of a record, from the
/// first while IsValid; any other type has nothing to walk.
class ZED_EXPORT TDictTypeIterator {
public:
    explicit TDictTypeIterator(const TDictType& type);

    void First() { m_index = 0; }
    bool IsValid() const { return m_index < m_count; }
    void Next() { ++m_index; }

    /// The item's code or the member's identifier.
    int GetCode() const;
    /// The item's text or the member's name.
    const std::string& GetText() const;
    /// The member's type; null for enumeration items.
    const TDictType* GetType() const;

private:
    const TDictTypeEnumeration* m_pEnumeration = nullptr;
    const TDictTypeRecord* m_pRecord = nullptr;
    std::size_t m_count = 0;
    std::size_t m_index = 0;
};
