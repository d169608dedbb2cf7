// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The answers every module gives alike, built from the dictionary: a result
// of an entity with a reply; a common exception; a directive's exception or
// first response, its values placed by their arguments' names. Names the
// dictionary lacks are left out, so a module answers what the dictionary
// describes and nothing else.

#include "zed/call/TCall.h"
#include "zed/dict/TDictObjects.h"

#include <string>
#include <utility>
#include <vector>

/// The common exceptions every dictionary is expected to describe (directive 55).
inline constexpr unsigned int ZED_COMMON_NO_SUCH_ENTITY = 1;
inline constexpr unsigned int ZED_COMMON_DIRECTIVE_NOT_SUPPORTED = 2;
inline constexpr unsigned int ZED_COMMON_INVALID_REQUEST = 3;
/// Nothing came back in time; the call was given up.
inline constexpr unsigned int ZED_COMMON_NO_ANSWER = 4;
/// The agent refused who was asking (community, user, keys).
inline constexpr unsigned int ZED_COMMON_NOT_AUTHORIZED = 5;
/// The agent refused the request for another reason (an SNMP error status).
inline constexpr unsigned int ZED_COMMON_AGENT_ERROR = 6;
/// The rows given are not all there are (a bound was reached, rows could
/// not be read); it follows the rows it speaks of.
inline constexpr unsigned int ZED_COMMON_LIST_INCOMPLETE = 7;

/// A reply's values by their arguments' names.
using ZedNamedValues = std::vector<std::pair<std::string, TValuePtr>>;

namespace ZedAnswer {

ZED_EXPORT TCallResult Result(const TEntitySpec& entity, TReply reply, unsigned int status);
/// A common exception; a reason, when given, goes as its first value.
ZED_EXPORT TCallResult Common(const TEntitySpec& entity, unsigned int code, const std::string& reason = {});
/// The directive's exception of that name with its values; the common
/// exception "invalid request" where the directive has none of that name.
ZED_EXPORT TCallResult Exception(const TEntitySpec& entity, const TDictDirective& directive, const std::string& name,
                                 ZedNamedValues values);
/// The directive's first response with its values (an empty response when it has none).
ZED_EXPORT TCallResult Response(const TEntitySpec& entity, const TDictDirective& directive, ZedNamedValues values);
/// A reply of that definition with its values.
ZED_EXPORT TReply Reply(const TDictReply& definition, unsigned int replyType, ZedNamedValues values);

}  // namespace ZedAnswer
