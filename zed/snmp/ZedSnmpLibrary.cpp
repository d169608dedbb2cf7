// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/ZedSnmpLibrary.h"

#include "zed/trace/TTraceStream.h"

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include <mutex>
#include <string>
#include <utility>

namespace {

ZedSnmpLogSink& Sink()
{
    static ZedSnmpLogSink sink;
    return sink;
}

int TraceLog(int, int, void* message, void*)
{
    const auto* log = static_cast<const snmp_log_message*>(message);
    std::string text = log && log->msg ? log->msg : "";
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
        text.pop_back();
    if (text.empty())
        return 0;
    if (Sink())
        Sink()(log->priority, text);
    else
        TTraceStream(ZED_TRACE_SNMP | (log->priority <= LOG_ERR ? 1u : 4u)) << "net-snmp: " << text << endl;
    return 0;
}

}  // namespace

void ZedSnmpInitLibrary()
{
    static std::once_flag once;
    std::call_once(once, [] {
        netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DONT_READ_CONFIGS, 1);
        netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DISABLE_PERSISTENT_LOAD, 1);
        netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DISABLE_PERSISTENT_SAVE, 1);
        netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_QUICK_PRINT, 1);
        // MIBs are never looked up: the dictionary names every OID itself.
        netsnmp_set_mib_directory("/nonexistent");
        netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_MIB_ERRORS, 0);
        netsnmp_ds_set_int(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_MIB_WARNINGS, 0);
        snmp_disable_log();
        snmp_register_callback(SNMP_CALLBACK_LIBRARY, SNMP_CALLBACK_LOGGING, TraceLog, nullptr);
        netsnmp_register_loghandler(NETSNMP_LOGHANDLER_CALLBACK, LOG_DEBUG);
        init_snmp("zed");
    });
}

ZedSnmpLogSink ZedSnmpSetLogSink(ZedSnmpLogSink sink) { return std::exchange(Sink(), std::move(sink)); }
