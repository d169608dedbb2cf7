// SPDX-License-Identifier: BSD-3-Clause
// Row names and OID suffixes both ways. The first byte picks the index's
// parts (up to three, each of a syntax, the last maybe IMPLIED); the rest is
// a row name as a person types it, and read again as sub-identifiers.
// Whatever decodes encodes back to the very suffix; whatever encodes decodes
// to a name that encodes to the same index.

#include "zed/snmp/TSnmpIndex.h"
#include "zed/snmp/TSnmpValue.h"
#include "zed/value/TScalarValues.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

constexpr ZedSnmpSyntax kSyntaxes[] = {ZedSnmpSyntax::Integer, ZedSnmpSyntax::DisplayString, ZedSnmpSyntax::IpAddress,
                                       ZedSnmpSyntax::ObjectId};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 1)
        return 0;
    const unsigned shape = data[0];
    std::vector<TSnmpIndex::Part> parts;
    for (unsigned i = 0; i < 1 + shape % 3; ++i)
        parts.push_back({kSyntaxes[(shape >> (2 + 2 * i)) & 3], false});
    parts.back().implied = (shape & 0x80) != 0;
    const TSnmpIndex index(parts);
    const std::string name(reinterpret_cast<const char*>(data + 1), size - 1);

    if (const auto oid = index.Encode(name)) {
        const auto decoded = index.Decode(*oid);
        if (!decoded || index.Encode(TSnmpIndex::Join(*decoded)) != oid)
            std::abort();
    }
    ZedOid suffix;
    for (std::size_t i = 1; i < size; ++i)
        suffix.push_back(data[i] < 0xf0 ? data[i] : 0xffffff00u + data[i]);
    if (const auto decoded = index.Decode(suffix))
        if (index.Encode(TSnmpIndex::Join(*decoded)) != suffix)
            std::abort();

    // The same text as a value of each syntax: sent, or refused with a reason.
    for (ZedSnmpSyntax syntax :
         {ZedSnmpSyntax::Integer, ZedSnmpSyntax::Unsigned, ZedSnmpSyntax::Counter64, ZedSnmpSyntax::OctetString,
          ZedSnmpSyntax::ObjectId, ZedSnmpSyntax::IpAddress, ZedSnmpSyntax::Bits}) {
        std::string why;
        if (!ZedSnmpFromValue(TLatin1String(name), syntax, &why) && why.empty())
            std::abort();
    }
    if (const auto bits = ZedSnmpTextOctets(name, ZedSnmpSyntax::Bits))
        if (ZedSnmpTextOctets(ZedSnmpOctetsText(*bits, ZedSnmpSyntax::Bits), ZedSnmpSyntax::Bits) != bits)
            std::abort();
    return 0;
}
