// SPDX-License-Identifier: BSD-3-Clause
#include "zed/value/TValueParser.h"

#include "zed/TApplication.h"
#include "zed/value/TAttribute.h"
#include "zed/value/TEntitySpec.h"
#include "zed/value/TEnumeration.h"
#include "zed/value/TEventReport.h"
#include "zed/value/TRecord.h"
#include "zed/value/TScalarValues.h"
#include "zed/value/TSetOf.h"
#include "zed/value/TTimeValues.h"
#include "zed/value/TUserDefined.h"
#include "zed/value/ZedValueJson.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

// Raised inside the parser, turned into a null result at the edge.
struct ParseFault {
    std::string reason;
};

[[noreturn]] void Fault(std::string reason) { throw ParseFault{std::move(reason)}; }

std::string Upper(std::string_view text)
{
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return upper;
}

template <typename Integer>
Integer ParseInteger(std::string_view text)
{
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    long long value = 0;
    auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || ec == std::errc::invalid_argument || end != text.data() + text.size())
        Fault("not a whole number");
    if (ec == std::errc::result_out_of_range || value < static_cast<long long>(std::numeric_limits<Integer>::min())
        || value > static_cast<long long>(std::numeric_limits<Integer>::max()))
        Fault("out of range " + std::to_string(std::numeric_limits<Integer>::min()) + " to "
              + std::to_string(std::numeric_limits<Integer>::max()));
    return static_cast<Integer>(value);
}

template <typename Floating>
Floating ParseFloating(std::string_view text)
{
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    Floating value = 0;
    auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || ec != std::errc() || end != text.data() + text.size())
        Fault(ec == std::errc::result_out_of_range ? "out of range" : "not a number");
    if (!std::isfinite(value))
        Fault("not a finite number");
    return value;
}

bool ParseBoolean(std::string_view text)
{
    const std::string upper = Upper(text);
    if (upper == "TRUE" || upper == "1" || upper == "YES")
        return true;
    if (upper == "FALSE" || upper == "0" || upper == "NO")
        return false;
    Fault("expected TRUE or FALSE");
}

std::uint32_t ParseAttributeCode(std::string_view text, const ZEDValueContext& context, std::string* name)
{
    if (!text.empty() && std::isdigit(static_cast<unsigned char>(text.front())))
        return ParseInteger<std::uint32_t>(text);
    if (context.entityClass)
        if (const TDictAttribute* attribute = context.entityClass->FindAttribute(std::string(text))) {
            if (name)
                *name = attribute->GetName();
            return attribute->GetID();
        }
    Fault("unknown attribute \"" + std::string(text) + "\"");
}

TValuePtr ParseEnumeration(const TDictType& type, std::string_view text, unsigned int id)
{
    if (type.GetDictObjectType() != ZED_DICT_TYPE_ENUMERATION)
        Fault("enumeration without items");
    auto definition = type.ShareAs<TDictTypeEnumeration>();
    if (const auto* item = definition->FindText(std::string(text)))
        return std::make_unique<TEnumeration>(definition, item->code, id);
    try {
        const int code = ParseInteger<int>(text);
        if (definition->FindCode(code))
            return std::make_unique<TEnumeration>(definition, code, id);
    } catch (const ParseFault&) {
    }
    Fault("not an item of " + type.GetName());
}

// An entity or an entity class, named by the dictionary's names.
template <class Named>
TValuePtr ParseNamed(std::string_view text, const TDictionary* dictionary, unsigned int id)
{
    std::string error;
    auto named = Named::Parse(text, dictionary, &error);
    if (!named)
        Fault(error);
    named->SetID(id);
    return std::make_unique<Named>(std::move(*named));
}

