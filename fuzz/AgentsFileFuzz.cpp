// SPDX-License-Identifier: BSD-3-Clause
// An agents file as a person writes it: read or refused with a TException,
// never anything worse; what is read names every agent once, with an address.

#include "zed/TException.h"
#include "zed/snmp/TSnmpAgentsFile.h"

#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    try {
        const TSnmpAgents agents = ZedParseAgents(std::string(reinterpret_cast<const char*>(data), size), "fuzz");
        std::set<std::string> names;
        for (const TSnmpAgent& agent : agents.agents)
            if (agent.name.empty() || agent.address.empty() || !names.insert(agent.name).second)
                std::abort();
    } catch (const TException&) {
    }
    return 0;
}
