// Any bytes given to the simulated network's instance loader load or raise
// TException; a loaded network then answers a wildcard Show without fault.

#include "zed/TException.h"
#include "zed/call/TCall.h"
#include "zed/dict/TDictionary.h"
#include "zed/sim/TSimulatedNetwork.h"

#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const TDictionaryPtr dictionary = TDictionary::Load(KEL_SOURCE_DIR "/data/network/dictionary.json");
    TSimulatedNetwork network(dictionary);
    try {
        network.ParseInstances(std::string_view(reinterpret_cast<const char*>(data), size), "fuzz.json");
    } catch (const TException&) {
        return 0;
    }
    TEntitySpec everything;
    everything.AddClassWildcard(1).AddClassWildcard(2);
    network.Execute(everything, 1, TRequest());
    return 0;
}
