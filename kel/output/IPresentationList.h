// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/output/IPresentation.h"

#include <QTreeView>

#include <memory>
#include <string>

class KELFilterBox;
class KELListModel;
class IPresentationContainer;

/// The dictionary-driven list view: a first column with the entity a row came
/// from, then one column per displayed element, titled with its presentation
/// name. The columns' order, hidden ones and widths are settings of the list
/// (".Position", ".Hidden", ".Width" in its section), read by OnInitialUpdate
/// and written by SaveColumnSettings. Rows live in a model, so a list of
/// 100,000 rows scrolls as one of ten. The filter line says how many rows
/// the list holds, and how many of them a filter shows.
class KEL_EXPORT IPresentationList : public QTreeView, public IPresentation {
public:
    explicit IPresentationList(KELConfigContext* context = nullptr, QWidget* parent = nullptr);
    ~IPresentationList() override;

    IPresentationContainer* CreateContainer() override;
    std::unique_ptr<IPresentationElement> CreateElement(IElementInfo& info) override;
    /// Applies the column settings of the section.
    virtual void OnInitialUpdate();
    void SaveColumnSettings() const;

    /// A new row, which the next values fill; its first cell is the entity.
    int BeginRow(const std::string& entity);
    /// A cell of the current row (the last begun); nothing before a row.
    void SetCurrentCell(int column, const QString& text);
    int GetCurrentRow() const { return m_currentRow; }
    KELListModel* GetModel() const { return m_pModel; }
    /// The settings section: "<entity id> - <directive or event> - <kind>".
    void SetSettingSection(const std::string& section) { m_section = section; }
    const std::string& GetSettingSection() const { return m_section; }
    /// The filter line above the header.
    KELFilterBox* GetFilterBox() const { return m_pFilter; }
    /// Shows only the rows with the text in a cell (all when empty), as
    /// typing into the filter line does; rows added later meet it too.
    void ApplyFilter(const QString& text);

protected:
    /// Room for the filter line above the header.
    void updateGeometries() override;

private:
    void FilterRow(int row);
    /// The filter line's count, soon: a burst of rows costs one count.
    void CountSoon();
    void Count();

    KELListModel* m_pModel;   // a child QObject of the view
    KELFilterBox* m_pFilter;  // a child
    QString m_filter;
    bool m_placing = false;
    bool m_countDue = false;
    std::unique_ptr<IPresentationContainer> m_pContainer;
    int m_currentRow = -1;
    std::string m_section;
};
