#include "kel/console/IWorkspaceManager.h"

#include "kel/config/KELConfigContext.h"
#include "kel/console/KELWorkspaceDocument.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELPrompt.h"
#include "kel/frame/KELResources.h"
#include "kel/frame/KELTrace.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMainWindow>

#include <array>
#include <filesystem>
#include <utility>

namespace {

// Stored in workspace files as they are: the gaps at 1 and 5 included.
constexpr std::array<std::pair<char, const char*>, 7> kTokens = {{
    {'/', "#@2#"},
    {'*', "#@3#"},
    {'?', "#@4#"},
    {'"', "#@6#"},
    {'<', "#@7#"},
    {'>', "#@8#"},
    {'|', "#@9#"},
}};

template <class Visit>
void ForEachContext(Visit visit)
{
    IApplication* app = GetKELapp();
    if (!app)
        return;
    for (long at = app->GetFirstConfigContextPosition(); at >= 0;)
        if (KELConfigContext* context = app->GetNextConfigContext(at))
            visit(*context);
}

bool Exists(const std::string& path) { return QFileInfo::exists(QString::fromStdString(path)); }

} // namespace

IWorkspaceManager::IWorkspaceManager(QMainWindow* frame) : KELWorkspaceStore(frame) {}

IWorkspaceManager::~IWorkspaceManager()
{
    if (GetKELapp() && GetKELapp()->GetWorkspaceManager() == this)
        GetKELapp()->SetWorkspaceManager(nullptr);
}

void IWorkspaceManager::EncodeDocPath(std::string& path)
{
    std::string encoded;
    encoded.reserve(path.size());
    for (char c : path) {
        const auto token = std::find_if(kTokens.begin(), kTokens.end(), [c](const auto& t) { return t.first == c; });
        if (token != kTokens.end())
            encoded += token->second;
        else
            encoded += c;
    }
    path = std::move(encoded);
}

void IWorkspaceManager::DecodeDocPath(std::string& path)
{
    std::string decoded;
    decoded.reserve(path.size());
    for (std::size_t i = 0; i < path.size();) {
        const auto token = std::find_if(kTokens.begin(), kTokens.end(),
                                        [&](const auto& t) { return path.compare(i, 4, t.second) == 0; });
        if (token != kTokens.end()) {
            decoded += token->first;
            i += 4;
        } else {
            decoded += path[i++];
        }
    }
    path = std::move(decoded);
}

bool IWorkspaceManager::GetOpenWorkspaceName(std::string& name) const
{
    name = GetWorkspaceName();
    return !name.empty();
}

bool IWorkspaceManager::OpenWorkspace(const std::string& name, bool)
{
    Snapshot snapshot;
    std::string error;
    if (!Read(name, snapshot, error)) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELWorkspace", this) << "IWorkspaceManager::OpenWorkspace " << name << " : " << error;
        KELPrompt::Message(KELPrompt::Icon::Warning, KELResources::String(4022), KELResources::String(4042));
        return false;
    }
    ForEachContext([&](KELConfigContext& context) { context.LoadWorkspace(name.c_str()); });
    m_preOpen.Execute(name);
    Apply(name, snapshot);
    m_postOpen.Execute();
    return true;
}

void IWorkspaceManager::OnWorkspace(const std::string& name) { OpenWorkspace(name); }

bool IWorkspaceManager::SaveWorkspace(const std::string& name)
{
    if (IApplication* app = GetKELapp())
        app->InsertMessageConsole(KEL_SEVERITY_INFORMATION, KELResources::Format(4067, {name}));
    m_save.Execute();
    std::string error;
    if (!Write(name, error)) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELWorkspace", this) << "IWorkspaceManager::Save " << name << " : " << error;
        return false;
    }
    ForEachContext([&](KELConfigContext& context) { context.SaveWorkspace(name.c_str()); });
    return true;
}

bool IWorkspaceManager::OnWorkspaceSave()
{
    if (GetWorkspaceName().empty())
        return OnWorkspaceSaveAs();
    return SaveWorkspace(GetWorkspaceName());
}

bool IWorkspaceManager::OnWorkspaceSaveAs()
{
    std::string name;
    if (PromptWorkspaceNameFile(name, true) != 1)
        return false;
    return SaveWorkspace(name);
}

void IWorkspaceManager::OnWorkspaceClose()
{
    m_close.Execute();
    Forget();
}

int IWorkspaceManager::PromptWorkspaceNameFile(std::string& name, bool forSaving)
{
    const QString filter = QStringLiteral("%1 (*%2)")
                               .arg(QString::fromStdString(KELResources::String(4068)),
                                    QLatin1String(kSuffix));
    const QString chosen = forSaving ? QFileDialog::getSaveFileName(GetFrame(), QString(), QString(), filter)
                                     : QFileDialog::getOpenFileName(GetFrame(), QString(), QString(), filter);
    if (chosen.isEmpty())
        return 0;
    name = chosen.toStdString();
    return 1;
}

int IWorkspaceManager::OnSaveDoc(QMainWindow*, KELWorkspaceDocument& document)
{
    const std::string title = document.GetTitle();
    if (!document.GetPathName().empty() && Exists(document.GetPathName())) {
        document.SaveTo(document.GetPathName());
        return 1;
    }
    // Beside the workspace; a title can never lead elsewhere: "/" is a token,
    // and control characters become "_".
    const std::string folder = std::filesystem::path(GetFileBeingWritten()).parent_path().string();
    std::string base;
    for (char c : title)
        base += static_cast<unsigned char>(c) < 0x20 || c == 0x7f ? '_' : c;
    const auto under = [&](std::string name) {
        EncodeDocPath(name);
        return (folder.empty() ? std::string(".") : folder) + "/" + name;
    };
    std::string path = under(base + KELResources::String(4040));
    for (int n = 1; Exists(path); ++n)
        path = under(base + KELResources::String(4041) + std::to_string(n));
    document.SaveTo(path);
    document.SetPathName(path);
    document.SetTitle(title);
    return 1;
}
