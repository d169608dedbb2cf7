// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// net-snmp, readied once per process for the access library's use: no
// configuration files or MIBs of the machine or the user are read (the
// dictionary names every OID), nothing is saved, and what the library logs
// goes to the trace under ZED_TRACE_SNMP instead of standard error.

/// Trace lines of the SNMP module carry this module bit (with 1: faults,
/// 4: progress, 8: what goes out and comes in).
inline constexpr unsigned int ZED_TRACE_SNMP = 0x20000;

#include <functional>
#include <string>

/// Readies net-snmp; later calls do nothing.
void ZedSnmpInitLibrary();

/// Who hears what net-snmp logs instead of the trace: a priority (LOG_ERR,
/// LOG_WARNING, ...) and one message without its line end.
using ZedSnmpLogSink = std::function<void(int priority, const std::string& message)>;

/// Sends what net-snmp logs to the sink until the sink is reset (empty); the
/// previous sink is given back. For one reader at a time, under its own lock:
/// the MIB reader hears its parser's faults this way.
ZedSnmpLogSink ZedSnmpSetLogSink(ZedSnmpLogSink sink);
