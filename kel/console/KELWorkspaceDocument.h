// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <string>

/// What the workspace store needs of a host's document: its title, the file
/// it lives in (empty until saved) and a way to save it to a file. The kind
/// tells the host how to open such a file again.
class KEL_EXPORT KELWorkspaceDocument {
public:
    virtual ~KELWorkspaceDocument();

    virtual std::string GetKind() const = 0;
    virtual std::string GetTitle() const = 0;
    virtual void SetTitle(const std::string& title) = 0;
    virtual std::string GetPathName() const = 0;
    virtual void SetPathName(const std::string& path) = 0;
    /// Writes the document to the file; false when it could not.
    virtual bool SaveTo(const std::string& path) = 0;
};
