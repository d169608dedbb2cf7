// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Between net-snmp's varbinds and the module's data: the one place that
// knows how each ASN.1 type is laid out in a net-snmp variable. Internal to
// the SNMP module (it brings net-snmp's headers along).

#include "zed/snmp/TSnmpSession.h"

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>
#include <net-snmp/library/large_fd_set.h>

TSnmpDatum ZedSnmpDatumOf(const netsnmp_variable_list& variable);
/// Adds the varbind; a datum of kind Null asks for the object (Get, GetBulk).
void ZedSnmpAddVarbind(netsnmp_pdu* pdu, const TSnmpVarbind& varbind);
