// SPDX-License-Identifier: BSD-3-Clause
#include "kel/console/KELDocumentArea.h"

#include "kel/console/IWorkspaceManager.h"
#include "kel/forms/IInputForm.h"
#include "kel/forms/IInputOutputForm.h"
#include "zed/dict/TDictionary.h"

#include <QKeyEvent>
#include <QTabBar>

namespace {

bool IsSend(const QKeyEvent& key)
{
    return (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter)
           && (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

}  // namespace

KELDocumentArea* KELDocumentArea::s_attached = nullptr;

KELDocumentArea::KELDocumentArea(const TDictionary& dictionary, KELConfigContext* context, IMessageConsole* console,
                                 QWidget* parent)
    : QTabWidget(parent), m_dictionary(dictionary), m_context(context), m_console(console),
      m_timeout(KELCallControl::ConfiguredTimeout(context))
{
    setDocumentMode(true);
    setTabsClosable(true);
    setMovable(true);
    setAccessibleName(QStringLiteral("Documents"));
    connect(this, &QTabWidget::currentChanged, this, &KELDocumentArea::ShownChanged);
    connect(this, &QTabWidget::tabCloseRequested, this, &KELDocumentArea::Close);
    connect(tabBar(), &QTabBar::tabMoved, this, &KELDocumentArea::MarkChanged);
}

KELDocumentArea::~KELDocumentArea()
{
    // The documents' forms go while the workspace manager still knows them.
    const QSignalBlocker quiet(this);
    m_quiet = true;
    CloseAll();
    if (s_attached == this && m_workspace) {
        m_workspace->RemovePreOpenCallback(&KELDocumentArea::Opening);
        m_workspace->RemovePostOpenCallback(&KELDocumentArea::Opened);
        m_workspace->RemoveCloseCallback(&KELDocumentArea::Closing);
        m_workspace->SetDocumentHandler({});
    }
    if (s_attached == this)
        s_attached = nullptr;
}

std::unique_ptr<KELHostDocument> KELDocumentArea::MakeDocument(const char* kind, KELHostDocument::Contents contents)
{
    auto calls = std::make_unique<KELCallControl>(m_dictionary, m_console, m_timeout);
    KELCallControl& control = *calls;
    auto document = std::make_unique<KELHostDocument>(kind, std::move(contents), std::move(calls));
    const KELHostDocument* own = document.get();
    control.OnBusyChanged([this, own] {
        if (Shown() == own)
            emit BusyChanged();
    });
    control.OnAnswered([this, own](const KELCallControl::Answer& answer) {
        if (Shown() == own)
            emit Answered(answer);
    });
    control.OnEntityChanged([this](const TEntitySpec& entity) { emit EntityChanged(entity); });
    return document;
}

bool KELDocumentArea::OpenInputForm(const std::string& entityText, const std::string& directiveName)
{
    const std::optional<TEntitySpec> entity = TEntitySpec::Parse(entityText, &m_dictionary);
    const TDictClass* cls = entity ? m_dictionary.FindClass(entity->GetEntityClass()) : nullptr;
    const TDictDirective* directive = cls ? cls->FindDirective(directiveName) : nullptr;
    if (!directive)
        return false;
    auto document = MakeDocument(KELHostDocument::kInputForm, {entity->ToString(&m_dictionary), directive->GetName()});
    if (BringForward(*document))
        return true;
    auto* form = new IInputForm(m_context);
    form->setAccessibleName(QString::fromStdString(directive->GetPresentationName()));
    form->installEventFilter(this);
    form->CreatePresentation(directive->GetName(), *entity, directive->GetID());
    std::string section;
    form->GetSettingSectionName(section, 1);
    form->SetFillConfigSection(section);
    form->FillWithDefaults();
    form->FillWithCurrentConfig();
    Place(form, std::move(document));
    // The operator fills it in next: its keys (Tab, Ctrl+F, Ctrl+Z) reach it at once.
    form->setFocus(Qt::OtherFocusReason);
    return true;
}

bool KELDocumentArea::OpenAttributes(const std::string& entityText)
{
    const std::optional<TEntitySpec> entity = TEntitySpec::Parse(entityText, &m_dictionary);
    if (!entity || !m_dictionary.FindClass(entity->GetEntityClass()) || entity->HasWildcard())
        return false;
    auto document = MakeDocument(KELHostDocument::kAttributes,
                                 {entity->ToString(&m_dictionary), KELHostDocument::kAttributesTitle});
    if (!BringForward(*document)) {
        auto* form = new IInputOutputForm(m_context);
        form->setAccessibleName(QString::fromLatin1(KELHostDocument::kAttributesTitle));
        form->CreatePresentation(KELHostDocument::kAttributesTitle, *entity, 0);
        Place(form, std::move(document));
    }
    return Refresh();
}

bool KELDocumentArea::OpenFile(const std::string& kind, const std::string& path)
{
    std::string error;
    const std::optional<KELHostDocument::Contents> contents = KELHostDocument::Read(path, &error);
    if (!contents) {
        if (m_console)
            m_console->SetMessage(KEL_SEVERITY_PROBLEM, error);
        return false;
    }
    const bool opened =
        kind == KELHostDocument::kAttributes
            ? OpenAttributes(contents->entity)
            : kind == KELHostDocument::kInputForm && OpenInputForm(contents->entity, contents->directive);
    // The document keeps its file: the next save writes the same one.
    if (KELHostDocument* document = opened ? Shown() : nullptr)
        document->SetPathName(path);
    return opened;
}

bool KELDocumentArea::BringForward(const KELHostDocument& wanted)
{
    for (int i = 0; i < count(); ++i)
        if (const auto page = m_pages.find(widget(i)); page != m_pages.end()
                                                       && page->second->GetKind() == wanted.GetKind()
                                                       && page->second->GetTitle() == wanted.GetTitle()) {
            setCurrentIndex(i);
            widget(i)->setFocus(Qt::OtherFocusReason);
            return true;
        }
    return false;
}

void KELDocumentArea::Place(QWidget* page, std::unique_ptr<KELHostDocument> document)
{
    const QString title = QString::fromStdString(document->GetTitle());
    m_pages[page] = std::move(document);
    const int index = addTab(page, title);
    setTabToolTip(index, title);
    setCurrentIndex(index);
    MarkChanged();
}

void KELDocumentArea::Close(int index)
{
    QWidget* page = widget(index);
    if (!page)
        return;
    removeTab(index);
    m_pages.erase(page);
    delete page;
    MarkChanged();
}

void KELDocumentArea::CloseAll()
{
    while (count() > 0)
        Close(count() - 1);
}

void KELDocumentArea::MarkChanged()
{
    if (!m_quiet)
        emit Changed();
}

KELHostDocument* KELDocumentArea::Shown() const
{
    const auto page = m_pages.find(currentWidget());
    return page == m_pages.end() ? nullptr : page->second.get();
}

IPresentationForm* KELDocumentArea::ShownForm() const { return dynamic_cast<IPresentationForm*>(currentWidget()); }

IInputForm* KELDocumentArea::ShownInputForm() const { return dynamic_cast<IInputForm*>(currentWidget()); }

IInputOutputForm* KELDocumentArea::ShownAttributes() const { return dynamic_cast<IInputOutputForm*>(currentWidget()); }

bool KELDocumentArea::Send()
{
    IInputForm* form = ShownInputForm();
    return form && Shown() && Shown()->Calls().Send(*form);
}

bool KELDocumentArea::Refresh()
{
    IInputOutputForm* form = ShownAttributes();
    return form && Shown() && Shown()->Calls().Read(*form);
}

bool KELDocumentArea::Apply()
{
    IInputOutputForm* form = ShownAttributes();
    return form && Shown() && Shown()->Calls().Apply(*form);
}

void KELDocumentArea::Cancel()
{
    if (KELHostDocument* document = Shown())
        document->Calls().Cancel();
}

void KELDocumentArea::SetCallTimeout(std::chrono::milliseconds timeout)
{
    m_timeout = timeout;
    for (const auto& [page, document] : m_pages)
        document->Calls().SetTimeout(timeout);
}

std::vector<KELWorkspaceDocument*> KELDocumentArea::InOrder() const
{
    std::vector<KELWorkspaceDocument*> open;
    for (int i = 0; i < count(); ++i)
        if (const auto page = m_pages.find(widget(i)); page != m_pages.end())
            open.push_back(page->second.get());
    return open;
}

void KELDocumentArea::Attach(IWorkspaceManager& workspace)
{
    m_workspace = &workspace;
    workspace.SetDocumentHandler(
        {[this] { return InOrder(); },
         [this](const KELWorkspaceStore::DocumentEntry& entry) { return OpenFile(entry.kind, entry.path); },
         [this] { CloseAll(); }});
    s_attached = this;
    workspace.SetPreOpenCallback(&KELDocumentArea::Opening);
    workspace.SetPostOpenCallback(&KELDocumentArea::Opened);
    workspace.SetCloseCallback(&KELDocumentArea::Closing);
}

void KELDocumentArea::Opening(std::string)
{
    if (s_attached)
        s_attached->m_quiet = true;
}

void KELDocumentArea::Opened()
{
    if (!s_attached)
        return;
    s_attached->m_quiet = false;
    emit s_attached->WorkspaceOpened();
}

void KELDocumentArea::Closing()
{
    if (s_attached)
        s_attached->m_quiet = true;
}

bool KELDocumentArea::eventFilter(QObject* watched, QEvent* event)
{
    // Enter that no field took (a multi-line text takes it) sends the form.
    if (event->type() == QEvent::KeyPress && watched == currentWidget() && ShownInputForm()
        && IsSend(static_cast<QKeyEvent&>(*event))) {
        Send();
        return true;
    }
    return QTabWidget::eventFilter(watched, event);
}
