// Any bytes given to the dictionary loader load or raise TException: never a
// crash, a hang or a leak.

#include "zed/TException.h"
#include "zed/dict/TDictionary.h"

#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    try {
        TDictionary::Parse(std::string_view(reinterpret_cast<const char*>(data), size), "fuzz.json");
    } catch (const TException&) {
    }
    return 0;
}
