// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Whether a request fits its directive, checked once in the call layer for
// every module: each value is something the directive takes (one of its
// arguments, or an attribute of the class for a directive that takes
// attributes) and of its type, nested no deeper than ZED_MAX_VALUE_DEPTH;
// required arguments are given; an attribute given is a value or marked
// default; and a directive that changes attributes (any that takes them but
// Create, which gives initial values) changes none that is read-only.

#include "zed/call/TCall.h"
#include "zed/dict/TDictObjects.h"

#include <optional>

/// The answer to a request that does not fit: the directive's
/// "InvalidArgument" exception (Argument, Reason) or "NotWritable"
/// (Attribute), the common "invalid request" where it has neither; none when
/// the request fits.
ZED_EXPORT std::optional<TCallResult> ZEDCheckRequest(const TEntitySpec& entity, const TDictClass& cls,
                                                      const TDictDirective& directive, const TRequest& request);
