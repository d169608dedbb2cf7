#include "KelBrowserWindow.h"

#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/forms/IInputForm.h"
#include "kel/frame/IApplication.h"
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
#include <QToolBar>

#include <functional>
#include <sstream>

namespace {

const char* const kSeverity[] = {"done", "problem", "information"};

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

    m_split = new QSplitter(Qt::Vertical);
    m_reply = new QPlainTextEdit;
    m_reply->setReadOnly(true);
    m_reply->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_reply->setPlaceholderText(QStringLiteral("The reply shows here once the request is sent."));
    m_reply->setAccessibleName(QStringLiteral("Reply"));
    m_split->addWidget(new QWidget);  // the form's place
    m_split->addWidget(m_reply);
    m_split->setStretchFactor(0, 3);
    m_split->setStretchFactor(1, 2);
    m_split->setSizes({420, 220});
    setCentralWidget(m_split);

    auto* dock = new QDockWidget(QStringLiteral("Messages"), this);
    dock->setObjectName(QStringLiteral("Messages"));
    m_messages = new QPlainTextEdit;
    m_messages->setReadOnly(true);
    m_messages->setAccessibleName(QStringLiteral("Messages"));
    m_messages->setMaximumBlockCount(10000);
    dock->setWidget(m_messages);
    addDockWidget(Qt::BottomDockWidgetArea, dock);
    resizeDocks({dock}, {110}, Qt::Vertical);

    for (const std::string& entity : ListEntities(dictionary))
        m_entities->addItem(QString::fromStdString(entity));
    connect(m_entities, &QComboBox::currentIndexChanged, this, [this] { EntityChosen(); });
    connect(m_directives, &QComboBox::currentIndexChanged, this, [this] { DirectiveChosen(); });
    connect(defaults, &QPushButton::clicked, this, [this] {
        if (m_form)
            m_form->FillWithDefaults();
    });
    connect(send, &QPushButton::clicked, this, [this] { Send(); });
    EntityChosen();
}

KelBrowserWindow::~KelBrowserWindow()
{
    if (GetKELapp() && GetKELapp()->GetConsole() == this)
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
    const QSignalBlocker quiet(m_directives);
    m_directives->clear();
    std::optional<TEntitySpec> entity = TEntitySpec::Parse(m_entities->currentText().toStdString(), &m_dictionary);
    const TDictClass* cls = entity ? m_dictionary.FindClass(entity->GetEntityClass()) : nullptr;
    if (cls)
        for (const TDictDirective& directive : cls->GetDirectives())
            if (directive.GetID() != ZED_COMMON_EXCEPTION_DIRECTIVE)
                m_directives->addItem(QString::fromStdString(directive.GetName()));
    DirectiveChosen();
}

void KelBrowserWindow::DirectiveChosen()
{
    OpenForm(m_entities->currentText().toStdString(), m_directives->currentText().toStdString());
}

bool KelBrowserWindow::OpenForm(const std::string& entityText, const std::string& directiveName)
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
    // The old form goes now: its lines' controls must not outlive it.
    QWidget* old = m_split->widget(0);
    m_split->replaceWidget(0, form);
    delete old;
    m_form = form;
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
    std::ostringstream text;
    for (std::size_t i = 0; call.SelectReply(i); ++i)
        ZEDWriteReply(text, m_dictionary, call, m_form->GetDirectiveID());
    for (const TCallResult& event : ZEDGetApplication()->TakeEvents())
        ZEDWriteEvents(text, m_dictionary, event);
    ShowReply(text.str());
    // One line per message: a multi-line argument shows its line ends as " / ".
    std::string shown = m_requestText;
    for (std::size_t at = shown.find('\n'); at != std::string::npos; at = shown.find('\n', at + 3))
        shown.replace(at, 1, " / ");
    SetMessage(KEL_SEVERITY_DONE, m_form->GetName() + " sent to " + m_form->GetEntity().ToString(&m_dictionary)
                                      + (shown.empty() ? "" : ": " + shown));
    return true;
}

void KelBrowserWindow::ShowReply(const std::string& text) { m_reply->setPlainText(QString::fromStdString(text)); }

std::string KelBrowserWindow::GetReplyText() const { return m_reply->toPlainText().toStdString(); }

void KelBrowserWindow::SetMessage(KEL_T_Severity severity, const std::string& text)
{
    const int index = severity >= 0 && severity <= 2 ? static_cast<int>(severity) : 1;
    m_messages->appendPlainText(QStringLiteral("[%1] %2").arg(QLatin1String(kSeverity[index]), QString::fromStdString(text)));
}

std::string KelBrowserWindow::GetMessages() const { return m_messages->toPlainText().toStdString(); }
