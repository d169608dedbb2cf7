// SPDX-License-Identifier: BSD-3-Clause
#include "kel/output/KELOutputPanel.h"

#include "kel/config/KELConfigContext.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELCallPump.h"
#include "kel/output/IOutputForm.h"
#include "kel/output/IOutputList.h"
#include "kel/output/KELEventLists.h"
#include "kel/output/KELOutputKinds.h"
#include "zed/TApplication.h"
#include "zed/call/TCall.h"
#include "zed/call/TReplyText.h"

#include <QFontDatabase>
#include <QLocale>
#include <QPlainTextEdit>
#include <QStyle>
#include <QTimer>

#include <algorithm>
#include <sstream>

namespace {

// How often the line of refused and lost notifications is brought up to date.
constexpr int kSummaryInterval = 1000;
const QString kReply = QStringLiteral("Reply");
const QString kList = QStringLiteral("List");
const QString kText = QStringLiteral("Text");

}  // namespace

KELOutputPanel::KELOutputPanel(const TDictionary& dictionary, KELConfigContext* context, QWidget* parent)
    : QTabWidget(parent), m_dictionary(dictionary), m_context(context), m_text(new QPlainTextEdit),
      m_events(new KELEventLists(dictionary, context))
{
    setDocumentMode(true);
    m_text->setReadOnly(true);
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_text->setPlaceholderText(QStringLiteral("The reply shows here once the request is sent."));
    m_text->setAccessibleName(QStringLiteral("Reply"));
    addTab(new QWidget, kReply);
    addTab(new QWidget, kList);
    addTab(m_text, kText);
    addTab(m_events, QStringLiteral("Events"));
    // A flood of events must not grow the window without end.
    int mostRows = static_cast<int>(KELEventLists::kDefaultMostRows);
    int mostLines = kDefaultMostTextLines;
    if (context) {
        context->GetConfigInt("Events", "MostRows", mostRows, mostRows, 1);
        context->GetConfigInt("Text", "MostLines", mostLines, mostLines, 1);
    }
    m_events->SetMostRows(static_cast<std::size_t>(std::max(1, mostRows)));
    m_text->setMaximumBlockCount(std::max(1, mostLines));
    // Event reports may come at any time (an agent's notification): each
    // turn of the call loop brings in what arrived.
    if (GetKELapp() && GetKELapp()->GetCallPump())
        connect(GetKELapp()->GetCallPump(), &KELCallPump::Turned, this, &KELOutputPanel::TakeEvents);
}

KELOutputPanel::~KELOutputPanel() = default;

void KELOutputPanel::Replace(Tab tab, QWidget* page, const QString& title)
{
    delete widget(tab);
    insertTab(tab, page ? page : new QWidget, title);
}

void KELOutputPanel::Clear()
{
    Replace(kReplyTab, nullptr, kReply);
    Replace(kListTab, nullptr, kList);
    m_form = nullptr;
    m_list = nullptr;
    setTabIcon(kReplyTab, QIcon());
    setCurrentIndex(kReplyTab);
    SetText("");
}

void KELOutputPanel::Show(const TCall& shown, unsigned int directive, const std::string& name)
{
    TCall call = shown;
    std::ostringstream text;
    for (std::size_t i = 0; call.SelectReply(i); ++i)
        ZEDWriteReply(text, m_dictionary, call, directive);
    call.SelectReply(0);

    KELOutputRequest request{KELOutputRequest::Reply, &call, directive, name, m_context};
    std::unique_ptr<QWidget> reply = KELOutputKinds::Make(request);
    m_form = dynamic_cast<IOutputForm*>(reply.get());
    Replace(kReplyTab, reply.release(), kReply);
    const bool exception = call.GetStatus() != ZED_STATUS_RESPONSE;
    setTabIcon(kReplyTab, exception ? style()->standardIcon(QStyle::SP_MessageBoxWarning) : QIcon());
    setTabToolTip(kReplyTab, exception ? QStringLiteral("An exception reply") : QString());

    std::unique_ptr<QWidget> replies;
    if (call.GetReplyCount() > 1) {
        request.shows = KELOutputRequest::Replies;
        replies = KELOutputKinds::Make(request);
    }
    m_list = dynamic_cast<IOutputList*>(replies.get());
    const bool listed = replies != nullptr;
    Replace(kListTab, replies.release(), kList);
    setCurrentIndex(listed ? kListTab : kReplyTab);
    SetText(text.str());
    TakeEvents();
}

void KELOutputPanel::TakeEvents()
{
    const std::vector<TCallResult> events = ZEDGetApplication()->TakeEvents();
    if (events.empty())
        return;
    std::ostringstream text;
    for (const TCallResult& event : events)
        ZEDWriteEvents(text, m_dictionary, event);
    m_events->Add(events);
    const QString added = QString::fromStdString(text.str());
    // An empty document's one block takes the first paragraph appended.
    const int before = m_text->document()->isEmpty() ? 0 : m_text->blockCount();
    m_text->appendPlainText(added);
    const int appended = static_cast<int>(added.count(QLatin1Char('\n'))) + 1;
    if (m_text->blockCount() >= m_text->maximumBlockCount())
        m_textDropped += std::max(0, before + appended - m_text->blockCount());
    TitleText();
}

void KELOutputPanel::SetText(const std::string& text)
{
    m_text->setPlainText(QString::fromStdString(text));
    m_textDropped = 0;
    TitleText();
}

void KELOutputPanel::TitleText()
{
    if (const int at = indexOf(m_text); at >= 0)
        setTabText(at, m_textDropped
                           ? QStringLiteral("Text (%1 older lines dropped)").arg(QLocale().toString(m_textDropped))
                           : kText);
}

IOutputForm* KELOutputPanel::GetOutputForm() const { return m_form; }

IOutputList* KELOutputPanel::GetOutputList() const { return m_list; }

std::string KELOutputPanel::GetText() const { return m_text->toPlainText().toStdString(); }

void KELOutputPanel::WatchSummary(std::function<std::string()> summary)
{
    auto* timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this,
            [this, summary] { m_events->SetSummary(QString::fromStdString(summary())); });
    timer->start(kSummaryInterval);
    m_events->SetSummary(QString::fromStdString(summary()));
}

void KELOutputPanel::ShowTab(const QString& title)
{
    for (int i = 0; i < count(); ++i)
        if (tabText(i) == title || tabText(i).startsWith(title + QStringLiteral(" (")))
            setCurrentIndex(i);
}
