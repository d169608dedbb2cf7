// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <array>
#include <string_view>

/// Data-type codes of values and dictionary elements. KEL chooses field kinds
/// by these numbers, so they are fixed.
using ZED_T_DATATYPE = unsigned int;

inline constexpr ZED_T_DATATYPE ZED_DT_BOOLEAN = 1;
inline constexpr ZED_T_DATATYPE ZED_DT_LATIN1STRING = 3;
inline constexpr ZED_T_DATATYPE ZED_DT_SIMPLENAME = 4;
inline constexpr ZED_T_DATATYPE ZED_DT_FULLNAME = 5;
inline constexpr ZED_T_DATATYPE ZED_DT_ENUMERATION = 10;
inline constexpr ZED_T_DATATYPE ZED_DT_RECORD = 13;
inline constexpr ZED_T_DATATYPE ZED_DT_RESERVED14 = 14;
inline constexpr ZED_T_DATATYPE ZED_DT_RESERVED15 = 15;
inline constexpr ZED_T_DATATYPE ZED_DT_RESERVED16 = 16;
inline constexpr ZED_T_DATATYPE ZED_DT_INTEGER16 = 30;
inline constexpr ZED_T_DATATYPE ZED_DT_INTEGER32 = 31;
inline constexpr ZED_T_DATATYPE ZED_DT_UNSIGNED16 = 34;
inline constexpr ZED_T_DATATYPE ZED_DT_UNSIGNED32 = 35;
inline constexpr ZED_T_DATATYPE ZED_DT_COUNTER16 = 37;
inline constexpr ZED_T_DATATYPE ZED_DT_COUNTER32 = 38;
inline constexpr ZED_T_DATATYPE ZED_DT_OCTETSTRING = 44;
inline constexpr ZED_T_DATATYPE ZED_DT_ABSTIME = 47;
inline constexpr ZED_T_DATATYPE ZED_DT_RELTIME = 48;
inline constexpr ZED_T_DATATYPE ZED_DT_SETOF = 52;
inline constexpr ZED_T_DATATYPE ZED_DT_SEQUENCEOF = 53;
inline constexpr ZED_T_DATATYPE ZED_DT_ENTITYSPEC = 55;
inline constexpr ZED_T_DATATYPE ZED_DT_ENTITYCLASS = 60;
inline constexpr ZED_T_DATATYPE ZED_DT_FLOAT = 63;
inline constexpr ZED_T_DATATYPE ZED_DT_ATTRIBUTELIST = 66;
inline constexpr ZED_T_DATATYPE ZED_DT_REAL = 72;
inline constexpr ZED_T_DATATYPE ZED_DT_USERDEFINED = 79;
inline constexpr ZED_T_DATATYPE ZED_DT_EVENTREPORT = 80;
inline constexpr ZED_T_DATATYPE ZED_DT_ATTRIBUTE = 82;
inline constexpr ZED_T_DATATYPE ZED_DT_ATTRIBUTEID = 83;
/// Not a data type: marks an element that is none of the above.
inline constexpr ZED_T_DATATYPE ZED_DT_MARKER = 999;

/// Whether values of the data type carry a dictionary type of their own (an
/// enumeration's items, a record's members, a set's element type), which is
/// what it takes to present them.
inline constexpr bool ZedHasDictType(ZED_T_DATATYPE dt)
{
    return dt == ZED_DT_ENUMERATION || dt == ZED_DT_RECORD || dt == ZED_DT_SETOF || dt == ZED_DT_SEQUENCEOF;
}

/// Whether values of the data type are numbers (integers, counters, floating point).
inline constexpr bool ZedIsNumber(ZED_T_DATATYPE dt)
{
    switch (dt) {
    case ZED_DT_INTEGER16:
    case ZED_DT_INTEGER32:
    case ZED_DT_UNSIGNED16:
    case ZED_DT_UNSIGNED32:
    case ZED_DT_COUNTER16:
    case ZED_DT_COUNTER32:
    case ZED_DT_FLOAT:
    case ZED_DT_REAL: return true;
    default: return false;
    }
}

/// A data type's name, as dictionary files write the built-in types
/// ("Integer32") and help texts name a kind of value.
struct ZedDatatypeName {
    ZED_T_DATATYPE dt;
    std::string_view name;
};
inline constexpr std::array<ZedDatatypeName, 29> kZedDatatypeNames = {{
    {ZED_DT_BOOLEAN, "Boolean"},
    {ZED_DT_LATIN1STRING, "Latin1String"},
    {ZED_DT_SIMPLENAME, "SimpleName"},
    {ZED_DT_FULLNAME, "FullName"},
    {ZED_DT_ENUMERATION, "Enumeration"},
    {ZED_DT_RECORD, "Record"},
    {ZED_DT_RESERVED14, "Reserved14"},
    {ZED_DT_RESERVED15, "Reserved15"},
    {ZED_DT_RESERVED16, "Reserved16"},
    {ZED_DT_INTEGER16, "Integer16"},
    {ZED_DT_INTEGER32, "Integer32"},
    {ZED_DT_UNSIGNED16, "Unsigned16"},
    {ZED_DT_UNSIGNED32, "Unsigned32"},
    {ZED_DT_COUNTER16, "Counter16"},
    {ZED_DT_COUNTER32, "Counter32"},
    {ZED_DT_OCTETSTRING, "OctetString"},
    {ZED_DT_ABSTIME, "AbsTime"},
    {ZED_DT_RELTIME, "RelTime"},
    {ZED_DT_SETOF, "SetOf"},
    {ZED_DT_SEQUENCEOF, "SequenceOf"},
    {ZED_DT_ENTITYSPEC, "EntitySpec"},
    {ZED_DT_ENTITYCLASS, "EntityClass"},
    {ZED_DT_FLOAT, "Float"},
    {ZED_DT_ATTRIBUTELIST, "AttributeList"},
    {ZED_DT_REAL, "Real"},
    {ZED_DT_USERDEFINED, "UserDefined"},
    {ZED_DT_EVENTREPORT, "EventReport"},
    {ZED_DT_ATTRIBUTE, "Attribute"},
    {ZED_DT_ATTRIBUTEID, "AttributeID"},
}};

/// The data type's name; empty for a code that is none.
inline constexpr std::string_view ZedNameOfDatatype(ZED_T_DATATYPE dt)
{
    for (const ZedDatatypeName& entry : kZedDatatypeNames)
        if (entry.dt == dt)
            return entry.name;
    return {};
}
