#pragma once

// Builds a TDictionary from its JSON text, checking everything first.
// Internal to the access library; TDictionary::Load and Parse are the way in.

#include "zed/dict/TDictionary.h"

#include <string>
#include <string_view>

class TDictionaryLoader {
public:
    static std::shared_ptr<const TDictionary> Load(std::string_view json, const std::string& source);
    // The built-in type of that name (Boolean, Integer32, EntitySpec, ...), or null.
    static TDictTypePtr BuiltinType(const std::string& name);

private:
    class Reader;
};
