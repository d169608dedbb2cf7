// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

class KelBrowserWindow;

// The browser's tour without a display: it opens the input forms of several
// directives (one with a field of every kind), fills them as an operator
// would, sends them, and leaves a PNG of the window after each step and a
// transcript (transcript.txt) in the folder. 0 when every step went as
// expected.
int RunTour(KelBrowserWindow& window, const std::string& folder);

// The same browser on a real SNMP agent: a private snmpd (Debian's, when it
// is installed) on a loopback port, a window on the SNMP dictionary (its own
// settings context, kSnmpContext) showing
// the agent's system group, a Set of its Location, its interfaces as a list
// and two traps in the Events tab; pictures and transcript added to the
// folder. The application's dictionary and module are the SNMP ones when it
// returns. 0 when every step went as expected or snmpd is not installed.
int RunSnmpTour(const std::string& folder);

// The settings context of a browser on SNMP agents.
inline constexpr const char* kSnmpContext = "kelbrowser-snmp";
