// SPDX-License-Identifier: BSD-3-Clause
#include "kel/console/KELEntityPicks.h"

#include "kel/frame/KELConsoleSink.h"
#include "zed/dict/TDictionary.h"
#include "zed/value/TEntitySpec.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

namespace {
// Room for an entity of a few levels, and for the longest directive names.
constexpr int kEntityChars = 36;
constexpr int kDirectiveChars = 12;
}  // namespace

KELEntityPicks::KELEntityPicks(const TDictionary& dictionary, Lister lister, IMessageConsole* console, QWidget* parent)
    : QWidget(parent), m_dictionary(dictionary), m_lister(std::move(lister)), m_console(console),
      m_entities(new QComboBox(this)), m_directives(new QComboBox(this))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* entityLabel = new QLabel(QStringLiteral(" &Entity "), this);
    auto* directiveLabel = new QLabel(QStringLiteral("  D&irective "), this);
    for (QWidget* part : std::initializer_list<QWidget*>{entityLabel, m_entities, directiveLabel, m_directives})
        layout->addWidget(part);
    m_entities->setMinimumContentsLength(kEntityChars);
    // An entity that does not exist yet (one to Create) is typed here.
    m_entities->setEditable(true);
    m_entities->setInsertPolicy(QComboBox::NoInsert);
    m_entities->setAccessibleName(QStringLiteral("Entity"));
    entityLabel->setBuddy(m_entities);
    m_directives->setMinimumContentsLength(kDirectiveChars);
    m_directives->setAccessibleName(QStringLiteral("Directive"));
    directiveLabel->setBuddy(m_directives);
    Refill();
    connect(m_entities, &QComboBox::currentIndexChanged, this, &KELEntityPicks::ChooseEntity);
    connect(m_entities->lineEdit(), &QLineEdit::returnPressed, this, &KELEntityPicks::EntityTyped);
    connect(m_directives, &QComboBox::activated, this, &KELEntityPicks::DirectiveChosen);
}

KELEntityPicks::~KELEntityPicks() = default;

std::string KELEntityPicks::GetEntity() const { return m_entities->currentText().toStdString(); }

void KELEntityPicks::Refill()
{
    const QSignalBlocker quiet(m_entities);
    const QString current = m_entities->currentText();
    m_entities->clear();
    for (const std::string& entity : m_lister ? m_lister() : std::vector<std::string>())
        m_entities->addItem(QString::fromStdString(entity));
    if (const int at = m_entities->findText(current); at >= 0)
        m_entities->setCurrentIndex(at);
}

// The entity is shown as the chosen item, not only as the text: an editable
// pick would otherwise choose the item of its text itself when it loses the
// focus, and ask for that item's form.
void KELEntityPicks::ShowEntity(const QString& entity)
{
    const QSignalBlocker quiet(m_entities);
    int at = m_entities->findText(entity);
    if (at < 0) {
        m_entities->addItem(entity);
        at = m_entities->count() - 1;
    }
    m_entities->setCurrentIndex(at);
}

// A typed entity offers its class's directives; its form is asked for once one is picked.
void KELEntityPicks::EntityTyped()
{
    // One of the list's entities is chosen as a pick of it is.
    if (m_entities->findText(m_entities->currentText()) >= 0)
        return;
    const std::string text = GetEntity();
    std::string error;
    if (!TEntitySpec::Parse(text, &m_dictionary, &error)) {
        if (m_console)
            m_console->SetMessage(KEL_SEVERITY_PROBLEM,
                                  "No such entity: " + text + (error.empty() ? "" : " (" + error + ")"));
        return;
    }
    FillDirectives();
    const QSignalBlocker quiet(m_directives);
    m_directives->setCurrentIndex(-1);
    m_directives->setFocus();
    m_directives->showPopup();
}

void KELEntityPicks::ChooseEntity()
{
    FillDirectives();
    DirectiveChosen();
}

void KELEntityPicks::FillDirectives()
{
    const QSignalBlocker quiet(m_directives);
    m_directives->clear();
    const std::optional<TEntitySpec> entity = TEntitySpec::Parse(GetEntity(), &m_dictionary);
    const TDictClass* cls = entity ? m_dictionary.FindClass(entity->GetEntityClass()) : nullptr;
    if (cls)
        for (const TDictDirective& directive : cls->GetDirectives())
            if (directive.GetID() != ZED_COMMON_EXCEPTION_DIRECTIVE)
                m_directives->addItem(QString::fromStdString(directive.GetName()));
}

void KELEntityPicks::DirectiveChosen()
{
    if (m_directives->currentIndex() >= 0)
        emit Picked(GetEntity(), m_directives->currentText().toStdString());
}

void KELEntityPicks::Follow(const std::string& entity, const std::string& directive)
{
    const QSignalBlocker quiet(m_directives);
    ShowEntity(QString::fromStdString(entity));
    FillDirectives();
    m_directives->setCurrentIndex(directive.empty() ? -1 : m_directives->findText(QString::fromStdString(directive)));
}
