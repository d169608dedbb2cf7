// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// A notification that passed the receiver's checks, as the dictionary's
// event report: the event its trap OID binds, on the agent's entity (and the
// row its variables name, for a table's event), with the event's arguments
// from its variables; a notification no event binds as the dictionary's
// "unbound" event, its OID and variables as text.

#include "zed/dict/TDictionary.h"
#include "zed/snmp/TSnmpOidNames.h"
#include "zed/snmp/TSnmpReceiver.h"
#include "zed/value/TEventReport.h"

#include <map>
#include <memory>
#include <optional>
#include <utility>

/// Makes the event reports of checked notifications.
class TSnmpEventReports {
public:
    /// An event report and the entity it is on.
    struct Made {
        TEntitySpec entity;
        std::unique_ptr<TEventReport> report;
    };

    TSnmpEventReports(TDictionaryPtr dictionary, const TSnmpOidNames& names);

    /// The notification's report; none when no event of the dictionary, not
    /// even an unbound one, reports it.
    std::optional<Made> Make(const TSnmpNotification& notification) const;

private:
    using Bound = std::pair<const TDictClass*, const TDictEvent*>;

    void Add(const TDictClass& cls);
    Made BoundReport(const TSnmpNotification& notification, const TDictClass& cls, const TDictEvent& event) const;
    Made UnboundReport(const TSnmpNotification& notification) const;
    TEntitySpec EntityOf(const TSnmpNotification& notification, const TDictClass& cls, const TDictEvent& event) const;

    TDictionaryPtr m_dictionary;
    const TSnmpOidNames& m_names;
    std::map<ZedOid, Bound> m_traps;
    Bound m_unbound{};
};
