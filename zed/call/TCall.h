// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "zed/call/TReply.h"
#include "zed/call/TRequest.h"
#include "zed/value/TEntitySpec.h"
#include "zed/value/TTimeValues.h"

#include <vector>

/// Call statuses (TSyncCall::GetStatus).
inline constexpr unsigned int ZED_STATUS_RESPONSE = 52854857;
/// A common exception: its text stands on the entity's class, null instance,
/// under directive 55.
inline constexpr unsigned int ZED_STATUS_COMMON_EXCEPTION = 52854873;
inline constexpr unsigned int ZED_STATUS_SPECIALISED_EXCEPTION = 52854881;

/// What one entity answered to a call.
struct ZED_EXPORT TCallResult {
    TEntitySpec outEntity;
    TAbsTime timeStamp;
    TReply reply;
    unsigned int status = ZED_STATUS_RESPONSE;
};

/// A directive on an entity with its request: what goes out, and what came
/// back. A call to a wildcard instance comes back once per instance; the
/// accessors show the current reply, SelectReply moves between them.
class ZED_EXPORT TCall {
public:
    TCall(TEntitySpec entity, unsigned int directive, TRequest request = {});
    TCall(const TCall&);
    TCall& operator=(const TCall&);
    virtual ~TCall();

    const TEntitySpec& GetEntity() const { return m_entity; }
    unsigned int GetDirective() const { return m_directive; }
    const TRequest& GetRequest() const { return m_request; }
    TRequest& GetRequest() { return m_request; }

    std::size_t GetReplyCount() const { return m_results.size(); }
    /// False (and nothing changes) past the last reply.
    bool SelectReply(std::size_t index);
    std::size_t GetSelectedReply() const { return m_selected; }

    /// The current reply's entity, time, reply and status. Before the call has
    /// been carried out: the call's entity, time 0, an empty response, and the
    /// response status.
    const TEntitySpec& GetOutEntity() const;
    const TAbsTime& GetTimeStamp() const;
    const TReply& GetReply() const;
    unsigned int GetStatus() const;

protected:
    void SetResults(std::vector<TCallResult> results);

private:
    const TCallResult* Current() const;

    TEntitySpec m_entity;
    unsigned int m_directive;
    TRequest m_request;
    std::vector<TCallResult> m_results;
    std::size_t m_selected = 0;
};

/// A call carried out at once by the management module of the entity's class.
class ZED_EXPORT TSyncCall : public TCall {
public:
    using TCall::TCall;
    ~TSyncCall() override;

    /// Carries the call out; the first reply is then current. Returns its
    /// status. Throws TException when no module takes the entity's class.
    unsigned int Execute();
};
