// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/KELConfigContext.h"
#include "kel/frame/KELString.h"

#include "kel/config/IConfiguration.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELResources.h"
#include "kel/frame/KELUtilities.h"
#include "kel/frame/KELWorkspaceQuery.h"

namespace {

constexpr int kNoContext = 2;

}  // namespace

KELConfigContext::KELConfigContext(const char* code)
    : m_code(code ? code : ""), m_pSystemFile(std::make_unique<IConfiguration>("")),
      m_pUserFile(std::make_unique<IConfiguration>(""))
{
    FindUserConfFile();
    FindSystemConfFile();
}

KELConfigContext::~KELConfigContext() = default;

void KELConfigContext::FindSystemConfFile()
{
    IApplication* app = GetKELapp();
    m_pSystemFile->SetFilename((app ? app->GetSystemPath() : std::string()) + m_code
                               + KELResources::String(KELString::kSystemFileExtension));
}

void KELConfigContext::FindUserConfFile()
{
    IApplication* app = GetKELapp();
    m_pUserFile->SetFilename((app ? app->GetUserPath() : std::string()) + KELUtilities::GetLoginName() + m_code
                             + KELResources::String(KELString::kUserFileExtension));
}

void KELConfigContext::GetWorkspaceConfFile(const char* workspaceFile, std::string& out) const
{
    const std::string path = workspaceFile ? workspaceFile : "";
    const auto slash = path.rfind('/');
    const std::string directory = slash == std::string::npos ? "" : path.substr(0, slash + 1);
    std::string base = slash == std::string::npos ? path : path.substr(slash + 1);
    if (const auto dot = base.rfind('.'); dot != std::string::npos && dot > 0)
        base.erase(dot);
    out = directory + m_code + base + KELResources::String(KELString::kUserFileExtension);
}

void KELConfigContext::SetUserConfigFile(std::unique_ptr<IConfiguration> file) { m_pUserFile = std::move(file); }

bool KELConfigContext::LoadSystemAndUserConfig(std::string& errors)
{
    IApplication* app = GetKELapp();
    const auto tell = [&](const std::string& message) {
        if (app)
            app->InsertMessageConsole(KEL_SEVERITY_INFORMATION, message);
    };
    bool ok = true;
    if (m_pSystemFile && m_pSystemFile->Load() == 0) {
        ok = false;
        errors = KELResources::String(KELString::kSystemFileUnreadable) + m_pSystemFile->GetFilename();
        tell(errors);
    }
    if (m_pUserFile && m_pUserFile->Load() == 0) {
        // The line feed stands before the user message only when the system
        // file loaded; two failures are joined as they are.
        if (ok)
            errors += "\n";
        ok = false;
        const std::string message = KELResources::String(KELString::kUserFileUnreadable) + m_pUserFile->GetFilename();
        tell(message);
        errors += message;
    }
    std::string workspace;
    if (app && app->GetWorkspaceManager() && app->GetWorkspaceManager()->GetOpenWorkspaceName(workspace)
        && !workspace.empty())
        LoadWorkspace(workspace.c_str());
    return ok;
}

int KELConfigContext::LoadWorkspace(const char* workspaceFile)
{
    std::string name;
    GetWorkspaceConfFile(workspaceFile, name);
    return m_pUserFile ? m_pUserFile->LoadWorkspace(name) : 0;
}

int KELConfigContext::SaveWorkspace(const char* workspaceFile)
{
    std::string name;
    GetWorkspaceConfFile(workspaceFile, name);
    return m_pUserFile ? m_pUserFile->SaveWorkspace(name) : 0;
}

#define KEL_CONTEXT_GETTER(Name, Type, FallbackType)                                                                   \
    int KELConfigContext::GetConfig##Name(std::string_view section, std::string_view key, Type& value,                 \
                                          FallbackType fallback, int flag) const                                       \
    {                                                                                                                  \
        IApplication* app = GetKELapp();                                                                               \
        return app ? app->GetConfig##Name(m_code.c_str(), section, key, value, fallback, flag) : kNoContext;           \
    }
KEL_CONTEXT_GETTER(Bool, bool, bool)
KEL_CONTEXT_GETTER(Int, int, int)
KEL_CONTEXT_GETTER(Short, short, short)
KEL_CONTEXT_GETTER(Double, double, double)
KEL_CONTEXT_GETTER(String, std::string, std::string_view)
#undef KEL_CONTEXT_GETTER