TValuePtr ParseScalar(const TDictType& type, std::string_view text, unsigned int id, const ZEDValueContext& context)
{
    const TDictionary* dictionary =
        context.dictionary ? context.dictionary : ZEDGetApplication()->GetDictionary().get();
    switch (type.GetDatatype()) {
    case ZED_DT_BOOLEAN: return std::make_unique<TBoolean>(ParseBoolean(text), id);
    case ZED_DT_LATIN1STRING: return std::make_unique<TLatin1String>(std::string(text), id);
    case ZED_DT_SIMPLENAME: return std::make_unique<TSimpleName>(std::string(text), id);
    case ZED_DT_FULLNAME: return std::make_unique<TFullName>(std::string(text), id);
    case ZED_DT_OCTETSTRING: return std::make_unique<TOctetString>(std::string(text), id);
    case ZED_DT_RESERVED14:
    case ZED_DT_RESERVED15:
    case ZED_DT_RESERVED16: return std::make_unique<TOpaque>(type.GetDatatype(), std::string(text), id);
    case ZED_DT_INTEGER16: return std::make_unique<TInteger16>(ParseInteger<std::int16_t>(text), id);
    case ZED_DT_INTEGER32: return std::make_unique<TInteger32>(ParseInteger<std::int32_t>(text), id);
    case ZED_DT_UNSIGNED16: return std::make_unique<TUnsigned16>(ParseInteger<std::uint16_t>(text), id);
    case ZED_DT_UNSIGNED32: return std::make_unique<TUnsigned32>(ParseInteger<std::uint32_t>(text), id);
    case ZED_DT_COUNTER16: return std::make_unique<TCounter16>(ParseInteger<std::uint16_t>(text), id);
    case ZED_DT_COUNTER32: return std::make_unique<TCounter32>(ParseInteger<std::uint32_t>(text), id);
    case ZED_DT_FLOAT: return std::make_unique<TFloat>(ParseFloating<float>(text), id);
    case ZED_DT_REAL: return std::make_unique<TReal>(ParseFloating<double>(text), id);
    case ZED_DT_ABSTIME:
        if (auto ms = TAbsTime::Parse(text))
            return std::make_unique<TAbsTime>(*ms, id);
        Fault("expected a time like 2026-11-22 09:10:00");
    case ZED_DT_RELTIME:
        if (auto ms = TRelTime::Parse(text))
            return std::make_unique<TRelTime>(*ms, id);
        Fault("expected a duration like 1-02:03:04.500");
    case ZED_DT_ENTITYSPEC: return ParseNamed<TEntitySpec>(text, dictionary, id);
    case ZED_DT_ENTITYCLASS: return ParseNamed<TEntityClass>(text, dictionary, id);
    case ZED_DT_ENUMERATION: return ParseEnumeration(type, text, id);
    case ZED_DT_ATTRIBUTEID: {
        std::string name;
        const std::uint32_t code = ParseAttributeCode(text, context, &name);
        return std::make_unique<TAttributeID>(code, name, id);
    }
    default: return nullptr;
    }
}

}  // namespace

namespace {

TValuePtr MakeEmpty(const TDictType& type)
{
    switch (type.GetDatatype()) {
    case ZED_DT_BOOLEAN: return std::make_unique<TBoolean>();
    case ZED_DT_LATIN1STRING: return std::make_unique<TLatin1String>();
    case ZED_DT_SIMPLENAME: return std::make_unique<TSimpleName>();
    case ZED_DT_FULLNAME: return std::make_unique<TFullName>();
    case ZED_DT_OCTETSTRING: return std::make_unique<TOctetString>();
    case ZED_DT_RESERVED14:
    case ZED_DT_RESERVED15:
    case ZED_DT_RESERVED16: return std::make_unique<TOpaque>(type.GetDatatype());
    case ZED_DT_INTEGER16: return std::make_unique<TInteger16>();
    case ZED_DT_INTEGER32: return std::make_unique<TInteger32>();
    case ZED_DT_UNSIGNED16: return std::make_unique<TUnsigned16>();
    case ZED_DT_UNSIGNED32: return std::make_unique<TUnsigned32>();
    case ZED_DT_COUNTER16: return std::make_unique<TCounter16>();
    case ZED_DT_COUNTER32: return std::make_unique<TCounter32>();
    case ZED_DT_FLOAT: return std::make_unique<TFloat>();
    case ZED_DT_REAL: return std::make_unique<TReal>();
    case ZED_DT_ABSTIME: return std::make_unique<TAbsTime>();
    case ZED_DT_RELTIME: return std::make_unique<TRelTime>();
    case ZED_DT_ENTITYSPEC: return std::make_unique<TEntitySpec>();
    case ZED_DT_ENTITYCLASS: return std::make_unique<TEntityClass>();
    case ZED_DT_ATTRIBUTEID: return std::make_unique<TAttributeID>();
    case ZED_DT_ENUMERATION:
        return std::make_unique<TEnumeration>(
            type.GetDictObjectType() == ZED_DICT_TYPE_ENUMERATION ? type.ShareAs<TDictTypeEnumeration>() : nullptr);
    case ZED_DT_RECORD:
        return std::make_unique<TRecord>(
            type.GetDictObjectType() == ZED_DICT_TYPE_RECORD ? type.ShareAs<TDictTypeRecord>() : nullptr);
    case ZED_DT_SETOF:
    case ZED_DT_SEQUENCEOF: {
        auto definition =
            type.GetDictObjectType() == ZED_DICT_TYPE_CONSTRUCTOR ? type.ShareAs<TDictTypeConstructorOf>() : nullptr;
        return std::make_unique<TSetOf>(definition, 0, type.GetDatatype() == ZED_DT_SEQUENCEOF);
    }
    case ZED_DT_ATTRIBUTELIST: return std::make_unique<TAttributeList>();
    case ZED_DT_ATTRIBUTE: return std::make_unique<TAttribute>();
    case ZED_DT_EVENTREPORT: return std::make_unique<TEventReport>();
    case ZED_DT_USERDEFINED:
        if (type.GetDictObjectType() == ZED_DICT_TYPE_USERDEFINED) {
            const auto& base = static_cast<const TDictTypeUserDefined&>(type).GetBase();
            return std::make_unique<TUserDefined>(base, MakeEmpty(*base));
        }
        return std::make_unique<TUserDefined>(type.Share(), nullptr);
    default: return nullptr;
    }
}

}  // namespace

