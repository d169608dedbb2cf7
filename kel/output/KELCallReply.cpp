// SPDX-License-Identifier: BSD-3-Clause
#include "kel/output/KELCallReply.h"

#include "zed/call/TCall.h"

KELCallReply::KELCallReply(const TCall& call)
    : m_entity(call.GetOutEntity()), m_timeStamp(call.GetTimeStamp()), m_reply(call.GetReply()),
      m_callStatus(call.GetStatus())
{
}

KELCallReply::~KELCallReply() = default;

KELCallReplyList::KELCallReplyList() = default;

KELCallReplyList::~KELCallReplyList() { Clean(); }

void KELCallReplyList::AddAll(const TCall& call)
{
    // Selecting moves the call's cursor, so a copy walks the replies.
    TCall walker(call);
    for (std::size_t i = 0; walker.SelectReply(i); ++i)
        AddTail(std::make_unique<KELCallReply>(walker));
}

std::unique_ptr<KELCallReply> KELCallReplyList::RemoveHead()
{
    if (m_replies.empty())
        return nullptr;
    std::unique_ptr<KELCallReply> head = std::move(m_replies.front());
    m_replies.pop_front();
    return head;
}

void KELCallReplyList::Clean()
{
    while (!m_replies.empty())
        RemoveHead();
}
