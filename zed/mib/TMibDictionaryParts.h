// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Internal to the MIB compiler: the parts of a dictionary every compiled
// module shares with the shipped SNMP dictionary (its partitions, its
// directives, its common exceptions, an agent class to hang classes on).

#include <nlohmann/json.hpp>

#include <string>

/// A dictionary of an agent alone: the partitions, the common exceptions,
/// and the class "Agent" with the event of notifications no event binds.
nlohmann::ordered_json ZedMibAgentDictionary();

/// Adds the partitions compiled attributes go to where the dictionary lacks
/// them (and to its partition enumeration); answers that enumeration's name.
std::string ZedMibEnsurePartitions(nlohmann::ordered_json& dictionary, unsigned int& nextTypeId);

/// The partition of an attribute: its name's parts, counters, what can be
/// changed, and its status.
const char* ZedMibPartitionOf(bool index, const std::string& syntax, bool writable);

/// Show (by partition), and Set, Create and Delete where the class allows them.
nlohmann::ordered_json ZedMibDirectives(const std::string& partitionType, bool writable, bool rowStatus);
