// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/ZedSnmpPdu.h"

#include <vector>

TSnmpDatum ZedSnmpDatumOf(const netsnmp_variable_list& v)
{
    using Kind = TSnmpDatum::Kind;
    TSnmpDatum datum;
    switch (v.type) {
    case ASN_INTEGER:
        datum.kind = Kind::Integer;
        datum.integer = *v.val.integer;
        break;
    case ASN_GAUGE:
    case ASN_COUNTER:
    case ASN_TIMETICKS:
        datum.kind = v.type == ASN_GAUGE ? Kind::Unsigned : v.type == ASN_COUNTER ? Kind::Counter32 : Kind::TimeTicks;
        datum.number = static_cast<std::uint32_t>(*v.val.integer);
        break;
    case ASN_COUNTER64:
        datum.kind = Kind::Counter64;
        datum.number = (std::uint64_t(v.val.counter64->high) << 32) | (v.val.counter64->low & 0xffffffffu);
        break;
    case ASN_OCTET_STR:
    case ASN_OPAQUE:
    case ASN_IPADDRESS:
        datum.kind = v.type == ASN_IPADDRESS ? Kind::IpAddress : Kind::Octets;
        datum.octets.assign(reinterpret_cast<const char*>(v.val.string), v.val_len);
        break;
    case ASN_OBJECT_ID:
        datum.kind = Kind::ObjectId;
        for (std::size_t i = 0; i < v.val_len / sizeof(oid); ++i)
            datum.oid.push_back(static_cast<std::uint32_t>(v.val.objid[i]));
        break;
    case SNMP_NOSUCHOBJECT: datum.kind = Kind::NoSuchObject; break;
    case SNMP_NOSUCHINSTANCE: datum.kind = Kind::NoSuchInstance; break;
    case SNMP_ENDOFMIBVIEW: datum.kind = Kind::EndOfMibView; break;
    default: datum.kind = Kind::Null; break;
    }
    return datum;
}

static std::vector<oid> Wire(const ZedOid& name) { return std::vector<oid>(name.begin(), name.end()); }

void ZedSnmpAddVarbind(netsnmp_pdu* pdu, const TSnmpVarbind& varbind)
{
    using Kind = TSnmpDatum::Kind;
    const std::vector<oid> name = Wire(varbind.oid);
    const TSnmpDatum& d = varbind.datum;
    switch (d.kind) {
    case Kind::Integer: {
        const long value = static_cast<long>(d.integer);
        snmp_pdu_add_variable(pdu, name.data(), name.size(), ASN_INTEGER, &value, sizeof value);
        return;
    }
    case Kind::Unsigned:
    case Kind::Counter32:
    case Kind::TimeTicks: {
        const u_long value = static_cast<u_long>(d.number);
        const u_char type = d.kind == Kind::Unsigned    ? ASN_GAUGE
                            : d.kind == Kind::Counter32 ? ASN_COUNTER
                                                        : ASN_TIMETICKS;
        snmp_pdu_add_variable(pdu, name.data(), name.size(), type, &value, sizeof value);
        return;
    }
    case Kind::Counter64: {
        counter64 value{};
        value.high = static_cast<u_long>(d.number >> 32);
        value.low = static_cast<u_long>(d.number & 0xffffffffu);
        snmp_pdu_add_variable(pdu, name.data(), name.size(), ASN_COUNTER64, &value, sizeof value);
        return;
    }
    case Kind::Octets:
    case Kind::IpAddress:
        snmp_pdu_add_variable(pdu, name.data(), name.size(), d.kind == Kind::IpAddress ? ASN_IPADDRESS : ASN_OCTET_STR,
                              d.octets.data(), d.octets.size());
        return;
    case Kind::ObjectId: {
        const std::vector<oid> value = Wire(d.oid);
        snmp_pdu_add_variable(pdu, name.data(), name.size(), ASN_OBJECT_ID, value.data(), value.size() * sizeof(oid));
        return;
    }
    default: snmp_add_null_var(pdu, name.data(), name.size()); return;
    }
}
