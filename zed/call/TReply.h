// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "zed/value/TValueList.h"

#include <string>

/// What GetReplyType answers.
inline constexpr unsigned int ZED_REPLY_RESPONSE = 0;
inline constexpr unsigned int ZED_REPLY_EXCEPTION = 1;

/// One reply to a directive: a response or an exception, its code in the
/// dictionary, and its argument values found by argument identifier.
class ZED_EXPORT TReply {
public:
    TReply();
    TReply(unsigned int replyType, unsigned int replyCode);
    ~TReply();
    TReply(const TReply&);
    TReply& operator=(const TReply&);
    TReply(TReply&&) noexcept;
    TReply& operator=(TReply&&) noexcept;

    /// 0 for a response, non-zero for an exception.
    unsigned int GetReplyType() const { return m_replyType; }
    unsigned int GetReplyCode() const { return m_replyCode; }

    void Add(const TValue& value) { m_values.Put(value); }
    void Add(TValuePtr value) { m_values.Put(std::move(value)); }
    /// The value of that argument, or an absent value.
    const TValue& operator[](unsigned int argumentId) const { return m_values[argumentId]; }
    std::size_t Size() const { return m_values.Size(); }
    const TValue& At(std::size_t index) const { return m_values.At(index); }
    /// The first value of that data type in reply order (an event report, an
    /// attribute list), or null.
    const TValue* FindFirst(ZED_T_DATATYPE datatype) const;

    /// "response 1 { 3 = up, ... }"
    std::string ToString() const;

private:
    unsigned int m_replyType = ZED_REPLY_RESPONSE;
    unsigned int m_replyCode = 0;
    TValueList m_values;
};

/// Walks a reply's values in order.
class ZED_EXPORT TReplyIterator {
public:
    explicit TReplyIterator(const TReply& reply) : m_reply(reply) {}

    void First() { m_index = 0; }
    bool IsValid() const { return m_index < m_reply.Size(); }
    void Next() { ++m_index; }
    const TValue& Get() const { return m_reply.At(m_index); }

private:
    const TReply& m_reply;
    std::size_t m_index = 0;
};

class TTraceStream;
ZED_EXPORT TTraceStream& operator<<(TTraceStream& stream, const TReply& reply);
