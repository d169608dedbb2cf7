#include "KelBrowserWindow.h"

#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/console/IConsole.h"
#include "kel/console/IEntityTree.h"
#include "kel/console/IOutputWnd.h"
#include "kel/console/IWorkspaceManager.h"
#include "kel/console/KELWorkspaceDocument.h"
#include "kel/frame/KELResources.h"
#include "kel/output/IListViewOutput.h"
#include "kel/forms/IInputForm.h"
#include "kel/forms/IInputOutputForm.h"
#include "kel/frame/IApplication.h"
#include "kel/output/IOutputForm.h"
#include "kel/output/IOutputList.h"
#include "kel/output/KELCallReply.h"
#include "kel/output/KELListModel.h"
#include "zed/value/TEnumeration.h"
#include "zed/value/TEventReport.h"
#include "zed/TApplication.h"
#include "zed/TException.h"
#include "zed/call/TCall.h"
#include "zed/call/TReplyText.h"

#include <QComboBox>
#include <QDockWidget>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>
#include <QApplication>
#include <QMenuBar>
#include <QShortcut>
#include <fstream>
#include <QToolBar>

#include <functional>
#include <sstream>

namespace {

const char* const kSeverity[] = {"done", "problem", "information"};

// The form in the middle as a workspace document: its file holds its kind's
// key (entity, then directive for an input form), so that reopening the
// workspace opens the same form.
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
        return static_cast<bool>(out);
    }

private:
    std::string m_kind, m_entity, m_directive, m_title, m_path;
};

} // namespace

KelBrowserWindow::KelBrowserWindow(const TDictionary& dictionary, KELConfigContext* context)
    : m_dictionary(dictionary), m_context(context)
{
    setWindowTitle(QStringLiteral("KEL browser"));
    auto* bar = addToolBar(QStringLiteral("Entity"));
    bar->setMovable(false);
    bar->addWidget(new QLabel(QStringLiteral(" Entity ")));
    m_entities = new QComboBox;
    m_entities->setMinimumContentsLength(36);
    m_entities->setAccessibleName(QStringLiteral("Entity"));
    bar->addWidget(m_entities);
    bar->addWidget(new QLabel(QStringLiteral("  Directive ")));
    m_directives = new QComboBox;
    m_directives->setMinimumContentsLength(12);
    m_directives->setAccessibleName(QStringLiteral("Directive"));
    bar->addWidget(m_directives);
    bar->addSeparator();
    auto* defaults = new QPushButton(QStringLiteral("&Defaults"));
    auto* send = new QPushButton(QStringLiteral("&Send"));
    send->setDefault(true);
    bar->addWidget(defaults);
    bar->addWidget(send);
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
    m_events = new QTabWidget;
    m_events->setDocumentMode(true);
    m_outputs->addTab(m_events, QStringLiteral("Events"));
    m_documents = new QTabWidget;
    m_documents->setDocumentMode(true);
    m_documents->setTabsClosable(true);
    m_documents->setMovable(true);
    m_documents->setAccessibleName(QStringLiteral("Documents"));
    connect(m_documents, &QTabWidget::currentChanged, this, [this] { DocumentChosen(); });
    connect(m_documents, &QTabWidget::tabCloseRequested, this, [this](int index) { CloseDocument(index); });
    m_split->addWidget(m_documents);
    m_split->addWidget(m_outputs);
    m_split->setStretchFactor(0, 3);
    m_split->setStretchFactor(1, 2);
    m_split->setSizes({420, 220});
    setCentralWidget(m_split);

    m_tree = new IEntityTree(dictionary);
    m_tree->OnAttributes([this](const TEntitySpec& entity) { OpenAttributes(entity.ToString(&m_dictionary)); });
    m_tree->OnDirective([this](const TEntitySpec& entity, const std::string& directive) {
        OpenForm(entity.ToString(&m_dictionary), directive, true);
    });
    auto* treeDock = new QDockWidget(QStringLiteral("Network"), this);
    treeDock->setObjectName(QStringLiteral("Network"));
    treeDock->setWidget(m_tree);
    addDockWidget(Qt::LeftDockWidgetArea, treeDock);
    resizeDocks({treeDock}, {200}, Qt::Horizontal);

    m_console = new IConsole(this);
    m_console->AddTabWnd(KELResources::String(4023), 0);
    m_console->Create(this);
    addDockWidget(Qt::BottomDockWidgetArea, m_console);
    resizeDocks({m_console}, {130}, Qt::Vertical);

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
    if (GetKELapp())
        GetKELapp()->SetWorkspaceManager(m_workspace.get());
    BuildMenus();
    auto* help = new QShortcut(QKeySequence::HelpContents, this);
    connect(help, &QShortcut::activated, this, [this] { ShowHelp(); });

    for (const std::string& entity : ListEntities(dictionary))
        m_entities->addItem(QString::fromStdString(entity));
    connect(m_entities, &QComboBox::currentIndexChanged, this, [this] { EntityChosen(); });
    connect(m_directives, &QComboBox::currentIndexChanged, this, [this] { DirectiveChosen(); });
    connect(defaults, &QPushButton::clicked, this, [this] {
        if (m_form)
            m_form->FillWithDefaults();
    });
    connect(send, &QPushButton::clicked, this, [this] { Send(); });
    connect(attributes, &QPushButton::clicked, this,
            [this] { OpenAttributes(m_entities->currentText().toStdString()); });
    connect(m_refresh, &QPushButton::clicked, this, [this] { Refresh(); });
    connect(m_apply, &QPushButton::clicked, this, [this] { Apply(); });
    EntityChosen();
}

