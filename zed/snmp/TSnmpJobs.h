// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The SNMP module's jobs, one per way a directive is carried out on an
// agent: a Get of one instance's objects, a walk of a table's rows, and a Set
// of objects (with a RowStatus for Create and Delete). Each hands its part
// of the call in when the agent's answer has been read.

#include "zed/snmp/TSnmpAnswers.h"
#include "zed/snmp/TSnmpCallBook.h"

#include <optional>

// One agent's part of a call, as a job carries it out.
struct TSnmpJob {
    TSnmpCallBook& book;
    TCallTicket ticket;
    TSnmpCall& call;
    TSnmpTarget target;
    const TRequest& request;
    const TSnmpAnswers& answers;
};

// Show of the scalars or of one row: one Get of the objects asked for.
void ZedSnmpGet(const TSnmpJob& job);
// Show of every row: a walk of the columns asked for, a row each.
void ZedSnmpWalkRows(const TSnmpJob& job);
// Set, and Create and Delete of a row (rowStatus createAndGo, destroy): one
// Set of the request's attributes and the RowStatus.
void ZedSnmpWrite(const TSnmpJob& job, std::optional<long> rowStatus);
