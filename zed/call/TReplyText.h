// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Replies and event reports as an operator reads them: the entity and time,
// the kind and name of the reply with the dictionary's text, then one value a
// line, named by the dictionary and with units, attribute lists opened into
// one attribute a line.

#include "zed/ZedExport.h"
#include "zed/call/TCall.h"
#include "zed/call/TRequest.h"
#include "zed/dict/TDictionary.h"

#include <iosfwd>
#include <string>

/// The call's current reply.
ZED_EXPORT void ZEDWriteReply(std::ostream& out, const TDictionary& dictionary, const TCall& call,
                              unsigned int directiveId);
/// A request on one line, as the reply shows values: "Count = 3, Place = {
/// Site = Hall C, Rack = 12 }", named by the directive's arguments (by the
/// class's attributes when the directive takes attributes).
ZED_EXPORT void ZEDWriteRequest(std::ostream& out, const TDictionary& dictionary, const TEntitySpec& entity,
                                unsigned int directiveId, const TRequest& request);
/// The first reply that is no response, on one line as a console shows it:
/// its kind and text, then its values ("...: Reason = ..."); empty when every
/// reply was a response. Leaves the call on its first reply.
ZED_EXPORT std::string ZEDFirstException(const TDictionary& dictionary, TCall& call);
/// The event reports a result carries ("event <name> from <entity>" and their arguments).
ZED_EXPORT void ZEDWriteEvents(std::ostream& out, const TDictionary& dictionary, const TCallResult& result);
