// SPDX-License-Identifier: BSD-3-Clause
#include "zed/value/TValue.h"

#include "zed/trace/TTraceStream.h"

#include <typeinfo>

namespace {

// What Absent() answers: a value of no kind.
class TNoValue final : public TValue {
public:
    ZED_T_DATATYPE GetDatatype() const override { return ZED_DT_MARKER; }

protected:
    std::unique_ptr<TValue> CloneValue() const override { return std::make_unique<TNoValue>(*this); }
    std::string ContentText() const override { return {}; }
    bool SameContent(const TValue&) const override { return true; }
};

}  // namespace

TValue::~TValue() = default;

void TValue::SetReason(unsigned int reason)
{
    m_reason = reason;
    m_reasonDetail.reset();
    m_present = true;
}

void TValue::SetReason(unsigned int reason, const std::string& detail)
{
    SetReason(reason);
    m_reasonDetail = detail.empty() ? nullptr : std::make_shared<const std::string>(detail);
}

std::string TValue::ToString() const
{
    if (m_reason && m_reasonDetail) {
        std::string text = ReasonText(*m_reason);
        return text.insert(text.size() - 1, ": " + *m_reasonDetail);
    }
    if (m_reason)
        return ReasonText(*m_reason);
    return m_present ? ContentText() : std::string();
}

bool TValue::operator==(const TValue& other) const
{
    if (typeid(*this) != typeid(other) || GetDatatype() != other.GetDatatype() || m_id != other.m_id
        || m_present != other.m_present || m_default != other.m_default || m_reason != other.m_reason)
        return false;
    return !m_present || m_reason || SameContent(other);
}

std::string TValue::ReasonText(unsigned int reason)
{
    switch (reason) {
    case ZED_REASON_NOT_AVAILABLE: return "(not available)";
    case ZED_REASON_ACCESS_DENIED: return "(access denied)";
    case ZED_REASON_NO_SUCH_ATTRIBUTE: return "(no such attribute)";
    case ZED_REASON_NOT_IMPLEMENTED: return "(not implemented)";
    case ZED_REASON_INVALID_VALUE: return "(invalid value)";
    default: return "(reason " + std::to_string(reason) + ")";
    }
}

const TValue& TValue::Absent()
{
    static const TNoValue absent;
    return absent;
}

TTraceStream& operator<<(TTraceStream& stream, const TValue& value)
{
    // Text is built only for a line that is written.
    if (stream.IsActive())
        stream << value.ToString();
    return stream;
}
