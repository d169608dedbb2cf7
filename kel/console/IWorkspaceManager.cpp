// SPDX-License-Identifier: BSD-3-Clause
#include "kel/console/IWorkspaceManager.h"
#include "kel/frame/KELString.h"

#include "kel/config/KELConfigContext.h"
#include "kel/config/KELFileWriter.h"
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

#include <sys/stat.h>

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

// Anything at the name, a link that leads nowhere included, takes it.
bool Taken(const std::string& path)
{
    struct stat info {};
    return ::lstat(path.c_str(), &info) == 0;
}

// A document's file name from its title: valid UTF-8 (a byte that is not
// becomes "_", as control characters do) and short enough that the name, its
// number and a writer's temporary still fit in a file name.
std::string FileBaseOf(const std::string& title)
{
    constexpr std::size_t kMaxBase = 160;
    std::string base;
    for (std::size_t i = 0; i < title.size();) {
        const auto lead = static_cast<unsigned char>(title[i]);
        const std::size_t length = lead < 0x80           ? 1
                                   : (lead >> 5) == 0x6  ? 2
                                   : (lead >> 4) == 0xe  ? 3
                                   : (lead >> 3) == 0x1e ? 4
                                                         : 0;
        bool valid = length > 0 && i + length <= title.size();
        for (std::size_t k = 1; valid && k < length; ++k)
            valid = (static_cast<unsigned char>(title[i + k]) & 0xc0) == 0x80;
        std::string piece = valid ? title.substr(i, length) : std::string("_");
        if (piece.size() == 1 && (static_cast<unsigned char>(piece[0]) < 0x20 || piece[0] == 0x7f))
            piece = "_";
        // Escaped, a character can take four bytes.
        std::string escaped = piece;
        IWorkspaceManager::EncodeDocPath(escaped);
        if (base.size() + escaped.size() > kMaxBase)
            break;
        base += escaped;
        i += valid ? length : 1;
    }
    return base.empty() ? std::string("_") : base;
}

std::string Canonical(const std::string& folder)
{
    std::error_code ignored;
    const std::filesystem::path canonical = std::filesystem::weakly_canonical(folder.empty() ? "." : folder, ignored);
    return canonical.empty() ? folder : canonical.string();
}

}  // namespace

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
        KEL_TRACE(KEL_TRACE_PBLM, "KELWorkspace", this)
            << "IWorkspaceManager::OpenWorkspace " << name << " : " << error;
        KELPrompt::Message(KELPrompt::Icon::Warning, KELResources::String(KELString::kWorkspace),
                           KELResources::String(KELString::kWorkspaceNotOpened));
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
    IApplication* app = GetKELapp();
    if (app)
        app->InsertMessageConsole(KEL_SEVERITY_INFORMATION, KELResources::Format(KELString::kSavingWorkspace, {name}));
    m_save.Execute();
    std::string error;
    if (!Write(name, error)) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELWorkspace", this) << "IWorkspaceManager::Save " << name << " : " << error;
        if (app)
            app->InsertMessageConsole(KEL_SEVERITY_PROBLEM,
                                      KELResources::Format(KELString::kWorkspaceNotSaved, {name, error}));
        return false;
    }
    ForEachContext([&](KELConfigContext& context) { context.SaveWorkspace(name.c_str()); });
    if (app)
        app->InsertMessageConsole(KEL_SEVERITY_DONE, KELResources::Format(KELString::kWorkspaceSaved, {name}));
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
    const QString filter =
        QStringLiteral("%1 (*%2)")
            .arg(QString::fromStdString(KELResources::String(KELString::kWorkspaces)), QLatin1String(kSuffix));
    const QString chosen = forSaving ? QFileDialog::getSaveFileName(GetFrame(), QString(), QString(), filter)
                                     : QFileDialog::getOpenFileName(GetFrame(), QString(), QString(), filter);
    if (chosen.isEmpty())
        return 0;
    name = forSaving ? WithWorkspaceSuffix(chosen.toStdString()) : chosen.toStdString();
    return 1;
}

std::string IWorkspaceManager::WithWorkspaceSuffix(const std::string& name)
{
    const std::string suffix = kSuffix;
    const bool has =
        name.size() >= suffix.size() && name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0;
    return has ? name : name + suffix;
}

int IWorkspaceManager::OnSaveDoc(QMainWindow*, KELWorkspaceDocument& document)
{
    const std::string title = document.GetTitle();
    // Beside the workspace, and there only: a title can never lead elsewhere
    // ("/" is a token), and a file kept from an earlier save is kept only
    // when it stands there too.
    const std::string folder = Canonical(std::filesystem::path(GetFileBeingWritten()).parent_path().string());
    std::string path = document.GetPathName();
    const bool kept =
        !path.empty() && Canonical(std::filesystem::path(path).parent_path().string()) == folder
        && std::filesystem::path(path).filename().string().find(KELResources::String(KELString::kDocumentExtension))
               != std::string::npos;
    if (!kept) {
        const std::string base = FileBaseOf(title);
        path = folder + "/" + base + KELResources::String(KELString::kDocumentExtension);
        for (int n = 1; Taken(path); ++n)
            path = folder + "/" + base + KELResources::String(KELString::kDocumentStem) + std::to_string(n);
    }
    // Written beside its name, then put in its place: whatever stands at the
    // name (a link too) is replaced, never written through.
    KELFileWriter writer(path, KELFileWriter::Links::Replace);
    std::string error;
    if (!writer.Open(&error) || !document.SaveTo(writer.GetTemporary()) || !writer.CommitWritten(&error)) {
        DocumentFailed(error.empty() ? "the document wrote nothing to " + writer.GetTemporary() : error);
        return 0;
    }
    document.SetPathName(path);
    document.SetTitle(title);
    return 1;
}
