// SPDX-License-Identifier: BSD-3-Clause
#include "KelBrowserWindow.h"

#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/console/IConsole.h"
#include "kel/console/IEntityTree.h"
#include "kel/console/IOutputWnd.h"
#include "kel/console/IWorkspaceManager.h"
#include "kel/fields/KELEnumerationCodes.h"
#include "kel/forms/IInputForm.h"
#include "kel/forms/KELCallStatus.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELPrompt.h"
#include "kel/frame/KELResources.h"
#include "kel/frame/KELString.h"
#include "kel/output/KELEventLists.h"
#include "zed/call/TCallLoop.h"
#include "zed/call/ZedInstances.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileInfo>
#include <QInputDialog>
#include <QMenuBar>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>
#include <QUndoStack>

namespace {

constexpr const char* kWindowTitle = "KEL browser";
// The centre's first sizes: documents above outputs; the tree's width.
constexpr int kDocumentsHeight = 420;
constexpr int kOutputsHeight = 220;
constexpr int kTreeWidth = 200;
// The console has room for about eight messages under its column titles.
constexpr int kConsoleRows = 11;

}  // namespace

KelBrowserWindow::KelBrowserWindow(const TDictionary& dictionary, KELConfigContext* context, EntityLister lister)
    : m_dictionary(dictionary), m_context(context),
      m_lister(lister ? std::move(lister) : [&dictionary] { return ListEntities(dictionary); })
{
    setWindowTitle(QString::fromLatin1(kWindowTitle) + QStringLiteral("[*]"));
    // The console first: the other parts speak to it.
    m_console = new IConsole(this);
    m_console->AddTabWnd(KELResources::String(KELString::kOutput), 0);
    m_console->Create(this);
    BuildToolBar();
    BuildCentre();
    BuildDocks();
    BuildWorkspace();
    BuildMenus();
    Connect();
    m_picks->ChooseEntity();
    WorkspaceChanged(false);
    ShowBusy();
}

KelBrowserWindow::~KelBrowserWindow()
{
    if (GetKELapp() && GetKELapp()->GetConsole() == m_console)
        GetKELapp()->SetConsole(nullptr);
    // The documents' forms go while the workspace manager still knows them.
    delete m_documents;
    m_documents = nullptr;
    if (GetKELapp() && GetKELapp()->GetWorkspaceManager() == m_workspace.get())
        GetKELapp()->SetWorkspaceManager(nullptr);
}

std::vector<std::string> KelBrowserWindow::ListEntities(const TDictionary& dictionary)
{
    return ZedListInstances(dictionary);
}

std::vector<std::string> KelBrowserWindow::ListByClass(const TDictionary& dictionary,
                                                       const std::vector<std::string>& tops)
{
    return ZedListByClass(dictionary, tops);
}

void KelBrowserWindow::BuildToolBar()
{
    auto* bar = addToolBar(QStringLiteral("Entity"));
    bar->setObjectName(QStringLiteral("Entity"));
    bar->setMovable(false);
    m_picks = new KELEntityPicks(m_dictionary, m_lister, m_console);
    bar->addWidget(m_picks);
    bar->addSeparator();
    m_defaults = new QPushButton(QStringLiteral("&Defaults"));
    m_send = new QPushButton(QStringLiteral("&Send"));
    m_send->setToolTip(QStringLiteral("Send the form shown (Enter in the form)"));
    m_attributes = new QPushButton(QStringLiteral("A&ttributes"));
    m_refresh = new QPushButton(QStringLiteral("&Refresh"));
    m_apply = new QPushButton(QStringLiteral("&Apply"));
    bar->addWidget(m_defaults);
    bar->addWidget(m_send);
    bar->addSeparator();
    for (QPushButton* button : {m_attributes, m_refresh, m_apply})
        bar->addWidget(button);
}

void KelBrowserWindow::BuildCentre()
{
    auto* split = new QSplitter(Qt::Vertical);
    m_documents = new KELDocumentArea(m_dictionary, m_context, m_console);
    m_outputs = new KELOutputPanel(m_dictionary, m_context);
    split->addWidget(m_documents);
    split->addWidget(m_outputs);
    split->setStretchFactor(0, 3);
    split->setStretchFactor(1, 2);
    split->setSizes({kDocumentsHeight, kOutputsHeight});
    setCentralWidget(split);
    m_status = new KELCallStatus;
    statusBar()->addWidget(m_status, 1);
}

