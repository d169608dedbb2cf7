// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <memory>
#include <string>
#include <string_view>

class IConfiguration;

/// A named configuration context: a code chosen by the host, a system file
/// common to all users and a user file of the logged-on user:
///
///     system file     <system path><code><string 4035>        e.g. /opt/orvex/console.cfg
///     user file       <user path><login><code><string 4036>   e.g. ~/.local/share/orvex/kel/annconsole.ucfg
///     workspace file  <directory of the workspace><code><workspace base name><string 4036>
///
/// Settings are read from the user file first, then from the system file, and
/// written to the user file.
class KEL_EXPORT KELConfigContext {
public:
    explicit KELConfigContext(const char* code);
    KELConfigContext(const KELConfigContext&) = delete;
    KELConfigContext& operator=(const KELConfigContext&) = delete;
    virtual ~KELConfigContext();

    const std::string& ContextCode() const { return m_code; }
    operator const char*() const { return m_code.c_str(); }

    IConfiguration* GetSystemConfigFile() const { return m_pSystemFile.get(); }
    IConfiguration* GetUserConfigFile() const { return m_pUserFile.get(); }
    /// Replaces (and destroys) the user file object.
    void SetUserConfigFile(std::unique_ptr<IConfiguration> file);

    /// Loads both files and the open workspace's settings; false, with the
    /// messages in errors, when a file could not be read.
    bool LoadSystemAndUserConfig(std::string& errors);
    int LoadWorkspace(const char* workspaceFile);
    int SaveWorkspace(const char* workspaceFile);

    /// The layered lookup of the application object, by this context's code.
    int GetConfigBool(std::string_view section, std::string_view key, bool& value, bool fallback, int flag) const;
    int GetConfigInt(std::string_view section, std::string_view key, int& value, int fallback, int flag) const;
    int GetConfigShort(std::string_view section, std::string_view key, short& value, short fallback, int flag) const;
    int GetConfigDouble(std::string_view section, std::string_view key, double& value, double fallback, int flag) const;
    int GetConfigString(std::string_view section, std::string_view key, std::string& value, std::string_view fallback,
                        int flag) const;

    /// The workspace configuration file that goes with a workspace file.
    void GetWorkspaceConfFile(const char* workspaceFile, std::string& out) const;

protected:
    void FindSystemConfFile();
    void FindUserConfFile();

private:
    std::string m_code;
    std::unique_ptr<IConfiguration> m_pSystemFile;
    std::unique_ptr<IConfiguration> m_pUserFile;
};