KelBrowserWindow::~KelBrowserWindow()
{
    if (GetKELapp() && GetKELapp()->GetConsole() == m_console)
        GetKELapp()->SetConsole(nullptr);
}

std::vector<std::string> KelBrowserWindow::ListEntities(const TDictionary& dictionary)
{
    std::vector<std::string> found;
    // Below each instance found, the instances of each child class.
    std::function<void(const TEntitySpec&, const TDictClass&)> walk = [&](const TEntitySpec& above,
                                                                          const TDictClass& cls) {
        const TDictDirective* show = cls.FindDirective(std::string("Show"));
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
    OpenForm(m_entities->currentText().toStdString(), m_directives->currentText().toStdString());
}

bool KelBrowserWindow::OpenForm(const std::string& entityText, const std::string& directiveName, bool newTab)
{
    if (m_entities->currentText().toStdString() != entityText) {
        const QSignalBlocker quiet(m_entities);
        m_entities->setCurrentText(QString::fromStdString(entityText));
        EntityChosen();
    }
    if (m_directives->currentText().toStdString() != directiveName) {
        const QSignalBlocker quiet(m_directives);
        m_directives->setCurrentText(QString::fromStdString(directiveName));
    }
    std::optional<TEntitySpec> entity = TEntitySpec::Parse(entityText, &m_dictionary);
    const TDictClass* cls = entity ? m_dictionary.FindClass(entity->GetEntityClass()) : nullptr;
    const TDictDirective* directive = cls ? cls->FindDirective(directiveName) : nullptr;
    if (!directive)
        return false;
    auto* form = new IInputForm(m_context);
    form->setAccessibleName(QString::fromStdString(directive->GetPresentationName()));
    const int current = m_documents->currentIndex();
    const bool replace = !newTab && current >= 0 && dynamic_cast<IInputForm*>(m_documents->widget(current));
    PlaceDocument(form, std::make_unique<MiddleDocument>("input-form", entity->ToString(&m_dictionary), directive->GetName()),
                  replace ? current : -1);
    form->CreatePresentation(directive->GetName(), *entity, directive->GetID());
    std::string section;
    form->GetSettingSectionName(section, 1);
    form->SetFillConfigSection(section);
    form->FillWithDefaults();
    form->FillWithCurrentConfig();
    m_requestText.clear();
    ShowReply("");
    return true;
}

bool KelBrowserWindow::Send()
{
    if (!m_form)
        return false;
    TSyncCall call(m_form->GetEntity(), m_form->GetDirectiveID());
    if (!m_form->FillRequest(call.GetRequest())) {
        SetMessage(KEL_SEVERITY_PROBLEM, "Not sent: a required argument has no value.");
        return false;
    }
    m_requestText.clear();
    m_form->GetRequest(m_requestText);
    // What was sent is what the next form of this directive starts from.
    m_form->SaveContents("");
    if (m_context && m_context->GetUserConfigFile())
        m_context->GetUserConfigFile()->Save();
    try {
        call.Execute();
    } catch (const TException& e) {
        SetMessage(KEL_SEVERITY_PROBLEM, std::string("The call could not be made: ") + e.what());
        return false;
    }
    ShowOutputs(call, m_form->GetDirectiveID());
    // One line per message: a multi-line argument shows its line ends as " / ".
    std::string shown = m_requestText;
    for (std::size_t at = shown.find('\n'); at != std::string::npos; at = shown.find('\n', at + 3))
        shown.replace(at, 1, " / ");
    SetMessage(KEL_SEVERITY_DONE, m_form->GetName() + " sent to " + m_form->GetEntity().ToString(&m_dictionary)
                                      + (shown.empty() ? "" : ": " + shown));
    return true;
}

void KelBrowserWindow::PlaceDocument(QWidget* page, std::unique_ptr<KELWorkspaceDocument> document, int index)
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
}

