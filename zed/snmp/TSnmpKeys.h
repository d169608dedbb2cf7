// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// SNMPv3 keys kept as little and as briefly as they can be: the pass phrases
// of the agents file are turned into master keys (Ku, RFC 3414) as soon as
// it is read and wiped; a master key is localized for the engine it speaks
// to and goes once each of its sessions has its localized key. Key material
// lives in pages of its own, left out of core dumps (MADV_DONTDUMP), locked
// in memory where the system allows, and wiped when it goes. What net-snmp
// copies of a localized key into its own users is net-snmp's.

#include "zed/snmp/TSnmpAgentsFile.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

/// Octets of key material, out of core dumps and wiped when they go.
class ZED_EXPORT TSnmpSecret {
public:
    /// Room for size octets, zero-filled. Throws std::bad_alloc when no page can be had.
    explicit TSnmpSecret(std::size_t size);
    TSnmpSecret(const TSnmpSecret&) = delete;
    TSnmpSecret& operator=(const TSnmpSecret&) = delete;
    ~TSnmpSecret();

    std::uint8_t* Data() { return m_data; }
    const std::uint8_t* Data() const { return m_data; }
    std::size_t Size() const { return m_size; }
    /// Keeps the first size octets (a key shorter than its room).
    void Shorten(std::size_t size);

private:
    std::uint8_t* m_data = nullptr;
    std::size_t m_size = 0;
    std::size_t m_mapped = 0;
};

/// An SNMPv3 agent's master keys, made from its pass phrases.
struct ZED_EXPORT TSnmpMasterKeys {
    std::unique_ptr<TSnmpSecret> auth;
    std::unique_ptr<TSnmpSecret> priv;
};

/// Overwrites a text's characters before it is cleared.
ZED_EXPORT void ZedWipe(std::string& text);

/// Makes an SNMPv3 agent's master keys from its pass phrases and wipes the
/// pass phrases; nothing for other agents or an agent already sealed.
/// Throws TException when a key cannot be made.
ZED_EXPORT void ZedSnmpSealKeys(TSnmpAgent& agent);

/// The key of a master key localized for an engine (RFC 3414, 2.6); null
/// when it cannot be made. The agent's AuthProtocol hashes it.
ZED_EXPORT std::unique_ptr<TSnmpSecret> ZedSnmpLocalize(const TSnmpAgent& agent, const TSnmpSecret& master,
                                                        const std::string& engine);
