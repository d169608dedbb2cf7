// SPDX-License-Identifier: BSD-3-Clause
// A datagram as anyone on the loopback network may send it to the receiver:
// read, checked and turned into an event report, or refused and counted,
// never anything worse. It travels the real path: a UDP socket, net-snmp's
// parser, the receiver's checks, the module's report and its text.

#include "zed/snmp/TSnmpModule.h"
#include "zed/call/ZedWaitSet.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

namespace {

struct Harness {
    std::shared_ptr<TSnmpModule> module;
    int sender = -1;
    sockaddr_in receiver{};

    Harness()
    {
        TSnmpAgents agents;
        TSnmpAgent agent;
        agent.name = "core-r1";
        agent.address = "udp:127.0.0.1:16161";
        agents.agents.push_back(agent);
        agents.receiverAddress = "udp:127.0.0.1:0";
        agents.mostWaiting = 16;
        module = std::make_shared<TSnmpModule>(
            TDictionary::Load(std::string(KEL_SOURCE_DIR) + "/data/snmp/dictionary.json"), std::move(agents), true);
        const std::string address = module->GetReceiverAddress();  // udp:127.0.0.1:PORT
        receiver.sin_family = AF_INET;
        receiver.sin_port = htons(static_cast<std::uint16_t>(std::stoi(address.substr(address.rfind(':') + 1))));
        inet_pton(AF_INET, "127.0.0.1", &receiver.sin_addr);
        sender = socket(AF_INET, SOCK_DGRAM, 0);
        sockaddr_in local{};
        local.sin_family = AF_INET;
        inet_pton(AF_INET, "127.0.0.1", &local.sin_addr);
        if (sender < 0 || bind(sender, reinterpret_cast<sockaddr*>(&local), sizeof local) != 0)
            std::abort();
    }

    // Sends the datagram and turns until the receiver has read it.
    void Deliver(const std::uint8_t* data, std::size_t size)
    {
        if (sendto(sender, data, size, 0, reinterpret_cast<const sockaddr*>(&receiver), sizeof receiver) < 0)
            return;  // past a datagram's size: nothing arrives
        ZedWaitSet set;
        module->AddWaitSet(set);
        ZedWait(set, std::chrono::milliseconds(100));
        module->ProcessReady();
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Harness harness;
    const auto before = harness.module->GetNotificationCounts();
    harness.Deliver(data, size);
    std::string text;
    for (const TCallResult& event : harness.module->TakeEvents()) {
        if (event.outEntity.GetDepth() == 0 || event.outEntity.GetComponent(0).name != "core-r1")
            std::abort();  // an event is only ever the configured agent's
        text += event.reply.ToString();
    }
    const auto after = harness.module->GetNotificationCounts();
    if (after.accepted < before.accepted || after.Refused() < before.Refused())
        std::abort();
    text += after.Summary();
    // The texts are made and kept from the optimiser: that they can be is the point.
    asm volatile("" : : "r"(text.data()) : "memory");
    return 0;
}