std::unique_ptr<TAttributeID> ZEDParseAttributeID(std::string_view text, const TDictClass& entityClass,
                                                  std::string* error)
{
    try {
        std::string name;
        const std::uint32_t code = ParseAttributeCode(text, {nullptr, &entityClass}, &name);
        const TDictAttribute* attribute = entityClass.FindAttribute(code);
        if (!attribute)
            Fault("no attribute " + std::to_string(code) + " in " + entityClass.GetName());
        return std::make_unique<TAttributeID>(code, attribute->GetName());
    } catch (const ParseFault& fault) {
        if (error)
            *error = fault.reason;
    }
    return nullptr;
}

TValuePtr ZEDMakeValue(const TDictType& type, unsigned int id)
{
    TValuePtr value = MakeEmpty(type);
    if (value)
        value->SetID(id);
    return value;
}

TValuePtr ZEDParseValue(const TDictType& type, std::string_view text, unsigned int id, const ZEDValueContext& context,
                        std::string* error)
{
    try {
        if (TValuePtr value = ParseScalar(type, text, id, context))
            return value;
        const nlohmann::json document = ZedJsonNode::ParseText(text, "value");
        return ZedValueFromJson(type, ZedJsonNode(document, "$", "value"), id, context);
    } catch (const ParseFault& fault) {
        if (error)
            *error = fault.reason;
    } catch (const TException& exception) {
        if (error)
            *error = exception.what();
    }
    return nullptr;
}

