// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The management module that speaks SNMP to real agents, with the same
// directives and replies as the simulated network, so that forms work on
// either unchanged. What the classes and attributes are in SNMP comes from
// the dictionary's "snmp" bindings (docs/snmp.md); the agents from an agents
// file (TSnmpAgentsFile.h).
//
// Directives, recognised by their dictionary names:
//   Show    Get of one instance (the agent's scalars, or a table row named by
//           its index); a GetBulk walk of the table for a wildcard. The
//           "Partition" argument picks the attributes asked for.
//   Set     Set of the attributes the request carries, in one PDU (typed by
//           their syntaxes, enumerations by number).
//   Create  Set of a new row's attributes with its RowStatus createAndGo(4);
//   Delete  its RowStatus destroy(6). Tables without a RowStatus refuse both.
// Every agent of a wildcard is asked at once. Faults come back as common
// exceptions whose Reason names the agent, the object and the cause:
// NoSuchEntity (1), DirectiveNotSupported (2), InvalidRequest (3), NoAnswer
// (4, a timeout), NotAuthorized (5: authentication, authorizationError,
// noAccess) and AgentError (6: any other error status or failure).
//
// Notifications arriving at the receiver's address, once checked against the
// agents file (TSnmpReceiver.h), become event reports of the dictionary's
// events bound to their trap OIDs, on the entity of the agent that sent them;
// one no event binds becomes the dictionary's "unbound" event. At most the
// agents file's MostWaiting events wait to be taken; older ones are dropped
// and counted.

#include "zed/call/TManagementModule.h"
#include "zed/dict/TDictionary.h"
#include "zed/snmp/TSnmpAgentsFile.h"
#include "zed/snmp/TSnmpNotificationCounts.h"

#include <memory>
#include <string>

/// The SNMP management module: directives on the agents of an agents file.
class ZED_EXPORT TSnmpModule : public TManagementModule {
public:
    /// Throws TException when the receiver cannot listen on the agents
    /// file's Notifications address (unless receive is false).
    TSnmpModule(TDictionaryPtr dictionary, TSnmpAgents agents, bool receive = true);
    ~TSnmpModule() override;

    const TSnmpAgents& GetAgents() const;
    /// The address notifications are received on; empty when none are.
    std::string GetReceiverAddress() const;
    /// What became of the notifications: taken, refused and why, lost, dropped.
    TSnmpNotificationCounts GetNotificationCounts() const;

    /// Waits for the answers: for callers outside an event loop.
    std::vector<TCallResult> Execute(const TEntitySpec& entity, unsigned int directive,
                                     const TRequest& request) override;
    void Start(TCallTicket ticket, const TEntitySpec& entity, unsigned int directive, const TRequest& request,
               Completion done) override;
    void Cancel(TCallTicket ticket) override;
    void AddWaitSet(ZedWaitSet& set) const override;
    void ProcessReady() override;

    /// Names OIDs the dictionary does not, for values and notifications (the
    /// nodes of the MIB modules read: "1.3.6.1.4.1.8072.3.2.10 (linux)").
    void NameOids(const std::vector<std::pair<ZedOid, std::string>>& names);

    std::vector<TCallResult> TakeEvents() override;
    void SetEventListener(EventListener listener) override;

    /// Loads the dictionary and the agents file, makes the dictionary the
    /// application's and the module its default. Throws TException.
    static std::shared_ptr<TSnmpModule> Install(const std::string& dictionaryPath, const std::string& agentsPath,
                                                bool receive = true);

private:
    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};