void KelBrowserWindow::BuildDocks()
{
    m_tree = new IEntityTree(m_dictionary);
    auto* treeDock = new QDockWidget(QStringLiteral("Network"), this);
    treeDock->setObjectName(QStringLiteral("Network"));
    treeDock->setWidget(m_tree);
    addDockWidget(Qt::LeftDockWidgetArea, treeDock);
    resizeDocks({treeDock}, {kTreeWidth}, Qt::Horizontal);
    addDockWidget(Qt::BottomDockWidgetArea, m_console);
    const int row = std::max(QFontMetrics(font()).height(), 16) + 4;
    resizeDocks({m_console}, {row * kConsoleRows}, Qt::Vertical);
}

void KelBrowserWindow::BuildWorkspace()
{
    m_workspace = std::make_unique<IWorkspaceManager>(this);
    m_documents->Attach(*m_workspace);
    if (GetKELapp())
        GetKELapp()->SetWorkspaceManager(m_workspace.get());
    m_workspace->ReadRecent(m_context);
}

void KelBrowserWindow::Connect()
{
    connect(m_tree, &QTreeWidget::currentItemChanged, this, [this] { TreeSelectionChanged(); });
    m_tree->OnAttributes([this](const TEntitySpec& entity) { OpenAttributes(entity.ToString(&m_dictionary)); });
    m_tree->OnDirective([this](const TEntitySpec& entity, const std::string& directive) {
        OpenForm(entity.ToString(&m_dictionary), directive);
    });
    connect(m_picks, &KELEntityPicks::Picked, this,
            [this](const std::string& entity, const std::string& directive) { OpenForm(entity, directive); });
    connect(m_documents, &KELDocumentArea::ShownChanged, this, [this] { DocumentShown(); });
    connect(m_documents, &KELDocumentArea::Changed, this, [this] { WorkspaceChanged(true); });
    connect(m_documents, &KELDocumentArea::BusyChanged, this, [this] { ShowBusy(); });
    connect(m_documents, &KELDocumentArea::Answered, this, [this](const auto& answer) { Answered(answer); });
    connect(m_documents, &KELDocumentArea::EntityChanged, this, [this](const TEntitySpec& entity) {
        m_tree->EntityChanged(entity);
        m_picks->Refill();
    });
    connect(m_documents, &KELDocumentArea::WorkspaceOpened, this, [this] {
        WorkspaceChanged(false);
        SaveSettings();
    });
    connect(m_defaults, &QPushButton::clicked, this, [this] {
        if (IInputForm* form = GetForm())
            form->FillWithDefaults();
    });
    connect(m_send, &QPushButton::clicked, this, [this] { Send(); });
    connect(m_attributes, &QPushButton::clicked, this, [this] { OpenAttributes(m_picks->GetEntity()); });
    connect(m_refresh, &QPushButton::clicked, this, [this] { Refresh(); });
    connect(m_apply, &QPushButton::clicked, this, [this] { Apply(); });
    connect(m_status, &KELCallStatus::CancelClicked, this, [this] { CancelCall(); });
    auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(escape, &QShortcut::activated, this, [this] { CancelCall(); });
}

bool KelBrowserWindow::OpenForm(const std::string& entity, const std::string& directive)
{
    return m_documents->OpenInputForm(entity, directive);
}

bool KelBrowserWindow::OpenAttributes(const std::string& entity) { return m_documents->OpenAttributes(entity); }

std::string KelBrowserWindow::GetRequestText() const
{
    const KELHostDocument* document = m_documents->Shown();
    return document ? document->Calls().GetRequestText() : std::string();
}

QTabWidget* KelBrowserWindow::GetEventLists() const { return m_outputs->GetEvents()->GetTabs(); }

// The outputs and the picks follow the document shown.
void KelBrowserWindow::DocumentShown()
{
    ShowBusy();
    const KELHostDocument* document = m_documents->Shown();
    if (document && document->Calls().GetLastAnswer().call)
        Answered(document->Calls().GetLastAnswer());
    else
        m_outputs->Clear();
    if (!document)
        return;
    const IInputForm* form = GetForm();
    m_picks->Follow(document->GetContents().entity, form ? form->GetName() : std::string());
}

