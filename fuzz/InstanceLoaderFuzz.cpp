// SPDX-License-Identifier: BSD-3-Clause
// Any bytes given to the simulated network's instance loader load or raise
// TException; a loaded network then answers a wildcard Show without fault.
// Checking the same bytes for every fault agrees with loading: no fault
// exactly when the load succeeds, and the first fault is the one raised.

#include "zed/TException.h"
#include "zed/call/TCall.h"
#include "zed/dict/TDictionary.h"
#include "zed/sim/TSimInstanceStore.h"
#include "zed/sim/TSimulatedNetwork.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const TDictionaryPtr dictionary = TDictionary::Load(KEL_SOURCE_DIR "/data/network/dictionary.json");
    TSimulatedNetwork network(dictionary);
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::vector<std::string> faults;
    const bool valid = network.GetStore().Check(text, "fuzz.json", faults);
    try {
        network.ParseInstances(text, "fuzz.json");
    } catch (const TException& e) {
        if (valid || faults.front() != e.what())
            std::abort();
        return 0;
    }
    if (!valid)
        std::abort();
    TEntitySpec everything;
    everything.AddClassWildcard(1).AddClassWildcard(2);
    network.Execute(everything, 1, TRequest());
    return 0;
}
