// SPDX-License-Identifier: BSD-3-Clause
#include "zed/call/TRequestCheck.h"
#include "zed/dict/ZedDirectiveNames.h"

#include "zed/call/TCallAnswers.h"
#include "zed/dict/ZedDictCodes.h"
#include "zed/value/TAttribute.h"
#include "zed/value/TRecord.h"
#include "zed/value/TScalarValues.h"
#include "zed/value/TSetOf.h"
#include "zed/value/TUserDefined.h"

namespace {

struct Fault {
    std::string argument;
    std::string reason;
};

// How deep a value nests, counting itself; stops counting past the limit.
int DepthOf(const TValue& value, int limit)
{
    if (limit <= 0)
        return 1;
    int inner = 0;
    const auto visit = [&](const TValue& part) { inner = std::max(inner, DepthOf(part, limit - 1)); };
    switch (value.GetDatatype()) {
    case ZED_DT_RECORD: {
        const TValueList& members = static_cast<const TRecord&>(value).GetMembers();
        for (std::size_t i = 0; i < members.Size(); ++i)
            visit(members.At(i));
        break;
    }
    case ZED_DT_SETOF:
    case ZED_DT_SEQUENCEOF: {
        const auto& set = static_cast<const TConstructedOf&>(value);
        for (std::size_t i = 0; i < set.Size(); ++i)
            visit(set.At(i));
        break;
    }
    case ZED_DT_ATTRIBUTE: visit(static_cast<const TAttribute&>(value).GetValue()); break;
    case ZED_DT_ATTRIBUTELIST: {
        const auto& list = static_cast<const TAttributeList&>(value);
        for (std::size_t i = 0; i < list.Size(); ++i)
            visit(list.At(i));
        break;
    }
    case ZED_DT_USERDEFINED: visit(static_cast<const TUserDefined&>(value).GetValue()); break;
    default: break;
    }
    return 1 + inner;
}

std::optional<Fault> FaultOf(const TDictClass& cls, const TDictDirective& directive, const TRequest& request)
{
    const bool attributes = directive.TakesAttributes();
    for (std::size_t i = 0; i < request.Size(); ++i) {
        const TValue& value = request.At(i);
        const TDictValue* definition = attributes ? static_cast<const TDictValue*>(cls.FindAttribute(value.GetID()))
                                                  : directive.FindRequestArgument(value.GetID());
        if (!definition)
            return Fault{std::to_string(value.GetID()), attributes ? "not an attribute of " + cls.GetName()
                                                                   : "not an argument of " + directive.GetName()};
        const TDictType* made = value.GetDictType();
        if (value.GetDatatype() != definition->GetDatatype()
            || (made && made->GetID() != definition->GetType().GetID()))
            return Fault{definition->GetName(), "expected a value of type " + definition->GetType().GetName()};
        if (attributes && !value.IsPresent() && !value.IsDefault())
            return Fault{definition->GetName(), "no value given"};
        if (DepthOf(value, ZED_MAX_VALUE_DEPTH) > ZED_MAX_VALUE_DEPTH)
            return Fault{definition->GetName(),
                         "nested deeper than " + std::to_string(ZED_MAX_VALUE_DEPTH) + " levels"};
    }
    for (const TDictArgument& argument : directive.GetRequestArguments()) {
        const TValue* value = request.Find(argument.GetID());
        if (argument.IsRequired() && !(value && (value->IsPresent() || value->IsDefault())))
            return Fault{argument.GetName(), "required"};
    }
    return std::nullopt;
}

}  // namespace

std::optional<TCallResult> ZEDCheckRequest(const TEntitySpec& entity, const TDictClass& cls,
                                           const TDictDirective& directive, const TRequest& request)
{
    if (const std::optional<Fault> fault = FaultOf(cls, directive, request)) {
        ZedNamedValues values;
        values.emplace_back("Argument", std::make_unique<TSimpleName>(fault->argument));
        values.emplace_back("Reason", std::make_unique<TLatin1String>(fault->reason));
        return ZedAnswer::Exception(entity, directive, "InvalidArgument", std::move(values));
    }
    if (directive.TakesAttributes() && directive.GetName() != ZedDirective::kCreate)
        for (std::size_t i = 0; i < request.Size(); ++i) {
            const TDictAttribute* attribute = cls.FindAttribute(request.At(i).GetID());
            if (attribute && attribute->GetAccess() == ZED_ACCESS_READ_ONLY) {
                ZedNamedValues values;
                values.emplace_back("Attribute",
                                    std::make_unique<TAttributeID>(attribute->GetID(), attribute->GetName()));
                return ZedAnswer::Exception(entity, directive, "NotWritable", std::move(values));
            }
        }
    return std::nullopt;
}
