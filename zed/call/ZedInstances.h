// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The instances of a network as a host offers them for picking, written as
// entities ("Agent core-r1 Interface 2").

#include "zed/ZedExport.h"

#include <string>
#include <vector>

class TDictionary;

/// Every instance, found by asking each class's instances with a wildcard
/// Show, below each instance found the instances of its child classes; where
/// a wildcard found several, the wildcard too (it is an entity one can ask).
ZED_EXPORT std::vector<std::string> ZedListInstances(const TDictionary& dictionary);

/// Without asking anything, for a network whose instances are many or slow
/// to ask for: each named instance of the top class, and the wildcard of each
/// class below it ("Agent core-r1 Interface *").
ZED_EXPORT std::vector<std::string> ZedListByClass(const TDictionary& dictionary, const std::vector<std::string>& tops);
