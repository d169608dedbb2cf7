// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <QPointer>
#include <QTabWidget>

#include <functional>
#include <string>

class IOutputForm;
class IOutputList;
class KELConfigContext;
class KELEventLists;
class QPlainTextEdit;
class TCall;
class TDictionary;

/// A host's outputs of a finished call, through the output kinds registered
/// for it: "Reply", its first reply as a form (an exception marked as one);
/// "List", the replies of a wildcard call a row each; "Text", the replies and
/// the event reports as text; "Events", the event reports a list per kind.
/// Event reports come in as the call loop turns. The Text and the event
/// lists keep their newest only ("Text", "MostLines"; "Events", "MostRows")
/// and say how many went.
class KEL_EXPORT KELOutputPanel : public QTabWidget {
public:
    /// Lines the Text keeps unless the settings say otherwise.
    static constexpr int kDefaultMostTextLines = 10000;

    KELOutputPanel(const TDictionary& dictionary, KELConfigContext* context, QWidget* parent = nullptr);
    ~KELOutputPanel() override;

    /// The call's replies, shown as the directive of that name answers.
    void Show(const TCall& call, unsigned int directive, const std::string& name);
    /// No reply: empty Reply, List and Text; the events stay.
    void Clear();
    /// Brings in the event reports the application holds.
    void TakeEvents();
    /// Shows above the event lists what summary says (notifications refused
    /// or lost), asked again every second.
    void WatchSummary(std::function<std::string()> summary);
    /// Shows the tab of that title (its counts aside).
    void ShowTab(const QString& title);

    IOutputForm* GetOutputForm() const;
    IOutputList* GetOutputList() const;
    KELEventLists* GetEvents() const { return m_events; }
    std::string GetText() const;

private:
    enum Tab { kReplyTab, kListTab };
    // Puts the page in place of the tab's page; none puts an empty one.
    void Replace(Tab tab, QWidget* page, const QString& title);
    void SetText(const std::string& text);
    void TitleText();

    const TDictionary& m_dictionary;
    KELConfigContext* m_context;
    QPointer<IOutputForm> m_form;
    QPointer<IOutputList> m_list;
    QPlainTextEdit* m_text;   // a page
    KELEventLists* m_events;  // a page
    int m_textDropped = 0;    // lines the Text's bound has dropped
};
