// SPDX-License-Identifier: BSD-3-Clause
#include "kel/model/KELElementHelp.h"

#include "kel/model/IElementInfo.h"
#include "zed/dict/TDictType.h"
#include "zed/dict/ZedDictCodes.h"
#include "zed/value/ZedDatatypes.h"

namespace {

// What a value of each kind is, in words, and a number's range.
struct Kind {
    ZED_T_DATATYPE dt;
    const char* what;
    const char* range;  // null: not a number
};

constexpr Kind kKinds[] = {
    {ZED_DT_BOOLEAN, "true or false", nullptr},
    {ZED_DT_LATIN1STRING, "text", nullptr},
    {ZED_DT_SIMPLENAME, "a name", nullptr},
    {ZED_DT_FULLNAME, "a full name", nullptr},
    {ZED_DT_ENUMERATION, "one of a list", nullptr},
    {ZED_DT_RECORD, "several values together", nullptr},
    {ZED_DT_INTEGER16, "a whole number", "-32768 to 32767"},
    {ZED_DT_INTEGER32, "a whole number", "-2147483648 to 2147483647"},
    {ZED_DT_UNSIGNED16, "a whole number", "0 to 65535"},
    {ZED_DT_UNSIGNED32, "a whole number", "0 to 4294967295"},
    {ZED_DT_COUNTER16, "a count", "0 to 65535"},
    {ZED_DT_COUNTER32, "a count", "0 to 4294967295"},
    {ZED_DT_OCTETSTRING, "octets", nullptr},
    {ZED_DT_ABSTIME, "a date and time", nullptr},
    {ZED_DT_RELTIME, "a duration", nullptr},
    {ZED_DT_SETOF, "a set of values", nullptr},
    {ZED_DT_SEQUENCEOF, "a sequence of values", nullptr},
    {ZED_DT_ENTITYSPEC, "an entity", nullptr},
    {ZED_DT_ENTITYCLASS, "an entity class", nullptr},
    {ZED_DT_FLOAT, "a number", nullptr},
    {ZED_DT_ATTRIBUTELIST, "attributes and their values", nullptr},
    {ZED_DT_REAL, "a number", nullptr},
    {ZED_DT_EVENTREPORT, "an event report", nullptr},
    {ZED_DT_ATTRIBUTE, "an attribute and its value", nullptr},
    {ZED_DT_ATTRIBUTEID, "an attribute's name", nullptr},
};

const Kind* KindOf(ZED_T_DATATYPE dt)
{
    for (const Kind& kind : kKinds)
        if (kind.dt == dt)
            return &kind;
    return nullptr;
}

const char* AccessText(ZED_T_DICT_ACCESS access)
{
    switch (access) {
    case ZED_ACCESS_READ_ONLY: return "read-only";
    case ZED_ACCESS_WRITE_ONLY: return "write-only";
    case ZED_ACCESS_READ_WRITE: return "read-write";
    default: return nullptr;
    }
}

}  // namespace

std::string KELElementHelp::Accepted(unsigned int datatype)
{
    const Kind* kind = KindOf(static_cast<ZED_T_DATATYPE>(datatype));
    if (!kind || (!kind->range && datatype != ZED_DT_FLOAT && datatype != ZED_DT_REAL))
        return {};
    return std::string(kind->what) + (kind->range ? std::string(" from ") + kind->range : std::string());
}

std::string KELElementHelp::Describe(const IElementInfo& info)
{
    std::string text;
    const auto line = [&text](const std::string& label, const std::string& value) {
        if (!value.empty())
            text.append(text.empty() ? "" : "\n").append(label).append(": ").append(value);
    };
    const IElementInfo& element = info;
    const Kind* kind = KindOf(element.GetDT());
    const TDictType* type = element.HasDictType() ? element.GetDictType() : nullptr;
    std::string typeText =
        type ? type->GetPresentationName() : std::string(kind ? ZedNameOfDatatype(element.GetDT()) : "");
    if (kind && !typeText.empty())
        typeText += std::string(" (") + kind->what + ")";
    line("Type", typeText);
    if (const auto& range = element.GetRange())
        line("Range", std::to_string(range->low) + " to " + std::to_string(range->high));
    else if (kind && kind->range)
        line("Range", kind->range);
    if (element.GetMaxSize() > 0 && !(kind && kind->range))
        line("Size", "at most " + std::to_string(element.GetMaxSize()) + " characters");
    line("Units", element.GetUnits());
    line("Default", element.GetDefault());
    if (const char* access = AccessText(element.GetAccess()))
        line("Access", access);
    // The definer's own words (a MIB's DESCRIPTION) come after the facts.
    if (!element.GetDescription().empty())
        text.append(text.empty() ? "" : "\n\n").append(element.GetDescription());
    return text;
}
