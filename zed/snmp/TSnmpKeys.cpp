// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/TSnmpKeys.h"

#include "zed/TException.h"
#include "zed/snmp/ZedSnmpLibrary.h"

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include <sys/mman.h>
#include <unistd.h>

#include <cstring>
#include <new>

namespace {

// The hash of an agent's authentication protocol, which makes its keys.
const oid* AuthProtocolOf(const TSnmpAgent& agent)
{
    return agent.authProtocol == "SHA-512" ? usmHMAC384SHA512AuthProtocol : usmHMAC192SHA256AuthProtocol;
}

constexpr std::size_t kAuthProtocolLength = 10;  // both OIDs: 1.3.6.1.6.3.10.1.1.x

std::unique_ptr<TSnmpSecret> MasterKey(const TSnmpAgent& agent, const std::string& phrase)
{
    auto key = std::make_unique<TSnmpSecret>(USM_AUTH_KU_LEN);
    size_t length = key->Size();
    if (generate_Ku(AuthProtocolOf(agent), kAuthProtocolLength, reinterpret_cast<const u_char*>(phrase.data()),
                    phrase.size(), key->Data(), &length)
        != SNMPERR_SUCCESS)
        return nullptr;
    key->Shorten(length);
    return key;
}

}  // namespace

TSnmpSecret::TSnmpSecret(std::size_t size) : m_size(size)
{
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    m_mapped = (std::max<std::size_t>(size, 1) + page - 1) / page * page;
    void* mapped = mmap(nullptr, m_mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED)
        throw std::bad_alloc();
    madvise(mapped, m_mapped, MADV_DONTDUMP);
    mlock(mapped, m_mapped);  // best effort: a limit on locked memory leaves it swappable
    m_data = static_cast<std::uint8_t*>(mapped);
}

TSnmpSecret::~TSnmpSecret()
{
    explicit_bzero(m_data, m_mapped);
    munlock(m_data, m_mapped);
    munmap(m_data, m_mapped);
}

void TSnmpSecret::Shorten(std::size_t size)
{
    if (size >= m_size)
        return;
    explicit_bzero(m_data + size, m_size - size);
    m_size = size;
}

void ZedWipe(std::string& text)
{
    explicit_bzero(text.data(), text.size());
    text.clear();
    text.shrink_to_fit();
}

void ZedSnmpSealKeys(TSnmpAgent& agent)
{
    if (agent.version != TSnmpAgent::Version::V3 || (agent.authKey.empty() && agent.privKey.empty()))
        return;
    ZedSnmpInitLibrary();
    auto keys = std::make_shared<TSnmpMasterKeys>();
    if (!agent.authKey.empty() && !(keys->auth = MasterKey(agent, agent.authKey)))
        throw TException("the authentication key of agent " + agent.name + " could not be made");
    if (!agent.privKey.empty() && !(keys->priv = MasterKey(agent, agent.privKey)))
        throw TException("the privacy key of agent " + agent.name + " could not be made");
    ZedWipe(agent.authKey);
    ZedWipe(agent.privKey);
    agent.keys = std::move(keys);
}

std::unique_ptr<TSnmpSecret> ZedSnmpLocalize(const TSnmpAgent& agent, const TSnmpSecret& master,
                                             const std::string& engine)
{
    auto local = std::make_unique<TSnmpSecret>(USM_AUTH_KU_LEN);
    size_t length = local->Size();
    if (generate_kul(AuthProtocolOf(agent), kAuthProtocolLength, reinterpret_cast<const u_char*>(engine.data()),
                     engine.size(), master.Data(), master.Size(), local->Data(), &length)
        != SNMPERR_SUCCESS)
        return nullptr;
    local->Shorten(length);
    return local;
}
