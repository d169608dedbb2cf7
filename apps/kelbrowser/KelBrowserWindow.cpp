// SPDX-License-Identifier: BSD-3-Clause
#include "KelBrowserWindow.h"
#include "zed/dict/ZedDirectiveNames.h"
#include "kel/frame/KELString.h"
#include "kel/frame/KELCallPump.h"

#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/console/IConsole.h"
#include "kel/console/IEntityTree.h"
#include "kel/console/IOutputWnd.h"
#include "kel/console/IWorkspaceManager.h"
#include "kel/console/KELWorkspaceDocument.h"
#include "kel/forms/IInputForm.h"
#include "kel/forms/IInputOutputForm.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELPrompt.h"
#include "kel/frame/KELResources.h"
#include "kel/output/IListViewOutput.h"
#include "kel/output/IOutputForm.h"
#include "kel/output/IOutputList.h"
#include "kel/output/KELEventLists.h"
#include "kel/output/KELOutputKinds.h"
#include "kel/fields/KELEnumerationCodes.h"
#include <QUndoStack>
#include "kel/forms/KELIdlePass.h"
#include "kel/output/KELCallReply.h"
#include "kel/output/KELListModel.h"
#include "zed/TApplication.h"
#include "zed/TException.h"
#include "zed/ZedFile.h"
#include "zed/call/TCall.h"
#include "zed/call/TCallLoop.h"
#include "zed/call/TReplyText.h"
#include "zed/value/TEnumeration.h"
#include "zed/value/TEventReport.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDockWidget>
#include <QFileInfo>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QLabel>
#include <QTimer>
#include <QLineEdit>
#include <QLocale>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QStatusBar>
#include <QSplitter>
#include <QStyle>
#include <QTabBar>
#include <QTabWidget>
#include <QToolBar>

#include <fstream>
#include <functional>
#include <sstream>