void KelBrowserWindow::CloseAllDocuments()
{
    while (m_documents->count() > 0)
        CloseDocument(m_documents->count() - 1);
}

int KelBrowserWindow::FindDocument(const std::string& title) const
{
    for (int i = 0; i < m_documents->count(); ++i)
        if (const auto page = m_pages.find(m_documents->widget(i)); page != m_pages.end() && page->second->GetTitle() == title)
            return i;
    return -1;
}

void KelBrowserWindow::DocumentChosen()
{
    QWidget* current = m_documents->currentWidget();
    m_form = dynamic_cast<IInputForm*>(current);
    m_attributes = dynamic_cast<IInputOutputForm*>(current);
    m_refresh->setEnabled(m_attributes != nullptr);
    m_apply->setEnabled(m_attributes != nullptr);
    // The picks above follow the document shown.
    const IPresentationBase* shown = m_form ? static_cast<const IPresentationBase*>(m_form.data())
                                            : static_cast<const IPresentationBase*>(m_attributes.data());
    if (!shown)
        return;
    const QSignalBlocker quietEntities(m_entities);
    const QSignalBlocker quietDirectives(m_directives);
    m_entities->setCurrentText(QString::fromStdString(shown->GetEntity().ToString(&m_dictionary)));
    FillDirectives();
    if (m_form)
        m_directives->setCurrentText(QString::fromStdString(m_form->GetName()));
}

void KelBrowserWindow::BuildMenus()
{
    QMenu* workspace = menuBar()->addMenu(QString::fromStdString("&" + KELResources::String(4022)));
    workspace->addAction(QStringLiteral("&Open..."), QKeySequence::Open, this, [this] {
        std::string name;
        if (m_workspace->PromptWorkspaceNameFile(name, false) == 1)
            m_workspace->OpenWorkspace(name);
    });
    workspace->addAction(QStringLiteral("&Save"), QKeySequence::Save, this, [this] { m_workspace->OnWorkspaceSave(); });
    workspace->addAction(QStringLiteral("Save &As..."), QKeySequence::SaveAs, this,
                         [this] { m_workspace->OnWorkspaceSaveAs(); });
    workspace->addAction(QStringLiteral("&Close"), this, [this] { m_workspace->OnWorkspaceClose(); });
    QMenu* recent = m_workspace->GetRecentMenu();
    recent->setTitle(QStringLiteral("&Recent"));
    workspace->addMenu(recent);
    workspace->addSeparator();
    workspace->addAction(QStringLiteral("Close &Document"), QKeySequence::Close, this,
                         [this] { CloseDocument(m_documents->currentIndex()); });
    workspace->addAction(QStringLiteral("&Quit"), QKeySequence::Quit, this, [this] { close(); });
    QMenu* helpMenu = menuBar()->addMenu(QString::fromStdString("&" + KELResources::String(4012)));
    helpMenu->addAction(QStringLiteral("&Help on the focused field"), QKeySequence::HelpContents, this,
                        [this] { ShowHelp(); });
}

