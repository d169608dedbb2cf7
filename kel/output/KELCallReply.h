// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "zed/call/TReply.h"
#include "zed/value/TEntitySpec.h"
#include "zed/value/TTimeValues.h"

#include <list>
#include <memory>

class TCall;

/// What one synchronous call brought back, kept after the call is gone: the
/// entity that answered, when, the reply and the call's status. All copies.
class KEL_EXPORT KELCallReply {
public:
    /// Reads the call's current reply (TCall::SelectReply chooses which).
    explicit KELCallReply(const TCall& call);
    KELCallReply(const KELCallReply&) = default;
    KELCallReply& operator=(const KELCallReply&) = default;
    virtual ~KELCallReply();

    const TReply& Reply() const { return m_reply; }
    const TEntitySpec& Entity() const { return m_entity; }
    const TAbsTime& TimeStamp() const { return m_timeStamp; }
    unsigned int CallStatus() const { return m_callStatus; }

private:
    TEntitySpec m_entity;
    TAbsTime m_timeStamp;
    TReply m_reply;
    unsigned int m_callStatus;
};

/// An owning run of call replies (one directive to many entities, or issued
/// again and again). A null entry is allowed and owns nothing.
class KEL_EXPORT KELCallReplyList {
public:
    KELCallReplyList();
    KELCallReplyList(const KELCallReplyList&) = delete;
    KELCallReplyList& operator=(const KELCallReplyList&) = delete;
    virtual ~KELCallReplyList();

    void AddTail(std::unique_ptr<KELCallReply> reply) { m_replies.push_back(std::move(reply)); }
    /// One reply for every reply the call holds, in the call's order.
    void AddAll(const TCall& call);
    std::unique_ptr<KELCallReply> RemoveHead();
    bool IsEmpty() const { return m_replies.empty(); }
    std::size_t GetCount() const { return m_replies.size(); }
    const std::list<std::unique_ptr<KELCallReply>>& Replies() const { return m_replies; }
    /// Deletes every reply, from head to tail.
    void Clean();

private:
    std::list<std::unique_ptr<KELCallReply>> m_replies;
};
