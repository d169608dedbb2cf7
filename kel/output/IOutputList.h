// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/output/IOutputBase.h"
#include "kel/output/IPresentationList.h"

class KELCallReply;

/// An output in list form: a column per displayed argument or attribute and a
/// row per reply or event report processed. A list is a log: every reply adds
/// a row, newest last, even from an entity already listed, so that a list of
/// repeated reads shows how values moved. A list of attributes takes them from
/// the attribute list a reply carries (what Show answers). A list of event
/// reports shows when each was reported, in a Time column after the entity.
class KEL_EXPORT IOutputList : public IPresentationList, public IOutputBase {
public:
    explicit IOutputList(KELConfigContext* context = nullptr, QWidget* parent = nullptr);
    ~IOutputList() override;

    IPresentationContainer* CreateContainer() override;
    std::unique_ptr<IPresentationElement> CreateElement(IElementInfo& info) override;
    void PostCreate() override;

    /// A row for the presentation's entity (an event report's own entity).
    void ProcessReply(const TReply& reply) override;
    /// A row for the entity that answered.
    void ProcessReply(const KELCallReply& reply);

private:
    void AddRow(const std::string& entity, const TReply& reply);
    int TimeColumn();

    int m_timeColumn = -1;
};