namespace {

TValuePtr RecordFromJson(const TDictType& type, const ZedJsonNode& node, unsigned int id,
                         const ZEDValueContext& context)
{
    if (type.GetDictObjectType() != ZED_DICT_TYPE_RECORD)
        node.Fail("record without members");
    auto definition = type.ShareAs<TDictTypeRecord>();
    const nlohmann::json& json = node.Json();
    if (!json.is_object())
        node.Fail("expected an object of member names");
    auto record = std::make_unique<TRecord>(definition, id);
    for (const auto& item : json.items())
        if (!std::any_of(definition->GetMembers().begin(), definition->GetMembers().end(),
                         [&](const TDictTypeRecord::Member& m) { return m.name == item.key(); }))
            node.Key(item.key()).Fail("not a member of " + type.GetName());
    // Members in the definition's order, whatever order the object has.
    for (const TDictTypeRecord::Member& member : definition->GetMembers())
        if (json.contains(member.name))
            record->Add(ZedValueFromJson(*member.type, node.Key(member.name), member.id, context));
    return record;
}

TValuePtr SetFromJson(const TDictType& type, const ZedJsonNode& node, unsigned int id, const ZEDValueContext& context)
{
    if (type.GetDictObjectType() != ZED_DICT_TYPE_CONSTRUCTOR)
        node.Fail("set without element type");
    auto definition = type.ShareAs<TDictTypeConstructorOf>();
    auto set = std::make_unique<TSetOf>(definition, id, definition->IsSequence());
    for (std::size_t i = 0, n = node.ArraySize(true); i < n; ++i)
        set->Add(ZedValueFromJson(*definition->GetElementType(), node.At(i), 0, context));
    return set;
}

TValuePtr AttributeListFromJson(const ZedJsonNode& node, unsigned int id, const ZEDValueContext& context)
{
    const nlohmann::json& json = node.Json();
    if (!json.is_object())
        node.Fail("expected an object of attribute names");
    if (!context.entityClass)
        node.Fail("attribute names need an entity class");
    auto list = std::make_unique<TAttributeList>(id);
    for (const auto& item : json.items())
        if (!context.entityClass->FindAttribute(item.key()))
            node.Key(item.key()).Fail("not an attribute of " + context.entityClass->GetName());
    // Attributes in the class's order; names match ignoring case, as everywhere.
    for (const TDictAttribute& attribute : context.entityClass->GetAttributes())
        for (const auto& item : json.items())
            if (context.entityClass->FindAttribute(item.key()) == &attribute)
                list->Add(std::make_unique<TAttribute>(
                    TAttributeID(attribute.GetID(), attribute.GetName()),
                    ZedValueFromJson(attribute.GetType(), node.Key(item.key()), attribute.GetID(), context)));
    return list;
}

TValuePtr AttributeFromJson(const ZedJsonNode& node, unsigned int id, const ZEDValueContext& context)
{
    node.ExpectObject({"attribute", "value"});
    std::string name;
    std::uint32_t code = 0;
    try {
        code = ParseAttributeCode(node.Key("attribute").String(), context, &name);
    } catch (const ParseFault& fault) {
        node.Key("attribute").Fail(fault.reason);
    }
    auto attribute = std::make_unique<TAttribute>(TAttributeID(code, name), id);
    if (node.Has("value")) {
        const TDictAttribute* definition = context.entityClass ? context.entityClass->FindAttribute(code) : nullptr;
        if (!definition)
            node.Key("value").Fail("the attribute's type is unknown without its class");
        attribute->SetValue(ZedValueFromJson(definition->GetType(), node.Key("value"), code, context));
    }
    return attribute;
}

// Scalars: JSON strings hold the text form; numbers stand for numeric kinds
// and true/false for booleans only, so a number where a name belongs is a fault.
TValuePtr ScalarFromJson(const TDictType& type, const ZedJsonNode& node, unsigned int id,
                         const ZEDValueContext& context)
{
    const nlohmann::json& json = node.Json();
    const ZED_T_DATATYPE dt = type.GetDatatype();
    const bool numeric = ZedIsNumber(dt);
    std::string text;
    if (json.is_string())
        text = json.get<std::string>();
    else if (json.is_boolean() && dt == ZED_DT_BOOLEAN)
        text = json.get<bool>() ? "TRUE" : "FALSE";
    else if (json.is_number() && numeric)
        text = json.dump();
    else
        node.Fail("expected " + std::string(numeric ? "a number or " : "") + "the text of a " + type.GetName()
                  + " value");
    try {
        if (TValuePtr value = ParseScalar(type, text, id, context))
            return value;
    } catch (const ParseFault& fault) {
        node.Fail(fault.reason);
    }
    node.Fail("no value of type " + type.GetName() + " can be written here");
}

}  // namespace

TValuePtr ZedValueFromJson(const TDictType& type, const ZedJsonNode& node, unsigned int id,
                           const ZEDValueContext& context)
{
    // Attributes can hold attributes of their own class without end: bounded here.
    if (node.Depth() > ZED_MAX_VALUE_DEPTH)
        node.Fail("values nest deeper than " + std::to_string(ZED_MAX_VALUE_DEPTH) + " levels");
    switch (type.GetDatatype()) {
    case ZED_DT_RECORD: return RecordFromJson(type, node, id, context);
    case ZED_DT_SETOF:
    case ZED_DT_SEQUENCEOF: return SetFromJson(type, node, id, context);
    case ZED_DT_ATTRIBUTELIST: return AttributeListFromJson(node, id, context);
    case ZED_DT_ATTRIBUTE: return AttributeFromJson(node, id, context);
    case ZED_DT_USERDEFINED: {
        if (type.GetDictObjectType() != ZED_DICT_TYPE_USERDEFINED)
            node.Fail("user type without base");
        const auto& base = static_cast<const TDictTypeUserDefined&>(type).GetBase();
        return std::make_unique<TUserDefined>(base, ZedValueFromJson(*base, node, id, context), id);
    }
    case ZED_DT_EVENTREPORT: node.Fail("event reports are made by servers, not entered");
    default: return ScalarFromJson(type, node, id, context);
    }
}