void KelBrowserWindow::ShowHelp()
{
    const QWidget* focused = QApplication::focusWidget();
    if (!focused || !GetKELapp())
        return;
    const QString name = focused->accessibleName();
    const QString help = focused->accessibleDescription();
    const QString type = focused->toolTip();
    QString text = name.isEmpty() ? QStringLiteral("No help for this element.") : name;
    if (!type.isEmpty())
        text += QStringLiteral(" (") + type + QLatin1Char(')');
    text += QStringLiteral("\n\n") + (help.isEmpty() ? QStringLiteral("No help text is configured for it.") : help);
    GetKELapp()->DisplayHelp(text.toStdString());
}

bool KelBrowserWindow::OpenDocument(const std::string& kind, const std::string& path)
{
    std::ifstream in(path);
    std::string entity, directive;
    if (!std::getline(in, entity) || !std::getline(in, directive))
        return false;
    if (kind == "attributes")
        return OpenAttributes(entity);
    return kind == "input-form" && OpenForm(entity, directive, true);
}

void KelBrowserWindow::ShowOutputs(TSyncCall& call, unsigned int directive)
{
    std::ostringstream text;
    for (std::size_t i = 0; call.SelectReply(i); ++i)
        ZEDWriteReply(text, m_dictionary, call, directive);
    call.SelectReply(0);

    // The first reply as a form, whatever it was (an exception too).
    auto* form = new IOutputForm(m_context);
    form->setAccessibleName(QStringLiteral("Reply"));
    form->CreatePresentation(m_form ? m_form->GetName() : "Show", KELCallReply(call), directive);
    delete m_outputs->widget(0);
    m_outputs->insertTab(0, form, QStringLiteral("Reply"));
    m_outputForm = form;

    // Several replies (a wildcard): a row each. A Show lists the attributes of
    // the partition asked for; any other directive the arguments of its reply.
    if (call.GetReplyCount() > 1) {
        auto* list = new IOutputList(m_context);
        list->setAccessibleName(QStringLiteral("List"));
        const TDictClass* cls = m_dictionary.FindClass(call.GetEntity().GetEntityClass());
        const TDictDirective* asked = cls ? cls->FindDirective(directive) : nullptr;
        if (asked && asked->GetName() == "Show") {
            const TValue& partition = call.GetRequest()[1];
            const unsigned int code = partition.GetDatatype() == ZED_DT_ENUMERATION
                                          ? static_cast<unsigned int>(static_cast<const TEnumeration&>(partition).GetCode())
                                          : 0u;
            list->CreatePresentationAttr("Show", call.GetEntity(), code);
        } else {
            const TReply& first = call.GetReply();
            list->CreatePresentation(asked ? asked->GetName() : "", call.GetEntity(), directive,
                                     first.GetReplyType() == ZED_REPLY_RESPONSE ? ZED_DICT_RESPONSE : ZED_DICT_EXCEPTION,
                                     first.GetReplyCode());
        }
        KELCallReplyList replies;
        replies.AddAll(call);
        for (const auto& reply : replies.Replies())
            list->ProcessReply(*reply);
        for (int c = 0; c < list->GetModel()->columnCount(); ++c)
            list->resizeColumnToContents(c);
        delete m_outputs->widget(1);
        m_outputs->insertTab(1, list, QStringLiteral("List"));
        m_outputList = list;
        m_outputs->setCurrentIndex(1);
    } else {
        m_outputs->setCurrentIndex(0);
    }
    ShowReply(text.str());
    TakeEvents();
}

void KelBrowserWindow::TakeEvents()
{
    std::ostringstream text;
    for (const TCallResult& event : ZEDGetApplication()->TakeEvents()) {
        ZEDWriteEvents(text, m_dictionary, event);
        const auto* report = static_cast<const TEventReport*>(event.reply.FindFirst(ZED_DT_EVENTREPORT));
        if (!report)
            continue;
        const TDictClass* cls = m_dictionary.FindClass(report->GetEntity().GetEntityClass());
        const TDictEvent* kind = cls ? cls->FindEvent(report->GetEventID()) : nullptr;
        const QString title = QString::fromStdString((cls ? cls->GetName() : std::string("?")) + " : "
                                                     + (kind ? kind->GetPresentationName() : std::to_string(report->GetEventID())));
        IOutputList* list = nullptr;
        for (int i = 0; i < m_events->count() && !list; ++i)
            if (m_events->tabText(i) == title)
                list = dynamic_cast<IOutputList*>(m_events->widget(i));
        if (!list) {
            list = new IOutputList(m_context);
            list->setAccessibleName(title);
            list->CreatePresentation("Events", report->GetEntity(), report->GetEventID());
            m_events->addTab(list, title);
        }
        list->ProcessReply(event.reply);
        for (int c = 0; c < list->GetModel()->columnCount(); ++c)
            list->resizeColumnToContents(c);
    }
    if (!text.str().empty())
        m_reply->appendPlainText(QString::fromStdString(text.str()));
}

