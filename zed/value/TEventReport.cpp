// SPDX-License-Identifier: BSD-3-Clause
#include "zed/value/TEventReport.h"

#include "zed/value/TTimeValues.h"

TEventReport::TEventReport(unsigned int eventId, unsigned int id) : TValue(id), m_eventId(eventId) {}

TEventReport::~TEventReport() = default;

std::unique_ptr<TValue> TEventReport::CloneValue() const { return std::make_unique<TEventReport>(*this); }

std::string TEventReport::ContentText() const
{
    std::string text =
        "event " + std::to_string(m_eventId) + " of " + m_entity.ToString() + " at " + TAbsTime::Format(m_time) + " {";
    for (std::size_t i = 0; i < m_arguments.Size(); ++i)
        text += (i ? ", " : " ") + std::to_string(m_arguments.At(i).GetID()) + " = " + m_arguments.At(i).ToString();
    return text + (m_arguments.Size() ? " }" : "}");
}

bool TEventReport::SameContent(const TValue& other) const
{
    const auto& that = static_cast<const TEventReport&>(other);
    return m_eventId == that.m_eventId && m_entity == that.m_entity && m_time == that.m_time
           && m_arguments == that.m_arguments;
}
