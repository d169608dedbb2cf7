// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/model/IPresentationElement.h"
#include "kel/model/KELValueElement.h"

#include <string>

class IPresentationList;

/// A column of a presentation list: one dictionary element, whose values go
/// to the list's current row.
class KEL_EXPORT IColumn : public IPresentationElement, public KELValueElement {
public:
    IColumn(unsigned int id, std::string title, int column, IPresentationList* list);
    ~IColumn() override;

    void SetValue(const TValue& value) override;
    void SetToNotReturned() override;

    const std::string& GetTitle() const { return m_title; }
    /// Its index among the list's columns (its place in the model).
    int GetColumn() const { return m_column; }

private:
    std::string m_title;
    int m_column;
    IPresentationList* m_pList;  // the list that holds the column; not owned
};