void KelBrowserWindow::Answered(const KELCallControl::Answer& answer)
{
    m_outputs->Show(*answer.call, answer.directive, answer.name);
}

// The entity picked follows the instance chosen in the tree; nothing opens until a directive is.
void KelBrowserWindow::TreeSelectionChanged()
{
    TEntitySpec entity;
    if (!m_tree->GetSelectedEntity(entity))
        return;
    if (const std::string text = entity.ToString(&m_dictionary); text != m_picks->GetEntity())
        m_picks->Follow(text, {});
}

// Send, Refresh and Apply wait while the document shown waits for an answer.
void KelBrowserWindow::ShowBusy()
{
    const KELHostDocument* document = m_documents->Shown();
    const bool busy = document && document->Calls().IsBusy();
    m_status->Show(document ? &document->Calls() : nullptr);
    m_send->setEnabled(!busy && GetForm());
    m_refresh->setEnabled(!busy && GetAttributes());
    m_apply->setEnabled(!busy && GetAttributes());
}

bool KelBrowserWindow::IsBusy() const { return ZEDGetCallLoop().GetPendingCount() > 0; }

bool KelBrowserWindow::WaitForCalls(std::chrono::milliseconds most)
{
    const bool done = ZEDGetCallLoop().RunUntilIdle(most);
    QApplication::processEvents();
    return done;
}

void KelBrowserWindow::WorkspaceChanged(bool changed)
{
    const std::string name = m_workspace ? m_workspace->GetWorkspaceName() : std::string();
    const QString title = name.empty() ? QString::fromLatin1(kWindowTitle) + QStringLiteral("[*]")
                                       : QFileInfo(QString::fromStdString(name)).fileName() + QStringLiteral("[*] - ")
                                             + QString::fromLatin1(kWindowTitle);
    setWindowTitle(title);
    // Only an open workspace has changes to lose.
    setWindowModified(changed && !name.empty());
}

void KelBrowserWindow::SaveSettings() { m_workspace->KeepRecent(m_context); }

void KelBrowserWindow::closeEvent(QCloseEvent* event)
{
    if (isWindowModified()) {
        const KELPrompt::Answer answer = KELPrompt::Question(
            KELResources::String(KELString::kWorkspace),
            "Save the changes to the workspace " + m_workspace->GetWorkspaceName() + " before quitting?", true);
        if (answer == KELPrompt::Answer::Cancel
            || (answer == KELPrompt::Answer::Yes && !m_workspace->OnWorkspaceSave())) {
            event->ignore();
            return;
        }
    }
    SaveSettings();
    event->accept();
}

void KelBrowserWindow::BuildMenus()
{
    BuildWorkspaceMenu();
    BuildViewMenu();
    BuildEditMenu();
    // F1 has this one binding: the help of the field that has the focus.
    QMenu* help = menuBar()->addMenu(QString::fromStdString("&" + KELResources::String(KELString::kHelp)));
    help->addAction(QStringLiteral("&Help on the focused field"), QKeySequence::HelpContents, this,
                    [this] { ShowHelp(); });
}

void KelBrowserWindow::SetMibLoader(MibLoader loader)
{
    const bool first = !m_mibLoader;
    m_mibLoader = std::move(loader);
    if (!first || menuBar()->actions().isEmpty())
        return;
    QMenu* menu = menuBar()->actions().front()->menu();
    auto* load = new QAction(QStringLiteral("Load &MIB Module..."), menu);
    // Before Quit, which ends the menu.
    menu->insertAction(menu->actions().isEmpty() ? nullptr : menu->actions().back(), load);
    connect(load, &QAction::triggered, this, [this] {
        bool given = false;
        const QString module =
            QInputDialog::getText(this, QStringLiteral("Load MIB Module"),
                                  QStringLiteral("A MIB module's name (IF-MIB), or the path of its file:"),
                                  QLineEdit::Normal, QString(), &given);
        if (given && !module.trimmed().isEmpty())
            LoadMibModule(module.trimmed().toStdString());
    });
}

