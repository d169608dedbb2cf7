// SPDX-License-Identifier: BSD-3-Clause
#include "kel/output/KELEventLists.h"

#include "kel/output/IOutputList.h"
#include "kel/output/KELListModel.h"
#include "zed/dict/TDictionary.h"
#include "zed/value/TEventReport.h"

#include <QLabel>
#include <QLocale>
#include <QTabWidget>
#include <QVBoxLayout>

#include <set>

namespace {

// Lists up to this many rows fit their columns to what they hold.
constexpr int kFitRows = 200;

}  // namespace

KELEventLists::KELEventLists(const TDictionary& dictionary, KELConfigContext* context, QWidget* parent)
    : QWidget(parent), m_dictionary(dictionary), m_context(context), m_summary(new QLabel(this)),
      m_tabs(new QTabWidget(this))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    m_summary->setWordWrap(true);
    m_summary->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_summary->setAccessibleName(QStringLiteral("Notifications refused or lost"));
    m_summary->hide();
    m_tabs->setDocumentMode(true);
    layout->addWidget(m_summary);
    layout->addWidget(m_tabs, 1);
}

KELEventLists::~KELEventLists() = default;

void KELEventLists::Add(const std::vector<TCallResult>& events)
{
    std::set<IOutputList*> touched;
    for (const TCallResult& event : events)
        if (IOutputList* list = ListFor(event)) {
            list->ProcessReply(event.reply);
            touched.insert(list);
        }
    for (IOutputList* list : touched) {
        // The first rows settle the columns' widths; measuring thousands of
        // cells again for every batch of a flood would hold the event loop.
        if (list->GetModel()->rowCount() <= kFitRows)
            for (int c = 0; c < list->GetModel()->columnCount(); ++c)
                list->resizeColumnToContents(c);
        Retitle(*list);
    }
}

void KELEventLists::SetMostRows(std::size_t most)
{
    m_most = most;
    for (int i = 0; i < m_tabs->count(); ++i)
        if (auto* list = dynamic_cast<IOutputList*>(m_tabs->widget(i)))
            list->GetModel()->SetMostRows(most);
}

void KELEventLists::SetSummary(const QString& text)
{
    if (text == m_summary->text())
        return;
    m_summary->setText(text);
    m_summary->setVisible(!text.isEmpty());
}

QString KELEventLists::GetSummary() const { return m_summary->text(); }

IOutputList* KELEventLists::FindList(const QString& kind) const
{
    for (int i = 0; i < m_tabs->count(); ++i)
        if (m_tabs->widget(i)->accessibleName() == kind)
            return dynamic_cast<IOutputList*>(m_tabs->widget(i));
    return nullptr;
}

IOutputList* KELEventLists::ListFor(const TCallResult& event)
{
    const auto* report = static_cast<const TEventReport*>(event.reply.FindFirst(ZED_DT_EVENTREPORT));
    if (!report)
        return nullptr;
    const TDictClass* cls = m_dictionary.FindClass(report->GetEntity().GetEntityClass());
    const TDictEvent* kind = cls ? cls->FindEvent(report->GetEventID()) : nullptr;
    const QString title =
        QString::fromStdString((cls ? cls->GetName() : std::string("?")) + " : "
                               + (kind ? kind->GetPresentationName() : std::to_string(report->GetEventID())));
    if (IOutputList* list = FindList(title))
        return list;
    auto* list = new IOutputList(m_context);
    list->setAccessibleName(title);
    list->CreatePresentation("Events", report->GetEntity(), report->GetEventID());
    list->GetModel()->SetMostRows(m_most);
    m_tabs->addTab(list, title);
    return list;
}

void KELEventLists::Retitle(IOutputList& list)
{
    const QLocale locale;
    const KELListModel& model = *list.GetModel();
    QString title = list.accessibleName() + QStringLiteral(" (") + locale.toString(model.rowCount());
    if (model.GetDroppedRows())
        title += QStringLiteral(", ") + locale.toString(static_cast<qulonglong>(model.GetDroppedRows()))
                 + QStringLiteral(" older dropped");
    m_tabs->setTabText(m_tabs->indexOf(&list), title + QLatin1Char(')'));
}