void KelBrowserWindow::ShowOutput(const QString& title)
{
    for (int i = 0; i < m_outputs->count(); ++i)
        if (m_outputs->tabText(i) == title)
            m_outputs->setCurrentIndex(i);
}

bool KelBrowserWindow::OpenAttributes(const std::string& entityText)
{
    std::optional<TEntitySpec> entity = TEntitySpec::Parse(entityText, &m_dictionary);
    if (!entity || !m_dictionary.FindClass(entity->GetEntityClass()) || entity->HasWildcard())
        return false;
    {
        // The entity shown above is the one whose attributes these are.
        const QSignalBlocker quiet(m_entities);
        m_entities->setCurrentText(QString::fromStdString(entityText));
        FillDirectives();
    }
    auto* form = new IInputOutputForm(m_context);
    form->setAccessibleName(QStringLiteral("Attributes"));
    auto document = std::make_unique<MiddleDocument>("attributes", entity->ToString(&m_dictionary), "Attributes");
    const int earlier = FindDocument(document->GetTitle());
    PlaceDocument(form, std::move(document), earlier);
    form->CreatePresentation("Attributes", *entity, 0);
    return Refresh();
}

bool KelBrowserWindow::Refresh() { return ReadAttributes(true); }

bool KelBrowserWindow::ReadAttributes(bool showOutputs)
{
    if (!m_attributes)
        return false;
    const TDictClass* cls = m_dictionary.FindClass(m_attributes->GetEntity().GetEntityClass());
    const TDictDirective* show = cls ? cls->FindDirective(std::string("Show")) : nullptr;
    if (!show)
        return false;
    TSyncCall call(m_attributes->GetEntity(), show->GetID());
    try {
        call.Execute();
    } catch (const TException& e) {
        SetMessage(KEL_SEVERITY_PROBLEM, std::string("The attributes could not be read: ") + e.what());
        return false;
    }
    m_attributes->ProcessReply(call.GetReply());
    if (showOutputs)
        ShowOutputs(call, show->GetID());
    return call.GetStatus() == ZED_STATUS_RESPONSE;
}

bool KelBrowserWindow::Apply()
{
    if (!m_attributes)
        return false;
    const TDictClass* cls = m_dictionary.FindClass(m_attributes->GetEntity().GetEntityClass());
    const TDictDirective* set = cls ? cls->FindDirective(std::string("Set")) : nullptr;
    if (!set)
        return false;
    TSyncCall call(m_attributes->GetEntity(), set->GetID());
    if (!m_attributes->FillRequest(call.GetRequest()))
        return false;
    m_requestText.clear();
    m_attributes->GetRequest(m_requestText);
    if (call.GetRequest().Size() == 0) {
        SetMessage(KEL_SEVERITY_INFORMATION, "Nothing to apply: no attribute was changed.");
        return false;
    }
    try {
        call.Execute();
    } catch (const TException& e) {
        SetMessage(KEL_SEVERITY_PROBLEM, std::string("The call could not be made: ") + e.what());
        return false;
    }
    const bool done = call.GetStatus() == ZED_STATUS_RESPONSE;
    SetMessage(done ? KEL_SEVERITY_DONE : KEL_SEVERITY_PROBLEM,
               "Set sent to " + m_attributes->GetEntity().ToString(&m_dictionary));
    // The form shows what the network now holds; the outputs show the Set's reply and its events.
    ReadAttributes(false);
    ShowOutputs(call, set->GetID());
    return done;
}

void KelBrowserWindow::ShowReply(const std::string& text) { m_reply->setPlainText(QString::fromStdString(text)); }

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
