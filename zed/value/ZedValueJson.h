// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Values from JSON (internal to the access library): what the composite text
// forms and the simulated network's instance file are read with. Faults throw
// TException through the node, naming the JSON path.

#include "zed/dict/ZedJsonReader.h"
#include "zed/value/TValueParser.h"

TValuePtr ZedValueFromJson(const TDictType& type, const ZedJsonNode& node, unsigned int id,
                           const ZEDValueContext& context);
