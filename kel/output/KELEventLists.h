// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "zed/call/TCall.h"

#include <QWidget>

#include <cstddef>
#include <vector>

class KELConfigContext;
class IOutputList;
class QLabel;
class QTabWidget;
class TDictionary;

/// The event reports that came in, one list per kind ("Class : Event"), each
/// tab titled with its row count and what its bound dropped. Reports arrive
/// in batches, as a turn of the call loop brings them: a flood of them costs
/// one column fit per list and batch, not one per row. A line above the
/// lists says what the host reports of notifications refused or lost; it
/// stays hidden while there is nothing to say.
class KEL_EXPORT KELEventLists : public QWidget {
public:
    /// Rows a list keeps unless the host says otherwise (the oldest drop).
    static constexpr std::size_t kDefaultMostRows = 10000;

    KELEventLists(const TDictionary& dictionary, KELConfigContext* context, QWidget* parent = nullptr);
    ~KELEventLists() override;

    /// Adds each event report to its list; other results are passed over.
    void Add(const std::vector<TCallResult>& events);
    void SetMostRows(std::size_t most);
    /// The line above the lists; empty hides it.
    void SetSummary(const QString& text);
    QString GetSummary() const;

    QTabWidget* GetTabs() const { return m_tabs; }
    /// The list of a kind ("Interface : Link Down"), or null.
    IOutputList* FindList(const QString& kind) const;

private:
    IOutputList* ListFor(const TCallResult& event);
    void Retitle(IOutputList& list);

    const TDictionary& m_dictionary;
    KELConfigContext* m_context;
    std::size_t m_most = kDefaultMostRows;
    QLabel* m_summary;   // a child
    QTabWidget* m_tabs;  // a child
};
