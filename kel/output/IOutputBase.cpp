// SPDX-License-Identifier: BSD-3-Clause
#include "kel/output/IOutputBase.h"
#include "kel/frame/KELString.h"

#include "kel/frame/KELResources.h"
#include "kel/frame/KELTrace.h"
#include "kel/model/IElementInfo.h"
#include "kel/model/IPresentationContainer.h"
#include "kel/model/KELValueElement.h"
#include "zed/TException.h"
#include "zed/ZedAssert.h"
#include "zed/call/TReply.h"
#include "zed/dict/TDictIterators.h"
#include "zed/value/TEventReport.h"

namespace {

// Every element that shows values, in key order.
template <class Visit>
void ForEachValueElement(IPresentationContainer* container, Visit visit)
{
    if (!container)
        return;
    container->ForEachElement([&](IPresentationElement& element) {
        if (auto* shown = dynamic_cast<KELValueElement*>(&element))
            visit(element, *shown);
    });
}

}  // namespace

IOutputBase::IOutputBase() = default;

IOutputBase::~IOutputBase() = default;

void IOutputBase::Insert(IElementInfo& info)
{
    if (!info.IsDisplayed())
        return;
    std::unique_ptr<IPresentationElement> element = CreateElement(info);
    if (!element)
        return;
    const bool taken = GetContainer() && GetContainer()->InsertElement(std::move(element));
    ZEDAssertM(taken, KELResources::String(KELString::kDuplicateElement));
}

void IOutputBase::CreateArgumentElements(const std::string& prefix, unsigned int directiveOrEvent,
                                         ZED_T_DICT_OBJECT_TYPE selector, unsigned int replyCode)
{
    IElementInfo info(GetEntity(), GetName(), prefix);
    for (TDictArgumentIterator it(GetEntity().GetEntityClass(), directiveOrEvent, selector, replyCode); it.IsValid();
         it.Next()) {
        InitArgElementInfo(it.Get(), info);
        Insert(info);
    }
}

bool IOutputBase::CreateArgumentLines(const std::string& prefix, unsigned int id, ZED_T_DICT_OBJECT_TYPE replyType,
                                      unsigned int replyCode)
{
    try {
        CreateArgumentElements(prefix, id, replyType, replyCode);
        return true;
    } catch (const TException& e) {
        KEL_TRACE(KEL_TRACE_EXCP, "KELOutputBase", this) << "KEL :" << e;
    } catch (...) {
        KEL_TRACE(KEL_TRACE_EXCP, "KELOutputBase", this)
            << "KEL :"
            << (replyType == ZED_DICT_EVENT ? "Unknown exception in IOuputList::CreatePresentation (event)"
                                            : "Unknown exception in KELOutputList::CreatePresentation (directive)");
    }
    return false;
}

void IOutputBase::CreatePresentation(const std::string& name, const TEntitySpec& entity, unsigned int directiveId,
                                     ZED_T_DICT_OBJECT_TYPE replyType, unsigned int replyCode)
{
    m_dirOrEventId = directiveId;
    m_replyType = replyType;
    m_replyCode = replyCode;
    m_presentationKind = DirectiveReply;
    Present(name, entity, [&] {
        KEL_TRACE(KEL_TRACE_INFO, "KELOutputBase", this)
            << "KEL :"
            << "CreatePresentation method with EntitySpec : " << entity.ToString();
        KEL_TRACE(KEL_TRACE_INFO, "KELOutputBase", this) << "KEL :"
                                                         << " dirID : " << directiveId << " ReplyType : " << replyType;
        KEL_TRACE(KEL_TRACE_INFO, "KELOutputBase", this) << "KEL :"
                                                         << " ReplyCode : " << replyCode;
        std::string prefix = "Dir:" + std::to_string(directiveId);
        if (replyType == ZED_DICT_RESPONSE)
            prefix += ".Resp:";
        else if (replyType == ZED_DICT_EXCEPTION)
            prefix += ".Exc:";
        prefix += std::to_string(replyCode);
        return CreateArgumentLines(prefix, directiveId, replyType, replyCode);
    });
}

void IOutputBase::CreatePresentation(const std::string& name, const TEntitySpec& entity, unsigned int eventId)
{
    KEL_TRACE(KEL_TRACE_INFO, "KELOutputBase", this)
        << "KEL :"
        << "CreatePresentation method with EntitySpec : " << entity.ToString();
    KEL_TRACE(KEL_TRACE_INFO, "KELOutputBase", this) << "KEL :"
                                                     << " EventID : " << eventId;
    m_dirOrEventId = eventId;
    m_presentationKind = EventReport;
    Present(name, entity,
            [&] { return CreateArgumentLines("Event:" + std::to_string(eventId), eventId, ZED_DICT_EVENT, 0); });
}

void IOutputBase::CreatePresentationAttr(const std::string& name, const TEntitySpec& entity, unsigned int partition)
{
    m_dirOrEventId = partition;
    m_presentationKind = Attributes;
    Present(name, entity, [&] {
        IElementInfo info(GetEntity(), GetName(), "");
        for (TDictAttributeIterator it(entity.GetEntityClass(), partition); it.IsValid(); it.Next()) {
            InitAttrElementInfo(it.Get(), info);
            Insert(info);
        }
        return true;
    });
}

void IOutputBase::ProcessReply(const TReply& reply)
{
    KEL_TRACE(KEL_TRACE_INFO, "KELOutputBase", this) << "KEL : "
                                                     << "ProcessReply : " << reply.ToString();
    try {
        if (m_presentationKind == EventReport) {
            KEL_TRACE(KEL_TRACE_INFO, "KELOutputBase", this) << "KEL :"
                                                             << "ProcessReply on event report ";
            const auto* report = static_cast<const TEventReport*>(reply.FindFirst(ZED_DT_EVENTREPORT));
            if (!report)
                return;
            ForEachValueElement(GetContainer(), [&](IPresentationElement& element, KELValueElement& shown) {
                const TValue& value = (*report)[element.GetID()];
                if (value.IsPresent())
                    shown.SetValue(value);
                else
                    shown.SetToNotReturned();
            });
            return;
        }
        KEL_TRACE(KEL_TRACE_INFO, "KELOutputBase", this) << "KEL :"
                                                         << "ProcessReply  reply ";
        if ((m_replyType == ZED_DICT_RESPONSE && reply.GetReplyType() != ZED_REPLY_RESPONSE)
            || (m_replyType == ZED_DICT_EXCEPTION && reply.GetReplyType() == ZED_REPLY_RESPONSE)) {
            KEL_TRACE(KEL_TRACE_PBLM, "KELOutputBase", this) << "KEL :"
                                                             << "ProcessReply  replyType problem  ";
        }
        if (m_replyCode != reply.GetReplyCode()) {
            KEL_TRACE(KEL_TRACE_PBLM, "KELOutputBase", this) << "KEL :"
                                                             << "ProcessReply  Reply Code != reply and != event ";
        }
        // An argument absent from a reply leaves its element as it was.
        ForEachValueElement(GetContainer(), [&](IPresentationElement& element, KELValueElement& shown) {
            const TValue& value = reply[element.GetID()];
            if (value.IsPresent())
                shown.SetValue(value);
        });
    } catch (const TException& e) {
        KEL_TRACE(KEL_TRACE_EXCP, "KELOutputBase", this) << "KEL :" << e;
    } catch (...) {
        KEL_TRACE(KEL_TRACE_EXCP, "KELOutputBase", this) << "KEL : "
                                                         << "Unknown exception in ProcessReply";
    }
}