namespace {

const char* const kSeverity[] = {"done", "problem", "information"};
constexpr const char* kWindowTitle = "KEL browser";
// Lines the Text output keeps unless the settings say otherwise ("Text", "MostLines").
constexpr int kDefaultMostTextLines = 10000;
// How often the line of refused and lost notifications is brought up to date.
constexpr int kSummaryInterval = 1000;
// Where the browser keeps the recent workspaces in its user file (string 4068).
constexpr int kRecentSection = 4068;

bool IsSend(const QKeyEvent& key)
{
    return (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter)
           && (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

}  // namespace

// A document in the middle as the workspace keeps it: its file holds its
// kind's key (entity, then directive for an input form), so that reopening
// the workspace opens the same form. It also keeps the last call made from it,
// which the outputs show while it is the document shown.
class MiddleDocument : public KELWorkspaceDocument {
public:
    MiddleDocument(std::string kind, std::string entity, std::string directive)
        : m_kind(std::move(kind)), m_entity(std::move(entity)), m_directive(std::move(directive))
    {
    }
    std::string GetKind() const override { return m_kind; }
    std::string GetTitle() const override { return m_title.empty() ? m_entity + " " + m_directive : m_title; }
    void SetTitle(const std::string& title) override { m_title = title; }
    std::string GetPathName() const override { return m_path; }
    void SetPathName(const std::string& path) override { m_path = path; }
    bool SaveTo(const std::string& path) override
    {
        std::ofstream out(path);
        out << m_entity << "\n" << m_directive << "\n";
        out.close();
        return static_cast<bool>(out);
    }

    struct LastCall {
        std::shared_ptr<const TCall> call;
        unsigned int directive = 0;
        std::string name;
    };
    const LastCall& GetLastCall() const { return m_last; }
    void SetLastCall(const TCall& call, unsigned int directive, const std::string& name)
    {
        m_last = {std::make_shared<const TCall>(static_cast<const TCall&>(call)), directive, name};
    }

    // The call the document waits for; closing the document cancels it.
    void SetPending(std::unique_ptr<TAsyncCall> call, std::string waitingFor)
    {
        m_pending = std::move(call);
        m_waitingFor = std::move(waitingFor);
    }
    bool IsBusy() const { return m_pending != nullptr; }
    const std::string& GetWaitingFor() const { return m_waitingFor; }
    // Answered: the call is kept until the next, for its completion is still running.
    void Finish() { m_finished = std::move(m_pending); }
    void CancelPending() { m_pending.reset(); }

private:
    std::string m_kind, m_entity, m_directive, m_title, m_path;
    LastCall m_last;
    std::unique_ptr<TAsyncCall> m_pending;
    std::unique_ptr<TAsyncCall> m_finished;
    std::string m_waitingFor;
};

KelBrowserWindow::KelBrowserWindow(const TDictionary& dictionary, KELConfigContext* context, EntityLister lister)
    : m_dictionary(dictionary), m_context(context), m_lister(std::move(lister))
{
    setWindowTitle(QString::fromLatin1(kWindowTitle) + QStringLiteral("[*]"));
    auto* bar = addToolBar(QStringLiteral("Entity"));
    bar->setObjectName(QStringLiteral("Entity"));
    bar->setMovable(false);
    auto* entityLabel = new QLabel(QStringLiteral(" &Entity "));
    bar->addWidget(entityLabel);
    m_entities = new QComboBox;
    m_entities->setMinimumContentsLength(36);
    // An entity that does not exist yet (one to Create) is typed here.
    m_entities->setEditable(true);
    m_entities->setInsertPolicy(QComboBox::NoInsert);
    m_entities->setAccessibleName(QStringLiteral("Entity"));
    entityLabel->setBuddy(m_entities);
    bar->addWidget(m_entities);
    auto* directiveLabel = new QLabel(QStringLiteral("  D&irective "));
    bar->addWidget(directiveLabel);
    m_directives = new QComboBox;
    m_directives->setMinimumContentsLength(12);
    m_directives->setAccessibleName(QStringLiteral("Directive"));
    directiveLabel->setBuddy(m_directives);
    bar->addWidget(m_directives);
    bar->addSeparator();
    auto* defaults = new QPushButton(QStringLiteral("&Defaults"));
    m_send = new QPushButton(QStringLiteral("&Send"));
    m_send->setToolTip(QStringLiteral("Send the form shown (Enter in the form)"));
    bar->addWidget(defaults);
    bar->addWidget(m_send);
    bar->addSeparator();
    auto* attributes = new QPushButton(QStringLiteral("A&ttributes"));
    m_refresh = new QPushButton(QStringLiteral("&Refresh"));
    m_apply = new QPushButton(QStringLiteral("&Apply"));
    bar->addWidget(attributes);
    bar->addWidget(m_refresh);
    bar->addWidget(m_apply);

    m_split = new QSplitter(Qt::Vertical);
    m_reply = new QPlainTextEdit;
    m_reply->setReadOnly(true);
    m_reply->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_reply->setPlaceholderText(QStringLiteral("The reply shows here once the request is sent."));
    m_reply->setAccessibleName(QStringLiteral("Reply"));
    m_outputs = new QTabWidget;
    m_outputs->setDocumentMode(true);
    m_outputs->addTab(new QWidget, QStringLiteral("Reply"));
    m_outputs->addTab(new QWidget, QStringLiteral("List"));
    m_outputs->addTab(m_reply, QStringLiteral("Text"));
    m_events = new KELEventLists(dictionary, context);
    m_outputs->addTab(m_events, QStringLiteral("Events"));
    // A flood of events must not grow the window without end: the lists and
    // the text keep their newest, as many as the settings say.
    int mostRows = static_cast<int>(KELEventLists::kDefaultMostRows);
    int mostLines = kDefaultMostTextLines;
    if (context) {
        context->GetConfigInt("Events", "MostRows", mostRows, mostRows, 1);
        context->GetConfigInt("Text", "MostLines", mostLines, mostLines, 1);
    }
    m_events->SetMostRows(static_cast<std::size_t>(std::max(1, mostRows)));
    m_reply->setMaximumBlockCount(std::max(1, mostLines));
    m_documents = new QTabWidget;
    m_documents->setDocumentMode(true);
    m_documents->setTabsClosable(true);
    m_documents->setMovable(true);
    m_documents->setAccessibleName(QStringLiteral("Documents"));
    connect(m_documents, &QTabWidget::currentChanged, this, [this] { DocumentChosen(); });
    connect(m_documents, &QTabWidget::tabCloseRequested, this, [this](int index) { CloseDocument(index); });
    connect(m_documents->tabBar(), &QTabBar::tabMoved, this, [this] { WorkspaceChanged(true); });
    m_split->addWidget(m_documents);
    m_split->addWidget(m_outputs);
    m_split->setStretchFactor(0, 3);
    m_split->setStretchFactor(1, 2);
    m_split->setSizes({420, 220});
    setCentralWidget(m_split);

    m_tree = new IEntityTree(dictionary);
    m_tree->OnAttributes([this](const TEntitySpec& entity) { OpenAttributes(entity.ToString(&m_dictionary)); });
    m_tree->OnDirective([this](const TEntitySpec& entity, const std::string& directive) {
        OpenForm(entity.ToString(&m_dictionary), directive);
    });
    connect(m_tree, &QTreeWidget::currentItemChanged, this, [this] { TreeSelectionChanged(); });
    auto* treeDock = new QDockWidget(QStringLiteral("Network"), this);
    treeDock->setObjectName(QStringLiteral("Network"));
    treeDock->setWidget(m_tree);
    addDockWidget(Qt::LeftDockWidgetArea, treeDock);
    resizeDocks({treeDock}, {200}, Qt::Horizontal);

    m_console = new IConsole(this);
    m_console->AddTabWnd(KELResources::String(KELString::kOutput), 0);
    m_console->Create(this);
    addDockWidget(Qt::BottomDockWidgetArea, m_console);
    // Room for about eight messages under the column titles and above the tabs.
    const int row = std::max(QFontMetrics(font()).height(), 16) + 4;
    resizeDocks({m_console}, {row * 11}, Qt::Vertical);

    // While the document shown waits for an answer: what for, a busy
    // indicator, and a way to give up (Cancel or Escape).
    m_waiting = new QLabel;
    m_busy = new QProgressBar;
    m_busy->setRange(0, 0);
    m_busy->setMaximumWidth(120);
    m_busy->setAccessibleName(QStringLiteral("Waiting for an answer"));
    m_cancel = new QPushButton(QStringLiteral("Cancel"));
    m_cancel->setToolTip(QStringLiteral("Give up waiting for the answer (Escape)"));
    statusBar()->addWidget(m_waiting, 1);
    statusBar()->addPermanentWidget(m_busy);
    statusBar()->addPermanentWidget(m_cancel);
    connect(m_cancel, &QPushButton::clicked, this, [this] { CancelCall(); });
    auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(escape, &QShortcut::activated, this, [this] { CancelCall(); });

    m_workspace = std::make_unique<IWorkspaceManager>(this);
    m_workspace->SetDocumentHandler(
        {[this] {
             // In the order of the tabs, so that they open again in that order.
             std::vector<KELWorkspaceDocument*> open;
             for (int i = 0; i < m_documents->count(); ++i)
                 if (const auto page = m_pages.find(m_documents->widget(i)); page != m_pages.end())
                     open.push_back(page->second.get());
             return open;
         },
         [this](const KELWorkspaceStore::DocumentEntry& entry) { return OpenDocument(entry.kind, entry.path); },
         [this] { CloseAllDocuments(); }});
    // The workspace's callbacks are plain functions: they reach this window
    // through the one pointer they share.
    s_workspaceWindow = this;
    m_workspace->SetPreOpenCallback(&KelBrowserWindow::WorkspaceOpening);
    m_workspace->SetPostOpenCallback(&KelBrowserWindow::WorkspaceOpened);
    m_workspace->SetCloseCallback(&KelBrowserWindow::WorkspaceClosing);
    if (GetKELapp())
        GetKELapp()->SetWorkspaceManager(m_workspace.get());
    ReadRecentWorkspaces();
    int seconds = 30;
    if (m_context && GetKELapp())
        GetKELapp()->GetConfigInt(m_context, "Calls", "Timeout", seconds, 30, 1);
    m_timeout = std::chrono::seconds(std::clamp(seconds, 1, 3600));
    BuildMenus();

    FillEntities();
    connect(m_entities, &QComboBox::currentIndexChanged, this, [this] { EntityChosen(); });
    connect(m_entities->lineEdit(), &QLineEdit::returnPressed, this, [this] { EntityTyped(); });
    connect(m_directives, &QComboBox::activated, this, [this] { DirectiveChosen(); });
    connect(defaults, &QPushButton::clicked, this, [this] {
        if (m_form)
            m_form->FillWithDefaults();
    });
    connect(m_send, &QPushButton::clicked, this, [this] { Send(); });
    connect(attributes, &QPushButton::clicked, this,
            [this] { OpenAttributes(m_entities->currentText().toStdString()); });
    connect(m_refresh, &QPushButton::clicked, this, [this] { Refresh(); });
    connect(m_apply, &QPushButton::clicked, this, [this] { Apply(); });
    // Event reports may come at any time (an agent's notification): each
    // turn of the call loop brings in what arrived.
    if (GetKELapp() && GetKELapp()->GetCallPump())
        connect(GetKELapp()->GetCallPump(), &KELCallPump::Turned, this, [this] { TakeEvents(); });
    EntityChosen();
    WorkspaceChanged(false);
    ShowBusy();
}

KelBrowserWindow* KelBrowserWindow::s_workspaceWindow = nullptr;

void KelBrowserWindow::WorkspaceOpening(std::string)
{
    if (s_workspaceWindow)
        s_workspaceWindow->m_opening = true;
}

void KelBrowserWindow::WorkspaceOpened()
{
    if (!s_workspaceWindow)
        return;
    s_workspaceWindow->m_opening = false;
    s_workspaceWindow->WorkspaceChanged(false);
    s_workspaceWindow->SaveSettings();
}

void KelBrowserWindow::WorkspaceClosing()
{
    if (s_workspaceWindow)
        s_workspaceWindow->m_opening = true;
}

KelBrowserWindow::~KelBrowserWindow()
{
    if (s_workspaceWindow == this)
        s_workspaceWindow = nullptr;
    if (GetKELapp() && GetKELapp()->GetConsole() == m_console)
        GetKELapp()->SetConsole(nullptr);
    // The documents' forms go while the workspace manager still knows them.
    const QSignalBlocker quiet(m_documents);
    m_opening = true;
    CloseAllDocuments();
    if (GetKELapp() && GetKELapp()->GetWorkspaceManager() == m_workspace.get())
        GetKELapp()->SetWorkspaceManager(nullptr);
}

std::vector<std::string> KelBrowserWindow::ListEntities(const TDictionary& dictionary)
{
    std::vector<std::string> found;
    // Below each instance found, the instances of each child class.
    std::function<void(const TEntitySpec&, const TDictClass&)> walk = [&](const TEntitySpec& above,
                                                                          const TDictClass& cls) {
        const TDictDirective* show = cls.FindDirective(std::string(ZedDirective::kShow));
        if (!show)
            return;
        TEntitySpec wildcard = above;
        wildcard.AddClassWildcard(cls.GetCode());
        TSyncCall call(wildcard, show->GetID());
        try {
            call.Execute();
        } catch (const TException&) {
            return;
        }
        // Several instances: the wildcard itself is an entity one can ask.
        if (call.GetReplyCount() > 1)
            found.push_back(wildcard.ToString(&dictionary));
        for (std::size_t i = 0; call.SelectReply(i); ++i) {
            if (call.GetStatus() != ZED_STATUS_RESPONSE)
                continue;
            const TEntitySpec entity = call.GetOutEntity();
            found.push_back(entity.ToString(&dictionary));
            for (std::size_t c = 0; c < cls.GetChildCount(); ++c)
                walk(entity, cls.GetChild(c));
        }
    };
    for (std::size_t i = 0; i < dictionary.GetRootClassCount(); ++i)
        walk(TEntitySpec(), dictionary.GetRootClass(i));
    return found;
}

std::vector<std::string> KelBrowserWindow::ListByClass(const TDictionary& dictionary,
                                                       const std::vector<std::string>& tops)
{
    std::vector<std::string> found;
    if (dictionary.GetRootClassCount() == 0)
        return found;
    const TDictClass& top = dictionary.GetRootClass(0);
    for (const std::string& name : tops) {
        TEntitySpec entity;
        entity.AddClass(top.GetCode(), name);
        found.push_back(entity.ToString(&dictionary));
        for (std::size_t c = 0; c < top.GetChildCount(); ++c) {
            TEntitySpec rows = entity;
            rows.AddClassWildcard(top.GetChild(c).GetCode());
            found.push_back(rows.ToString(&dictionary));
        }
    }
    return found;
}

void KelBrowserWindow::FillEntities()
{
    const QSignalBlocker quiet(m_entities);
    const QString current = m_entities->currentText();
    m_entities->clear();
    for (const std::string& entity : m_lister ? m_lister() : ListEntities(m_dictionary))
        m_entities->addItem(QString::fromStdString(entity));
    if (const int at = m_entities->findText(current); at >= 0)
        m_entities->setCurrentIndex(at);
}

// The entity pick shows the entity as its chosen item, not only as its text:
// an editable pick would otherwise choose the item of its text itself when it
// loses the focus, and open that item's form.
void KelBrowserWindow::ShowEntity(const QString& entity)
{
    const QSignalBlocker quiet(m_entities);
    int at = m_entities->findText(entity);
    if (at < 0) {
        m_entities->addItem(entity);
        at = m_entities->count() - 1;
    }
    m_entities->setCurrentIndex(at);
}

// A typed entity offers its class's directives; its form opens once one is picked.
void KelBrowserWindow::EntityTyped()
{
    // One of the list's entities is chosen as a pick of it is.
    if (m_entities->findText(m_entities->currentText()) >= 0)
        return;
    const std::string text = m_entities->currentText().toStdString();
    std::string error;
    if (!TEntitySpec::Parse(text, &m_dictionary, &error)) {
        SetMessage(KEL_SEVERITY_PROBLEM, "No such entity: " + text + (error.empty() ? "" : " (" + error + ")"));
        return;
    }
    FillDirectives();
    const QSignalBlocker quiet(m_directives);
    m_directives->setCurrentIndex(-1);
    m_directives->setFocus();
    m_directives->showPopup();
}

void KelBrowserWindow::EntityChosen()
{
    FillDirectives();
    DirectiveChosen();
}

void KelBrowserWindow::FillDirectives()
{
    const QSignalBlocker quiet(m_directives);
    m_directives->clear();
    std::optional<TEntitySpec> entity = TEntitySpec::Parse(m_entities->currentText().toStdString(), &m_dictionary);
    const TDictClass* cls = entity ? m_dictionary.FindClass(entity->GetEntityClass()) : nullptr;
    if (cls)
        for (const TDictDirective& directive : cls->GetDirectives())
            if (directive.GetID() != ZED_COMMON_EXCEPTION_DIRECTIVE)
                m_directives->addItem(QString::fromStdString(directive.GetName()));
}

void KelBrowserWindow::DirectiveChosen()
{
    if (m_directives->currentIndex() >= 0)
        OpenForm(m_entities->currentText().toStdString(), m_directives->currentText().toStdString());
}

// The entity picked above follows the instance chosen in the tree; nothing opens until a directive is.
void KelBrowserWindow::TreeSelectionChanged()
{
    TEntitySpec entity;
    if (!m_tree->GetSelectedEntity(entity))
        return;
    const QString text = QString::fromStdString(entity.ToString(&m_dictionary));
    if (text == m_entities->currentText())
        return;
    ShowEntity(text);
    FillDirectives();
    const QSignalBlocker quietDirectives(m_directives);
    m_directives->setCurrentIndex(-1);
}

bool KelBrowserWindow::OpenForm(const std::string& entityText, const std::string& directiveName)
{
    std::optional<TEntitySpec> entity = TEntitySpec::Parse(entityText, &m_dictionary);
    const TDictClass* cls = entity ? m_dictionary.FindClass(entity->GetEntityClass()) : nullptr;
    const TDictDirective* directive = cls ? cls->FindDirective(directiveName) : nullptr;
    if (!directive)
        return false;
    auto document =
        std::make_unique<MiddleDocument>("input-form", entity->ToString(&m_dictionary), directive->GetName());
    // The same form once: its tab comes forward with what was typed in it.
    if (const int open = FindDocument(document->GetKind(), document->GetTitle()); open >= 0) {
        m_documents->setCurrentIndex(open);
        m_documents->widget(open)->setFocus(Qt::OtherFocusReason);
        return true;
    }
    auto* form = new IInputForm(m_context);
    form->setAccessibleName(QString::fromStdString(directive->GetPresentationName()));
    form->installEventFilter(this);
    form->CreatePresentation(directive->GetName(), *entity, directive->GetID());
    std::string section;
    form->GetSettingSectionName(section, 1);
    form->SetFillConfigSection(section);
    form->FillWithDefaults();
    form->FillWithCurrentConfig();
    PlaceDocument(form, std::move(document), -1);
    // The operator fills it in next: its keys (Tab, Ctrl+F, Ctrl+Z) reach it at once.
    form->setFocus(Qt::OtherFocusReason);
    return true;
}

bool KelBrowserWindow::Send()
{
    MiddleDocument* document = ShownDocument();
    if (!m_form || !document || document->IsBusy())
        return false;
    auto call = std::make_unique<TAsyncCall>(m_form->GetEntity(), m_form->GetDirectiveID());
    if (!m_form->FillRequest(call->GetRequest())) {
        SetMessage(KEL_SEVERITY_PROBLEM, "Not sent: " + m_form->GetRefusal());
        return false;
    }
    const std::string entity = m_form->GetEntity().ToString(&m_dictionary);
    const std::string name = m_form->GetName();
    if (name == ZedDirective::kDelete
        && KELPrompt::Question(name, "Delete " + entity + "?", false) != KELPrompt::Answer::Yes) {
        SetMessage(KEL_SEVERITY_INFORMATION, "Not sent: the Delete of " + entity + " was not confirmed.");
        return false;
    }
    m_requestText.clear();
    m_form->GetRequest(m_requestText);
    // What was sent is what the next form of this directive starts from;
    // the user file keeps it when the browser closes.
    m_form->SaveContents("");
    // What was sent is where undoing now starts from.
    m_form->UndoBoundary();
    // One line per message, its values as the reply writes them.
    std::ostringstream shown;
    ZEDWriteRequest(shown, m_dictionary, call->GetEntity(), call->GetDirective(), call->GetRequest());
    const std::string message = name + " sent to " + entity + (shown.str().empty() ? "" : ": " + shown.str());
    const unsigned int directive = m_form->GetDirectiveID();
    const TEntitySpec target = m_form->GetEntity();
    return StartCall(*document, std::move(call), name,
                     [this, document, message, name, directive, target](TAsyncCall& answered) {
                         document->SetLastCall(answered, directive, name);
                         if (document == ShownDocument())
                             ShowOutputs(answered, directive, name);
                         const std::string exception = FirstException(answered);
                         SetMessage(exception.empty() ? KEL_SEVERITY_DONE : KEL_SEVERITY_PROBLEM,
                                    exception.empty() ? message : message + " -- " + exception);
                         // What a Create or Delete changed shows in the tree and the entity pick.
                         if (exception.empty() && (name == ZedDirective::kCreate || name == ZedDirective::kDelete)) {
                             m_tree->EntityChanged(target);
                             FillEntities();
                         }
                     });
}

// An exception is no success: its text, as the dictionary gives it; empty when every reply was a response.
std::string KelBrowserWindow::FirstException(TCall& call) const
{
    std::string exception;
    for (std::size_t i = 0; call.SelectReply(i) && exception.empty(); ++i)
        if (call.GetStatus() != ZED_STATUS_RESPONSE) {
            std::ostringstream text;
            ZEDWriteReply(text, m_dictionary, call, call.GetDirective());
            // The reply's kind and text, then its values (a common exception's
            // Reason), on one line: the console line alone says why.
            std::istringstream lines(text.str());
            std::string line;
            std::getline(lines, line);  // the entity and time
            while (std::getline(lines, line)) {
                const std::string trimmed = line.substr(std::min(line.size(), line.find_first_not_of(' ')));
                exception += (exception.empty() ? "" : exception.back() == ':' ? " " : "; ") + trimmed;
            }
        }
    call.SelectReply(0);
    return exception;
}

bool KelBrowserWindow::StartCall(MiddleDocument& document, std::unique_ptr<TAsyncCall> call, const std::string& name,
                                 std::function<void(TAsyncCall&)> answered)
{
    TAsyncCall& started = *call;
    const std::string entity = started.GetEntity().ToString(&m_dictionary);
    document.SetPending(std::move(call), name + " to " + entity);
    MiddleDocument* waiting = &document;
    const bool going = started.Start(
        [this, waiting, answered = std::move(answered)](TAsyncCall& call) {
            waiting->Finish();
            answered(call);
            ShowBusy();
        },
        m_timeout);
    if (!going) {
        document.Finish();
        SetMessage(KEL_SEVERITY_PROBLEM, "The call could not be made: no management module answers for " + entity);
    }
    ShowBusy();
    return going;
}

void KelBrowserWindow::CancelCall()
{
    MiddleDocument* document = ShownDocument();
    if (!document || !document->IsBusy())
        return;
    SetMessage(KEL_SEVERITY_INFORMATION, "Cancelled: " + document->GetWaitingFor());
    document->CancelPending();
    ShowBusy();
}

// The document shown says whether it waits for an answer: Send, Refresh and
// Apply wait with it, the status line names what it waits for.
void KelBrowserWindow::ShowBusy()
{
    const MiddleDocument* document = ShownDocument();
    const bool busy = document && document->IsBusy();
    m_busy->setVisible(busy);
    m_cancel->setVisible(busy);
    m_waiting->setText(busy ? QString::fromStdString("waiting for " + document->GetWaitingFor()) : QString());
    m_send->setEnabled(!busy && m_form);
    m_refresh->setEnabled(!busy && m_attributes);
    m_apply->setEnabled(!busy && m_attributes);
}

bool KelBrowserWindow::IsBusy() const { return ZEDGetCallLoop().GetPendingCount() > 0; }

bool KelBrowserWindow::WaitForCalls(std::chrono::milliseconds most)
{
    const bool done = ZEDGetCallLoop().RunUntilIdle(most);
    QApplication::processEvents();
    return done;
}

void KelBrowserWindow::PlaceDocument(QWidget* page, std::unique_ptr<MiddleDocument> document, int index)
{
    const QString title = QString::fromStdString(document->GetTitle());
    m_pages[page] = std::move(document);
    if (index >= 0 && index < m_documents->count()) {
        // The old form goes now: its lines' controls must not outlive it.
        QWidget* old = m_documents->widget(index);
        m_documents->insertTab(index, page, title);
        m_pages.erase(old);
        m_documents->removeTab(index + 1);
        delete old;
    } else {
        index = m_documents->addTab(page, title);
    }
    m_documents->setTabToolTip(index, title);
    m_documents->setCurrentIndex(index);
    DocumentChosen();
    WorkspaceChanged(true);
}

void KelBrowserWindow::CloseDocument(int index)
{
    QWidget* page = m_documents->widget(index);
    if (!page)
        return;
    m_documents->removeTab(index);
    m_pages.erase(page);
    delete page;
    DocumentChosen();
    WorkspaceChanged(true);
}

void KelBrowserWindow::CloseAllDocuments()
{
    while (m_documents->count() > 0)
        CloseDocument(m_documents->count() - 1);
}

int KelBrowserWindow::FindDocument(const std::string& kind, const std::string& title) const
{
    for (int i = 0; i < m_documents->count(); ++i)
        if (const auto page = m_pages.find(m_documents->widget(i));
            page != m_pages.end() && page->second->GetKind() == kind && page->second->GetTitle() == title)
            return i;
    return -1;
}

MiddleDocument* KelBrowserWindow::ShownDocument() const
{
    const auto page = m_pages.find(m_documents->currentWidget());
    return page == m_pages.end() ? nullptr : page->second.get();
}

IPresentationForm* KelBrowserWindow::ShownForm() const
{
    return dynamic_cast<IPresentationForm*>(m_documents->currentWidget());
}

void KelBrowserWindow::DocumentChosen()
{
    QWidget* current = m_documents->currentWidget();
    m_form = dynamic_cast<IInputForm*>(current);
    m_attributes = dynamic_cast<IInputOutputForm*>(current);
    ShowBusy();
    // The outputs are the document's own: its last reply, or none.
    const MiddleDocument* document = ShownDocument();
    if (document && document->GetLastCall().call)
        ShowOutputs(*document->GetLastCall().call, document->GetLastCall().directive, document->GetLastCall().name);
    else
        ClearOutputs();
    // The picks above follow the document shown.
    const IPresentationBase* shown = m_form ? static_cast<const IPresentationBase*>(m_form.data())
                                            : static_cast<const IPresentationBase*>(m_attributes.data());
    if (!shown)
        return;
    const QSignalBlocker quietDirectives(m_directives);
    ShowEntity(QString::fromStdString(shown->GetEntity().ToString(&m_dictionary)));
    FillDirectives();
    m_directives->setCurrentIndex(m_form ? m_directives->findText(QString::fromStdString(m_form->GetName())) : -1);
}

void KelBrowserWindow::WorkspaceChanged(bool changed)
{
    if (m_opening)
        return;
    const std::string name = m_workspace ? m_workspace->GetWorkspaceName() : std::string();
    const QString title = name.empty() ? QString::fromLatin1(kWindowTitle) + QStringLiteral("[*]")
                                       : QFileInfo(QString::fromStdString(name)).fileName() + QStringLiteral("[*] - ")
                                             + QString::fromLatin1(kWindowTitle);
    setWindowTitle(title);
    // Only an open workspace has changes to lose.
    setWindowModified(changed && !name.empty());
}

void KelBrowserWindow::ReadRecentWorkspaces()
{
    if (!m_context || !GetKELapp())
        return;
    std::vector<std::string> recent;
    for (int i = 1; i <= KELWorkspaceStore::kMaxRecent; ++i) {
        std::string name;
        if (GetKELapp()->GetConfigString(m_context, KELResources::String(kRecentSection), "Recent " + std::to_string(i),
                                         name, "", 1)
                == 1
            && !name.empty())
            recent.push_back(name);
    }
    m_workspace->SetRecent(std::move(recent));
}

void KelBrowserWindow::SaveSettings()
{
    IConfiguration* user = m_context ? m_context->GetUserConfigFile() : nullptr;
    if (!user)
        return;
    const std::vector<std::string>& recent = m_workspace->GetRecent();
    for (int i = 1; i <= KELWorkspaceStore::kMaxRecent; ++i)
        user->SetString(KELResources::String(kRecentSection), "Recent " + std::to_string(i),
                        i <= static_cast<int>(recent.size()) ? recent[static_cast<std::size_t>(i - 1)] : std::string(),
                        1);
    user->Save();
}

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

bool KelBrowserWindow::eventFilter(QObject* watched, QEvent* event)
{
    // Enter that no field took (a multi-line text takes it) sends the form.
    if (event->type() == QEvent::KeyPress && watched == m_form && IsSend(static_cast<QKeyEvent&>(*event))) {
        Send();
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

void KelBrowserWindow::BuildMenus()
{
    QMenu* workspace = menuBar()->addMenu(QString::fromStdString("&" + KELResources::String(KELString::kWorkspace)));
    workspace->addAction(QStringLiteral("&Open..."), QKeySequence::Open, this, [this] {
        std::string name;
        if (m_workspace->PromptWorkspaceNameFile(name, false) == 1)
            m_workspace->OpenWorkspace(name);
    });
    workspace->addAction(QStringLiteral("&Save"), QKeySequence::Save, this, [this] {
        if (m_workspace->OnWorkspaceSave()) {
            WorkspaceChanged(false);
            SaveSettings();
        }
    });
    workspace->addAction(QStringLiteral("Save &As..."), QKeySequence::SaveAs, this, [this] {
        if (m_workspace->OnWorkspaceSaveAs()) {
            WorkspaceChanged(false);
            SaveSettings();
        }
    });
    workspace->addAction(QStringLiteral("&Close"), this, [this] {
        m_workspace->OnWorkspaceClose();
        m_opening = false;
        WorkspaceChanged(false);
    });
    QMenu* recent = m_workspace->GetRecentMenu();
    recent->setTitle(QStringLiteral("&Recent"));
    workspace->addMenu(recent);
    workspace->addSeparator();
    workspace->addAction(QStringLiteral("Close &Document"), QKeySequence::Close, this,
                         [this] { CloseDocument(m_documents->currentIndex()); });
    workspace->addAction(QStringLiteral("&Quit"), QKeySequence::Quit, this, [this] { close(); });
    // F1 has this one binding: the help of the field that has the focus.
    // How outputs show values: an enumeration's number beside its name, as
    // the operator chooses; kept in the context's user file.
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
        if (const MiddleDocument* document = ShownDocument(); document && document->GetLastCall().call)
            ShowOutputs(*document->GetLastCall().call, document->GetLastCall().directive, document->GetLastCall().name);
    });
    // Undo and redo of the shown form's edits. The form itself takes Ctrl+Z
    // and Ctrl+Shift+Z; the menu only shows them, so that no key has two owners.
    QMenu* edit = menuBar()->addMenu(QStringLiteral("&Edit"));
    QAction* undo = edit->addAction(QStringLiteral("&Undo"), this, [this] {
        if (IPresentationForm* form = ShownForm())
            form->GetUndoStack()->undo();
    });
    QAction* redo = edit->addAction(QStringLiteral("&Redo"), this, [this] {
        if (IPresentationForm* form = ShownForm())
            form->GetUndoStack()->redo();
    });
    for (auto [action, key] : {std::pair{undo, QKeySequence::Undo}, std::pair{redo, QKeySequence::Redo}}) {
        action->setShortcut(key);
        action->setShortcutContext(Qt::WidgetShortcut);
    }
    connect(edit, &QMenu::aboutToShow, this, [this, undo, redo] {
        KELIdlePass::RunNow();  // what was just typed is a step to undo
        IPresentationForm* form = ShownForm();
        undo->setEnabled(form && form->GetUndoStack()->canUndo());
        redo->setEnabled(form && form->GetUndoStack()->canRedo());
    });
    QMenu* helpMenu = menuBar()->addMenu(QString::fromStdString("&" + KELResources::String(KELString::kHelp)));
    helpMenu->addAction(QStringLiteral("&Help on the focused field"), QKeySequence::HelpContents, this,
                        [this] { ShowHelp(); });
}

void KelBrowserWindow::ShowHelp()
{
    const QWidget* focused = QApplication::focusWidget();
    if (!focused || !GetKELapp())
        return;
    // Focus may rest on a part of a field (a text box's viewport, a combo's
    // line): the field that holds it is the one to explain.
    while (focused->accessibleName().isEmpty() && focused->accessibleDescription().isEmpty() && focused->parentWidget())
        focused = focused->parentWidget();
    const QString name = focused->accessibleName();
    const QString help = focused->accessibleDescription();
    const QString type = focused->toolTip();
    QString text = name.isEmpty() ? QStringLiteral("No help for this element.") : name;
    if (!type.isEmpty())
        text += QStringLiteral(" (") + type + QLatin1Char(')');
    // The configured help, then what the dictionary says the element takes.
    text += QStringLiteral("\n\n") + (help.isEmpty() ? QStringLiteral("No help text is configured for it.") : help);
    GetKELapp()->DisplayHelp(text.toStdString());
}

bool KelBrowserWindow::OpenDocument(const std::string& kind, const std::string& path)
{
    std::string text;
    try {
        text = ZedReadFile(path, "document");
    } catch (const TException& e) {
        SetMessage(KEL_SEVERITY_PROBLEM, e.what());
        return false;
    }
    std::istringstream in(text);
    std::string entity, directive;
    if (!std::getline(in, entity) || !std::getline(in, directive))
        return false;
    const bool opened =
        kind == "attributes" ? OpenAttributes(entity) : kind == "input-form" && OpenForm(entity, directive);
    // The document keeps its file: the next save writes the same one.
    if (MiddleDocument* document = opened ? ShownDocument() : nullptr)
        document->SetPathName(path);
    return opened;
}

void KelBrowserWindow::ClearOutputs()
{
    delete m_outputs->widget(0);
    m_outputs->insertTab(0, new QWidget, QStringLiteral("Reply"));
    delete m_outputs->widget(1);
    m_outputs->insertTab(1, new QWidget, QStringLiteral("List"));
    m_outputForm = nullptr;
    m_outputList = nullptr;
    m_outputs->setTabIcon(0, QIcon());
    m_outputs->setCurrentIndex(0);
    ShowReply("");
}

void KelBrowserWindow::ShowOutputs(const TCall& shown, unsigned int directive, const std::string& name)
{
    TCall call = shown;
    std::ostringstream text;
    for (std::size_t i = 0; call.SelectReply(i); ++i)
        ZEDWriteReply(text, m_dictionary, call, directive);
    call.SelectReply(0);

    // The first reply, whatever it was (an exception looks like one), and the
    // replies of a wildcard a row each: outputs of the kinds registered for them.
    KELOutputRequest request{KELOutputRequest::Reply, &call, directive, name, m_context};
    std::unique_ptr<QWidget> reply = KELOutputKinds::Make(request);
    if (!reply)
        reply = std::make_unique<QWidget>();
    m_outputForm = dynamic_cast<IOutputForm*>(reply.get());
    delete m_outputs->widget(0);
    const bool exception = call.GetStatus() != ZED_STATUS_RESPONSE;
    m_outputs->insertTab(0, reply.release(), QStringLiteral("Reply"));
    m_outputs->setTabIcon(0, exception ? style()->standardIcon(QStyle::SP_MessageBoxWarning) : QIcon());
    m_outputs->setTabToolTip(0, exception ? QStringLiteral("An exception reply") : QString());

    delete m_outputs->widget(1);
    m_outputList = nullptr;
    std::unique_ptr<QWidget> replies;
    if (call.GetReplyCount() > 1) {
        request.shows = KELOutputRequest::Replies;
        replies = KELOutputKinds::Make(request);
    }
    if (replies) {
        m_outputList = dynamic_cast<IOutputList*>(replies.get());
        m_outputs->insertTab(1, replies.release(), QStringLiteral("List"));
        m_outputs->setCurrentIndex(1);
    } else {
        m_outputs->insertTab(1, new QWidget, QStringLiteral("List"));
        m_outputs->setCurrentIndex(0);
    }
    ShowReply(text.str());
    TakeEvents();
}

void KelBrowserWindow::WatchNotifications(std::function<std::string()> summary)
{
    auto* timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this,
            [this, summary] { m_events->SetSummary(QString::fromStdString(summary())); });
    timer->start(kSummaryInterval);
    m_events->SetSummary(QString::fromStdString(summary()));
}

void KelBrowserWindow::TakeEvents()
{
    const std::vector<TCallResult> events = ZEDGetApplication()->TakeEvents();
    if (events.empty())
        return;
    std::ostringstream text;
    for (const TCallResult& event : events)
        ZEDWriteEvents(text, m_dictionary, event);
    m_events->Add(events);
    // The Text keeps its newest lines only: its tab says how many went.
    const QString added = QString::fromStdString(text.str());
    // An empty document's one block takes the first paragraph appended.
    const int before = m_reply->document()->isEmpty() ? 0 : m_reply->blockCount();
    m_reply->appendPlainText(added);
    const int appended = static_cast<int>(added.count(QLatin1Char('\n'))) + 1;
    if (m_reply->blockCount() >= m_reply->maximumBlockCount())
        m_textDropped += std::max(0, before + appended - m_reply->blockCount());
    TitleText();
}

void KelBrowserWindow::TitleText()
{
    const int at = m_outputs->indexOf(m_reply);
    if (at >= 0)
        m_outputs->setTabText(
            at, m_textDropped ? QStringLiteral("Text (%1 older lines dropped)").arg(QLocale().toString(m_textDropped))
                              : QStringLiteral("Text"));
}

void KelBrowserWindow::ShowOutput(const QString& title)
{
    for (int i = 0; i < m_outputs->count(); ++i)
        if (m_outputs->tabText(i) == title || m_outputs->tabText(i).startsWith(title + QStringLiteral(" (")))
            m_outputs->setCurrentIndex(i);
}

bool KelBrowserWindow::OpenAttributes(const std::string& entityText)
{
    std::optional<TEntitySpec> entity = TEntitySpec::Parse(entityText, &m_dictionary);
    if (!entity || !m_dictionary.FindClass(entity->GetEntityClass()) || entity->HasWildcard())
        return false;
    auto document = std::make_unique<MiddleDocument>("attributes", entity->ToString(&m_dictionary), "Attributes");
    if (const int open = FindDocument(document->GetKind(), document->GetTitle()); open >= 0) {
        m_documents->setCurrentIndex(open);
        return Refresh();
    }
    auto* form = new IInputOutputForm(m_context);
    form->setAccessibleName(QStringLiteral("Attributes"));
    form->CreatePresentation("Attributes", *entity, 0);
    PlaceDocument(form, std::move(document), -1);
    return Refresh();
}

bool KelBrowserWindow::Refresh() { return ReadAttributes(true); }

// Reads the attributes of the form shown again (Show); its outputs show the reply when asked to.
bool KelBrowserWindow::ReadAttributes(bool showOutputs)
{
    MiddleDocument* document = ShownDocument();
    if (!m_attributes || !document || document->IsBusy())
        return false;
    const TDictClass* cls = m_dictionary.FindClass(m_attributes->GetEntity().GetEntityClass());
    const TDictDirective* show = cls ? cls->FindDirective(std::string(ZedDirective::kShow)) : nullptr;
    if (!show)
        return false;
    QPointer<IInputOutputForm> form = m_attributes;
    const unsigned int directive = show->GetID();
    return StartCall(*document, std::make_unique<TAsyncCall>(m_attributes->GetEntity(), directive), ZedDirective::kShow,
                     [this, document, form, directive, showOutputs](TAsyncCall& answered) {
                         if (form)
                             form->ProcessReply(answered.GetReply());
                         if (answered.GetStatus() != ZED_STATUS_RESPONSE)
                             SetMessage(KEL_SEVERITY_PROBLEM,
                                        "The attributes could not be read: " + FirstException(answered));
                         if (!showOutputs)
                             return;
                         document->SetLastCall(answered, directive, ZedDirective::kShow);
                         if (document == ShownDocument())
                             ShowOutputs(answered, directive, ZedDirective::kShow);
                     });
}

bool KelBrowserWindow::Apply()
{
    MiddleDocument* document = ShownDocument();
    if (!m_attributes || !document || document->IsBusy())
        return false;
    const TDictClass* cls = m_dictionary.FindClass(m_attributes->GetEntity().GetEntityClass());
    const TDictDirective* set = cls ? cls->FindDirective(std::string(ZedDirective::kSet)) : nullptr;
    if (!set)
        return false;
    auto call = std::make_unique<TAsyncCall>(m_attributes->GetEntity(), set->GetID());
    if (!m_attributes->FillRequest(call->GetRequest())) {
        SetMessage(KEL_SEVERITY_PROBLEM, "Not applied: " + m_attributes->GetRefusal());
        return false;
    }
    m_requestText.clear();
    m_attributes->GetRequest(m_requestText);
    if (call->GetRequest().Size() == 0) {
        SetMessage(KEL_SEVERITY_INFORMATION, "Nothing to apply: no attribute was changed.");
        return false;
    }
    m_attributes->UndoBoundary();
    const unsigned int directive = set->GetID();
    const std::string entity = m_attributes->GetEntity().ToString(&m_dictionary);
    return StartCall(*document, std::move(call), ZedDirective::kSet,
                     [this, document, directive, entity](TAsyncCall& answered) {
                         const std::string exception = FirstException(answered);
                         SetMessage(exception.empty() ? KEL_SEVERITY_DONE : KEL_SEVERITY_PROBLEM,
                                    "Set sent to " + entity + (exception.empty() ? "" : " -- " + exception));
                         // The outputs show the Set's reply and its events; the form then shows
                         // what the network now holds.
                         document->SetLastCall(answered, directive, ZedDirective::kSet);
                         if (document != ShownDocument())
                             return;
                         ShowOutputs(answered, directive, ZedDirective::kSet);
                         ReadAttributes(false);
                     });
}

void KelBrowserWindow::ShowReply(const std::string& text)
{
    m_reply->setPlainText(QString::fromStdString(text));
    m_textDropped = 0;
    TitleText();
}

std::string KelBrowserWindow::GetReplyText() const { return m_reply->toPlainText().toStdString(); }

void KelBrowserWindow::SetMessage(KEL_T_Severity severity, const std::string& text)
{
    m_console->SetMessage(severity, text);
}

std::string KelBrowserWindow::GetMessages() const
{
    std::string text;
    const IOutputWnd* output = m_console->GetTabWnd(0);
    const IListViewOutput* list = output ? output->GetListCtrl() : nullptr;
    for (int i = 0; list && i < list->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = list->topLevelItem(i);
        const int severity = row->data(0, IOutputWnd::kSeverityRole).toInt();
        text += std::string("[") + kSeverity[severity >= 0 && severity <= 2 ? severity : 1] + "] "
                + row->text(1).toStdString() + "\n";
    }
    return text;
}
