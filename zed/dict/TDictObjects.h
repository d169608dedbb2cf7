// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The objects of a dictionary: classes with their attributes, directives and
// events; directives with their request arguments, responses and exceptions.
// All are immutable once loaded (TDictionaryLoader fills them) and live as
// long as their dictionary.

#include "zed/ZedExport.h"
#include "zed/ZedText.h"
#include "zed/dict/TDictSnmp.h"
#include "zed/dict/TDictType.h"
#include "zed/dict/ZedFind.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The values a number may take, both ends included (a MIB's range).
struct TDictRange {
    std::int64_t low = 0;
    std::int64_t high = 0;
};

/// What arguments and attributes share: an element with a type, units, a
/// default and a place in forms.
class ZED_EXPORT TDictValue {
public:
    virtual ~TDictValue();

    virtual ZED_T_DICT_OBJECT_TYPE GetDictObjectType() const = 0;
    virtual std::unique_ptr<TDictValue> Clone() const = 0;

    unsigned int GetID() const { return m_id; }
    const std::string& GetName() const { return m_name; }
    const std::string& GetPresentationName() const { return m_presentationName; }
    const TDictType& GetType() const { return *m_type; }
    const TDictTypePtr& GetTypePtr() const { return m_type; }
    ZED_T_DATATYPE GetDatatype() const { return m_type->GetDatatype(); }
    const std::string& GetUnits() const { return m_units; }
    bool IsDisplayed() const { return m_displayed; }
    ZED_T_DICT_DEFAULT DefaultAllowed() const { return m_defaultPolicy; }
    /// The default as text; ZED_NO_DEFAULT_TEXT when the dictionary has none.
    const std::string& GetDefaultValue() const { return m_defaultText; }
    unsigned int GetValueLength() const { return m_valueLength; }
    /// What the element is, in the words of whoever defined it (a MIB's DESCRIPTION); may be empty.
    const std::string& GetDescription() const { return m_description; }
    /// The values a number may take, narrower than its type's; none: its type's.
    const std::optional<TDictRange>& GetRange() const { return m_range; }

protected:
    TDictValue() = default;
    TDictValue(const TDictValue&) = default;
    TDictValue& operator=(const TDictValue&) = default;

private:
    friend class TDictionaryLoader;
    unsigned int m_id = 0;
    std::string m_name;
    std::string m_presentationName;
    TDictTypePtr m_type;
    std::string m_units;
    bool m_displayed = true;
    ZED_T_DICT_DEFAULT m_defaultPolicy = ZED_DEFAULT_NONE;
    std::string m_defaultText = ZED_NO_DEFAULT_TEXT;
    unsigned int m_valueLength = 0;
    std::string m_description;
    std::optional<TDictRange> m_range;
};

/// An argument of a directive's request, of a reply or of an event.
class ZED_EXPORT TDictArgument final : public TDictValue {
public:
    TDictArgument() = default;
    ~TDictArgument() override;
    ZED_T_DICT_OBJECT_TYPE GetDictObjectType() const override { return ZED_DICT_ARGUMENT; }
    std::unique_ptr<TDictValue> Clone() const override;

    bool IsRequired() const { return m_required; }
    /// The notification variable an event's argument takes its value from, if any.
    const std::optional<TDictSnmpVariable>& GetSnmp() const { return m_snmp; }

private:
    friend class TDictionaryLoader;
    bool m_required = false;
    std::optional<TDictSnmpVariable> m_snmp;
};

/// An attribute of an entity class: its partition, its access and its SQL column size.
class ZED_EXPORT TDictAttribute final : public TDictValue {
public:
    TDictAttribute() = default;
    ~TDictAttribute() override;
    ZED_T_DICT_OBJECT_TYPE GetDictObjectType() const override { return ZED_DICT_ATTRIBUTE; }
    std::unique_ptr<TDictValue> Clone() const override;

    unsigned int GetPartition() const { return m_partition; }
    ZED_T_DICT_ACCESS GetAccess() const { return m_access; }
    /// 0 when the attribute has no SQL column size of its own.
    unsigned int GetSQLColumnSize() const { return m_sqlColumnSize; }
    /// Its SNMP column, when its class is bound to SNMP.
    const std::optional<TDictSnmpColumn>& GetSnmp() const { return m_snmp; }

private:
    friend class TDictionaryLoader;
    unsigned int m_partition = 0;
    ZED_T_DICT_ACCESS m_access = ZED_ACCESS_READ_WRITE;
    unsigned int m_sqlColumnSize = 0;
    std::optional<TDictSnmpColumn> m_snmp;
};

/// A response (object type 8) or an exception (9) of a directive.
class ZED_EXPORT TDictReply {
public:
    ZED_T_DICT_OBJECT_TYPE GetDictObjectType() const { return m_kind; }
    unsigned int GetReplyCode() const { return m_code; }
    const std::string& GetName() const { return m_name; }
    /// The sentence shown to people for this reply.
    const std::string& GetReplyText() const { return m_text; }
    const std::vector<TDictArgument>& GetArguments() const { return m_arguments; }
    const TDictArgument* FindArgument(unsigned int id) const;

private:
    friend class TDictionaryLoader;
    ZED_T_DICT_OBJECT_TYPE m_kind = ZED_DICT_RESPONSE;
    unsigned int m_code = 0;
    std::string m_name;
    std::string m_text;
    std::vector<TDictArgument> m_arguments;
};

