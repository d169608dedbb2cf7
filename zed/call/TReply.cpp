// SPDX-License-Identifier: BSD-3-Clause
#include "zed/call/TReply.h"

#include "zed/trace/TTraceStream.h"

TReply::TReply() = default;
TReply::TReply(unsigned int replyType, unsigned int replyCode) : m_replyType(replyType), m_replyCode(replyCode) {}
TReply::~TReply() = default;
TReply::TReply(const TReply&) = default;
TReply& TReply::operator=(const TReply&) = default;
TReply::TReply(TReply&&) noexcept = default;
TReply& TReply::operator=(TReply&&) noexcept = default;

std::string TReply::ToString() const
{
    std::string text = (m_replyType == ZED_REPLY_RESPONSE ? "response " : "exception ") + std::to_string(m_replyCode);
    text += " {";
    for (std::size_t i = 0; i < m_values.Size(); ++i)
        text += (i ? ", " : " ") + std::to_string(m_values.At(i).GetID()) + " = " + m_values.At(i).ToString();
    return text + (m_values.Size() ? " }" : "}");
}

TTraceStream& operator<<(TTraceStream& stream, const TReply& reply)
{
    if (stream.IsActive())
        stream << reply.ToString();
    return stream;
}

const TValue* TReply::FindFirst(ZED_T_DATATYPE datatype) const
{
    for (std::size_t i = 0; i < Size(); ++i)
        if (At(i).GetDatatype() == datatype)
            return &At(i);
    return nullptr;
}
