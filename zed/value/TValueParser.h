// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Making values from what people type.
//
// Scalar kinds read their text form: booleans TRUE/FALSE (also 1/0, YES/NO,
// any case); integers, unsigned numbers and counters in decimal within their
// range; floats and reals; times as TAbsTime and TRelTime write them; names,
// texts and octets as they stand; entity specifications and classes in their
// text form; enumerations by item text (any case) or code; attribute
// identifiers by code, or by name within a class.
//
// Composite kinds read JSON: a record is an object of member names, a set or
// sequence an array, an attribute list an object of attribute names (within
// a class), an attribute {"attribute": name, "value": ...}. A user-defined
// value reads as its base type.

#include "zed/ZedExport.h"
#include "zed/dict/TDictionary.h"
#include "zed/value/TValue.h"

#include <memory>
#include <string>
#include <string_view>

class TAttributeID;

/// What a text value's names are looked up in.
struct ZEDValueContext {
    /// Names classes in entity specifications; the current one when null.
    const TDictionary* dictionary = nullptr;
    /// Names attributes in attribute identifiers and lists; none when null.
    const TDictClass* entityClass = nullptr;
};

/// An absent value of the type's class with the given identifier: what a
/// field without content or a "use the default" argument sends. Container
/// kinds come back empty, and so present.
ZED_EXPORT TValuePtr ZEDMakeValue(const TDictType& type, unsigned int id);

/// An attribute identifier from its code or its name (ignoring case) within a
/// class: what a person types to name an attribute. Null, with the reason,
/// when the text names no attribute of the class.
ZED_EXPORT std::unique_ptr<TAttributeID> ZEDParseAttributeID(std::string_view text, const TDictClass& entityClass,
                                                             std::string* error = nullptr);

/// Null, and error set to the reason, when the text is not a value of the type.
ZED_EXPORT TValuePtr ZEDParseValue(const TDictType& type, std::string_view text, unsigned int id,
                                   const ZEDValueContext& context = {}, std::string* error = nullptr);
