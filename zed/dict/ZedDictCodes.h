// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Kinds of dictionary object (TDictType::GetDictObjectType and the like).
using ZED_T_DICT_OBJECT_TYPE = unsigned int;
inline constexpr ZED_T_DICT_OBJECT_TYPE ZED_DICT_CLASS = 1;
inline constexpr ZED_T_DICT_OBJECT_TYPE ZED_DICT_DIRECTIVE = 2;
inline constexpr ZED_T_DICT_OBJECT_TYPE ZED_DICT_ARGUMENT = 4;
inline constexpr ZED_T_DICT_OBJECT_TYPE ZED_DICT_ATTRIBUTE = 5;
inline constexpr ZED_T_DICT_OBJECT_TYPE ZED_DICT_REQUEST = 7;  // selects a directive's request arguments
inline constexpr ZED_T_DICT_OBJECT_TYPE ZED_DICT_RESPONSE = 8;
inline constexpr ZED_T_DICT_OBJECT_TYPE ZED_DICT_EXCEPTION = 9;
inline constexpr ZED_T_DICT_OBJECT_TYPE ZED_DICT_EVENT = 10;
inline constexpr ZED_T_DICT_OBJECT_TYPE ZED_DICT_TYPE = 15;  // a type of no special kind
inline constexpr ZED_T_DICT_OBJECT_TYPE ZED_DICT_TYPE_RECORD = 16;
inline constexpr ZED_T_DICT_OBJECT_TYPE ZED_DICT_TYPE_USERDEFINED = 17;
inline constexpr ZED_T_DICT_OBJECT_TYPE ZED_DICT_TYPE_CONSTRUCTOR = 18;  // set-of and sequence-of
inline constexpr ZED_T_DICT_OBJECT_TYPE ZED_DICT_TYPE_ENUMERATION = 19;

/// How deep a dictionary may nest its classes and its types, and so how deep
/// entity specifications and values can ever be: deeper input is refused
/// everywhere, so that nothing walks without bound.
inline constexpr int ZED_MAX_CLASS_DEPTH = 32;
inline constexpr int ZED_MAX_TYPE_DEPTH = 32;
/// Values nest through types, and attributes and attribute lists through
/// attributes of their own class; JSON places deeper than this are refused.
inline constexpr int ZED_MAX_VALUE_DEPTH = 96;

/// Default policy of an argument or attribute.
using ZED_T_DICT_DEFAULT = unsigned int;
inline constexpr ZED_T_DICT_DEFAULT ZED_DEFAULT_NONE = 0;
inline constexpr ZED_T_DICT_DEFAULT ZED_DEFAULT_DICTIONARY = 1;  // the dictionary holds a default text
inline constexpr ZED_T_DICT_DEFAULT ZED_DEFAULT_SERVER = 2;      // the server supplies the default

/// Access to an attribute; arguments carry ZED_ACCESS_NONE.
using ZED_T_DICT_ACCESS = unsigned int;
inline constexpr ZED_T_DICT_ACCESS ZED_ACCESS_NONE = 0;
inline constexpr ZED_T_DICT_ACCESS ZED_ACCESS_READ_ONLY = 1;
inline constexpr ZED_T_DICT_ACCESS ZED_ACCESS_WRITE_ONLY = 2;
inline constexpr ZED_T_DICT_ACCESS ZED_ACCESS_READ_WRITE = 3;

/// The directive under which a class's common exceptions stand.
inline constexpr unsigned int ZED_COMMON_EXCEPTION_DIRECTIVE = 55;

/// The default text of an element that has no default.
inline constexpr const char* ZED_NO_DEFAULT_TEXT = "(no default)";
