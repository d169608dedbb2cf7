// SPDX-License-Identifier: BSD-3-Clause
#include "kel/console/KELWorkspaceStore.h"

#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/config/KELFileWriter.h"
#include "kel/console/KELWorkspaceDocument.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELResources.h"
#include "zed/ZedFile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMainWindow>
#include <QMenu>

KELWorkspaceDocument::~KELWorkspaceDocument() = default;

namespace {

// A workspace file is small; anything larger is not one.
constexpr std::size_t kMaxFileSize = std::size_t(16) << 20;
// The section of a context's files that keeps the recent workspaces.
constexpr int kRecentSection = 4068;

std::string RecentKey(int i) { return "Recent " + std::to_string(i); }

}  // namespace

KELWorkspaceStore::KELWorkspaceStore(QMainWindow* frame) : m_pFrame(frame) {}

KELWorkspaceStore::~KELWorkspaceStore() = default;

bool KELWorkspaceStore::Read(const std::string& file, Snapshot& snapshot, std::string& error)
{
    std::string content;
    if (!ZedReadRegularFile(file, kMaxFileSize, content, error))
        return false;
    QJsonParseError parse{};
    const QJsonDocument json = QJsonDocument::fromJson(QByteArray::fromStdString(content), &parse);
    if (parse.error != QJsonParseError::NoError || !json.isObject()) {
        error = "not a workspace file: " + parse.errorString().toStdString();
        return false;
    }
    const QJsonObject root = json.object();
    const QString format = root.value(QStringLiteral("format")).toString();
    if (format != QLatin1String(kFormat)) {
        error = format.startsWith(QStringLiteral("kel-workspace "))
                    ? "written by a newer version (" + format.toStdString() + ")"
                    : std::string("not a workspace file: no \"format\"");
        return false;
    }
    Snapshot read;
    read.geometry = QByteArray::fromBase64(root.value(QStringLiteral("geometry")).toString().toLatin1());
    read.state = QByteArray::fromBase64(root.value(QStringLiteral("state")).toString().toLatin1());
    for (const QJsonValue& value : root.value(QStringLiteral("documents")).toArray()) {
        const QJsonObject document = value.toObject();
        DocumentEntry entry{document.value(QStringLiteral("kind")).toString().toStdString(),
                            document.value(QStringLiteral("title")).toString().toStdString(),
                            document.value(QStringLiteral("path")).toString().toStdString()};
        if (entry.kind.empty() || entry.path.empty()) {
            error = "a document without kind or file";
            return false;
        }
        read.documents.push_back(std::move(entry));
    }
    snapshot = std::move(read);
    return true;
}

bool KELWorkspaceStore::Write(const std::string& file, std::string& error)
{
    m_writing = file;
    QJsonArray documents;
    if (m_handler.list)
        for (KELWorkspaceDocument* document : m_handler.list()) {
            if (!document)
                continue;
            m_documentError.clear();
            if (!OnSaveDoc(m_pFrame, *document)) {
                error = "the document \"" + document->GetTitle() + "\" could not be saved: " + m_documentError;
                m_writing.clear();
                return false;
            }
            documents.push_back(QJsonObject{{QStringLiteral("kind"), QString::fromStdString(document->GetKind())},
                                            {QStringLiteral("title"), QString::fromStdString(document->GetTitle())},
                                            {QStringLiteral("path"), QString::fromStdString(document->GetPathName())}});
        }
    QJsonObject root{{QStringLiteral("format"), QLatin1String(kFormat)}, {QStringLiteral("documents"), documents}};
    if (m_pFrame) {
        root.insert(QStringLiteral("geometry"), QString::fromLatin1(m_pFrame->saveGeometry().toBase64()));
        root.insert(QStringLiteral("state"), QString::fromLatin1(m_pFrame->saveState().toBase64()));
    }
    m_writing.clear();
    if (!KELWriteFileAtomically(file, QJsonDocument(root).toJson().toStdString(), &error))
        return false;
    Remember(file);
    return true;
}

void KELWorkspaceStore::Apply(const std::string& name, const Snapshot& snapshot)
{
    if (m_handler.closeAll)
        m_handler.closeAll();
    if (m_pFrame) {
        if (!snapshot.geometry.isEmpty())
            m_pFrame->restoreGeometry(snapshot.geometry);
        if (!snapshot.state.isEmpty())
            m_pFrame->restoreState(snapshot.state);
    }
    if (m_handler.open)
        for (const DocumentEntry& document : snapshot.documents)
            m_handler.open(document);
    Remember(name);
}

void KELWorkspaceStore::Forget()
{
    if (m_handler.closeAll)
        m_handler.closeAll();
    m_name.clear();
}

void KELWorkspaceStore::Remember(const std::string& name)
{
    m_name = name;
    std::erase(m_recent, name);
    m_recent.insert(m_recent.begin(), name);
    if (m_recent.size() > static_cast<std::size_t>(kMaxRecent))
        m_recent.resize(kMaxRecent);
    FillRecentMenu();
}

void KELWorkspaceStore::SetRecent(std::vector<std::string> recent)
{
    m_recent = std::move(recent);
    if (m_recent.size() > static_cast<std::size_t>(kMaxRecent))
        m_recent.resize(kMaxRecent);
    FillRecentMenu();
}

void KELWorkspaceStore::ReadRecent(KELConfigContext* context)
{
    if (!context || !GetKELapp())
        return;
    std::vector<std::string> recent;
    for (int i = 1; i <= kMaxRecent; ++i) {
        std::string name;
        if (GetKELapp()->GetConfigString(context, KELResources::String(kRecentSection), RecentKey(i), name, "", 1) == 1
            && !name.empty())
            recent.push_back(name);
    }
    SetRecent(std::move(recent));
}

void KELWorkspaceStore::KeepRecent(KELConfigContext* context) const
{
    IConfiguration* user = context ? context->GetUserConfigFile() : nullptr;
    if (!user)
        return;
    for (int i = 1; i <= kMaxRecent; ++i)
        user->SetString(
            KELResources::String(kRecentSection), RecentKey(i),
            i <= static_cast<int>(m_recent.size()) ? m_recent[static_cast<std::size_t>(i - 1)] : std::string(), 1);
    user->Save();
}

QMenu* KELWorkspaceStore::GetRecentMenu()
{
    if (!m_pRecentMenu) {
        m_pRecentMenu = new QMenu(m_pFrame);
        FillRecentMenu();
    }
    return m_pRecentMenu;
}

void KELWorkspaceStore::FillRecentMenu()
{
    if (!m_pRecentMenu)
        return;
    m_pRecentMenu->clear();
    int number = 1;
    for (const std::string& name : m_recent) {
        QAction* action =
            m_pRecentMenu->addAction(QStringLiteral("&%1 %2").arg(number++).arg(QString::fromStdString(name)));
        connect(action, &QAction::triggered, this, [this, name] { OnWorkspace(name); });
    }
    m_pRecentMenu->setEnabled(!m_recent.empty());
}