/// A directive of an entity class: its request, its responses and its exceptions.
class ZED_EXPORT TDictDirective {
public:
    unsigned int GetID() const { return m_id; }
    const std::string& GetName() const { return m_name; }
    const std::string& GetPresentationName() const { return m_presentationName; }
    const std::vector<TDictArgument>& GetRequestArguments() const { return m_request; }
    /// True for a directive whose request carries attribute values of the
    /// entity's class (Set, Create): each value is identified by its
    /// attribute's code, and the directive has no request arguments of its own.
    bool TakesAttributes() const { return m_takesAttributes; }
    const std::vector<TDictReply>& GetResponses() const { return m_responses; }
    const std::vector<TDictReply>& GetExceptions() const { return m_exceptions; }
    /// The response (8) or exception (9) of that code, or null.
    const TDictReply* FindReply(ZED_T_DICT_OBJECT_TYPE kind, unsigned int code) const;
    const TDictArgument* FindRequestArgument(unsigned int id) const;
    const TDictArgument* FindRequestArgument(const std::string& name) const;

private:
    friend class TDictionaryLoader;
    unsigned int m_id = 0;
    std::string m_name;
    std::string m_presentationName;
    std::vector<TDictArgument> m_request;
    bool m_takesAttributes = false;
    std::vector<TDictReply> m_responses;
    std::vector<TDictReply> m_exceptions;
};

/// An event an entity class reports, with its arguments.
class ZED_EXPORT TDictEvent {
public:
    unsigned int GetID() const { return m_id; }
    const std::string& GetName() const { return m_name; }
    const std::string& GetPresentationName() const { return m_presentationName; }
    const std::vector<TDictArgument>& GetArguments() const { return m_arguments; }
    /// What the event means, in the words of whoever defined it; may be empty.
    const std::string& GetDescription() const { return m_description; }
    /// The OID of the SNMP notification that reports the event, if one does.
    const std::optional<ZedOid>& GetSnmpTrap() const { return m_snmpTrap; }
    /// The event reports the notifications of an agent that no other event
    /// binds, with their OID ("Notification") and variables ("Variables") as text.
    bool IsSnmpUnbound() const { return m_snmpUnbound; }

private:
    friend class TDictionaryLoader;
    unsigned int m_id = 0;
    std::string m_name;
    std::string m_presentationName;
    std::vector<TDictArgument> m_arguments;
    std::optional<ZedOid> m_snmpTrap;
    bool m_snmpUnbound = false;
    std::string m_description;
};

/// An entity class: attributes, directives (the common exceptions under
/// directive 55 among them), events, and the classes below it.
class ZED_EXPORT TDictClass {
public:
    TDictClass();
    TDictClass(const TDictClass&) = delete;
    TDictClass& operator=(const TDictClass&) = delete;
    ~TDictClass();

    unsigned int GetCode() const { return m_code; }
    const std::string& GetName() const { return m_name; }
    const std::string& GetPresentationName() const { return m_presentationName; }
    /// What the class stands for, in the words of whoever defined it; may be empty.
    const std::string& GetDescription() const { return m_description; }
    /// Null for a class at the top.
    const TDictClass* GetParent() const { return m_pParent; }

    std::size_t GetChildCount() const { return m_children.size(); }
    const TDictClass& GetChild(std::size_t index) const { return *m_children.at(index); }
    const TDictClass* FindChild(unsigned int code) const;
    /// By name, ignoring case.
    const TDictClass* FindChild(const std::string& name) const;

    const std::vector<TDictAttribute>& GetAttributes() const { return m_attributes; }
    const TDictAttribute* FindAttribute(unsigned int id) const;
    const TDictAttribute* FindAttribute(const std::string& name) const;
    const std::vector<TDictDirective>& GetDirectives() const { return m_directives; }
    const TDictDirective* FindDirective(unsigned int id) const;
    const TDictDirective* FindDirective(const std::string& name) const;
    const std::vector<TDictEvent>& GetEvents() const { return m_events; }
    const TDictEvent* FindEvent(unsigned int id) const;
    /// How the class is bound to SNMP; none for a class that is not.
    const std::optional<TDictSnmpClass>& GetSnmp() const { return m_snmp; }

private:
    friend class TDictionaryLoader;
    std::optional<TDictSnmpClass> m_snmp;
    unsigned int m_code = 0;
    std::string m_name;
    std::string m_presentationName;
    std::string m_description;
    const TDictClass* m_pParent = nullptr;
    std::vector<std::unique_ptr<TDictClass>> m_children;
    std::vector<TDictAttribute> m_attributes;
    std::vector<TDictDirective> m_directives;
    std::vector<TDictEvent> m_events;
};
