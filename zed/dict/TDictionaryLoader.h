// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Builds a TDictionary from its JSON text, checking everything first.
// Internal to the access library; TDictionary::Load and Parse are the way in.

#include "zed/dict/TDictionary.h"

#include <string>
#include <string_view>
#include <vector>

class TDictionaryLoader {
public:
    // With faults, every fault found goes there (and the result is null if
    // there is one); without, the first throws.
    static std::shared_ptr<const TDictionary> Load(std::string_view json, const std::string& source,
                                                   std::vector<std::string>* faults = nullptr);
    // The built-in type of that name (Boolean, Integer32, EntitySpec, ...), or null.
    static TDictTypePtr BuiltinType(const std::string& name);

private:
    class Reader;
};
