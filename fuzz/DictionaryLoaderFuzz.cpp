// SPDX-License-Identifier: BSD-3-Clause
// Any bytes given to the dictionary loader load or raise TException: never a
// crash, a hang or a leak. Checking the same bytes for every fault agrees
// with loading: no fault exactly when the load succeeds, and the first fault
// is the one the load raises.

#include "zed/TException.h"
#include "zed/dict/TDictionary.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::string raised;
    try {
        TDictionary::Parse(text, "fuzz.json");
    } catch (const TException& e) {
        raised = e.what();
    }
    std::vector<std::string> faults;
    const bool made = TDictionary::Check(text, "fuzz.json", faults) != nullptr;
    if (made != raised.empty() || made != faults.empty() || (!made && faults.front() != raised))
        std::abort();
    return 0;
}