void KelBrowserWindow::BuildWorkspaceMenu()
{
    QMenu* menu = menuBar()->addMenu(QString::fromStdString("&" + KELResources::String(KELString::kWorkspace)));
    menu->addAction(QStringLiteral("&Open..."), QKeySequence::Open, this, [this] {
        std::string name;
        if (m_workspace->PromptWorkspaceNameFile(name, false) == 1)
            m_workspace->OpenWorkspace(name);
    });
    const auto saved = [this](bool done) {
        if (done) {
            WorkspaceChanged(false);
            SaveSettings();
        }
    };
    menu->addAction(QStringLiteral("&Save"), QKeySequence::Save, this,
                    [this, saved] { saved(m_workspace->OnWorkspaceSave()); });
    menu->addAction(QStringLiteral("Save &As..."), QKeySequence::SaveAs, this,
                    [this, saved] { saved(m_workspace->OnWorkspaceSaveAs()); });
    menu->addAction(QStringLiteral("&Close"), this, [this] {
        m_workspace->OnWorkspaceClose();
        m_documents->SetQuiet(false);
        WorkspaceChanged(false);
    });
    QMenu* recent = m_workspace->GetRecentMenu();
    recent->setTitle(QStringLiteral("&Recent"));
    menu->addMenu(recent);
    menu->addSeparator();
    menu->addAction(QStringLiteral("Close &Document"), QKeySequence::Close, this,
                    [this] { m_documents->Close(m_documents->currentIndex()); });
    menu->addAction(QStringLiteral("&Quit"), QKeySequence::Quit, this, [this] { close(); });
}

// How outputs show values: an enumeration's number beside its name, as the
// operator chooses; kept in the context's user file.
void KelBrowserWindow::BuildViewMenu()
{
    QMenu* view = menuBar()->addMenu(QStringLiteral("&View"));
    QAction* codes = view->addAction(QStringLiteral("Enumeration &Numbers in Outputs"));
    codes->setCheckable(true);
    std::string kept;
    if (GetKELapp())
        GetKELapp()->GetConfigString(m_context, "Outputs", "ShowCodes", kept, "FALSE", 1);
    codes->setChecked(kept == "TRUE");
    KELEnumerationCodes::Show(codes->isChecked());
    connect(codes, &QAction::toggled, this, [this](bool shown) {
        KELEnumerationCodes::Show(shown);
        if (IConfiguration* user = m_context ? m_context->GetUserConfigFile() : nullptr)
            user->SetString("Outputs", "ShowCodes", shown ? "TRUE" : "FALSE", 1);
        DocumentShown();
    });
}

// Undo and redo of the shown form's edits. The form itself takes Ctrl+Z and
// Ctrl+Shift+Z; the menu only shows them, so that no key has two owners.
void KelBrowserWindow::BuildEditMenu()
{
    QMenu* edit = menuBar()->addMenu(QStringLiteral("&Edit"));
    const auto step = [this](bool back) {
        if (IPresentationForm* form = m_documents->ShownForm())
            back ? form->GetUndoStack()->undo() : form->GetUndoStack()->redo();
    };
    QAction* undo = edit->addAction(QStringLiteral("&Undo"), this, [step] { step(true); });
    QAction* redo = edit->addAction(QStringLiteral("&Redo"), this, [step] { step(false); });
    for (auto [action, key] : {std::pair{undo, QKeySequence::Undo}, std::pair{redo, QKeySequence::Redo}}) {
        action->setShortcut(key);
        action->setShortcutContext(Qt::WidgetShortcut);
    }
    connect(edit, &QMenu::aboutToShow, this, [this, undo, redo] {
        const IPresentationForm* form = m_documents->ShownForm();
        undo->setEnabled(form && form->CanUndo());
        redo->setEnabled(form && form->CanRedo());
    });
}

void KelBrowserWindow::ShowHelp()
{
    if (GetKELapp())
        GetKELapp()->DisplayHelpFor(QApplication::focusWidget());
}

void KelBrowserWindow::SetMessage(KEL_T_Severity severity, const std::string& text)
{
    m_console->SetMessage(severity, text);
}

std::string KelBrowserWindow::GetMessages() const
{
    const IOutputWnd* output = m_console->GetTabWnd(0);
    return output ? output->GetMessagesText() : std::string();
}
