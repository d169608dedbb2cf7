// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <string>

/// What configuration contexts ask the host's workspace manager: the name of
/// the workspace that is open. The workspace manager implements it.
class KEL_EXPORT KELWorkspaceQuery {
public:
    virtual ~KELWorkspaceQuery();
    /// False when no workspace is open.
    virtual bool GetOpenWorkspaceName(std::string& name) const = 0;
};
