// SPDX-License-Identifier: BSD-3-Clause
#include "kel/output/IOutputList.h"
#include "kel/frame/KELString.h"

#include "kel/forms/IPresentationForm.h"
#include "kel/model/IPresentationElement.h"
#include "kel/output/KELCallReply.h"
#include "zed/call/TReply.h"
#include "zed/value/TAttribute.h"
#include "kel/frame/KELResources.h"
#include "kel/output/KELListModel.h"
#include "zed/value/TEventReport.h"
#include "zed/value/TTimeValues.h"

#include <QHeaderView>

IOutputList::IOutputList(KELConfigContext* context, QWidget* parent) : IPresentationList(context, parent) {}

IOutputList::~IOutputList()
{
    // The columns point at the list, whose base goes after this one.
    SetContainer(nullptr);
}

IPresentationContainer* IOutputList::CreateContainer() { return IPresentationList::CreateContainer(); }

std::unique_ptr<IPresentationElement> IOutputList::CreateElement(IElementInfo& info)
{
    return IPresentationList::CreateElement(info);
}

void IOutputList::PostCreate()
{
    std::string entityId;
    IPresentationForm::GetEntityID(entityId, GetEntity().GetEntityClass());
    std::string section;
    IPresentationForm::GetSettingSectionName(section, entityId.c_str(), static_cast<long>(GetDirOrEventID()),
                                             static_cast<long>(GetPresentationKind()) + 1);
    SetSettingSection(section);
    OnInitialUpdate();
}

void IOutputList::ProcessReply(const TReply& reply)
{
    const auto* report = static_cast<const TEventReport*>(reply.FindFirst(ZED_DT_EVENTREPORT));
    AddRow((report ? report->GetEntity() : GetEntity()).ToString(), reply);
    if (report)
        SetCurrentCell(TimeColumn(), QString::fromStdString(TAbsTime::Format(report->GetTime())));
}

int IOutputList::TimeColumn()
{
    // When each event came: after the entity, ahead of the event's own values.
    if (m_timeColumn < 0) {
        m_timeColumn = GetModel()->AddColumn(QString::fromStdString(KELResources::String(KELString::kTime)));
        header()->moveSection(header()->visualIndex(m_timeColumn), 1);
    }
    return m_timeColumn;
}

void IOutputList::ProcessReply(const KELCallReply& reply) { AddRow(reply.Entity().ToString(), reply.Reply()); }

void IOutputList::AddRow(const std::string& entity, const TReply& reply)
{
    BeginRow(entity);
    if (GetPresentationKind() != Attributes) {
        IOutputBase::ProcessReply(reply);
        return;
    }
    // The attributes, each under its own code, as the columns expect them.
    TReply attributes(reply.GetReplyType(), reply.GetReplyCode());
    if (const auto* list = static_cast<const TAttributeList*>(reply.FindFirst(ZED_DT_ATTRIBUTELIST)))
        for (std::size_t i = 0; i < list->Size(); ++i) {
            const TAttribute& attribute = list->At(i);
            if (!attribute.HasValue())
                continue;
            TValuePtr value = attribute.GetValue().Clone();
            value->SetID(attribute.GetAttributeID().GetValue());
            attributes.Add(std::move(value));
        }
    IOutputBase::ProcessReply(attributes);
}
