// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The network shipped in data/network, loaded once per test process and made
// the application's dictionary and default module.

#include "zed/TApplication.h"
#include "zed/dict/TDictionary.h"
#include "zed/sim/TSimulatedNetwork.h"

#include <memory>
#include <string>

inline std::string ShippedFile(const char* name) { return std::string(KEL_SOURCE_DIR) + "/data/network/" + name; }

// A fresh network each call, so that one test's Set or Delete does not leak
// into another's.
inline std::shared_ptr<TSimulatedNetwork> InstallShippedNetwork()
{
    return TSimulatedNetwork::Install(ShippedFile("dictionary.json"), ShippedFile("instances.json"));
}

inline const TDictionary& Dictionary() { return *ZEDGetApplication()->GetDictionary(); }
