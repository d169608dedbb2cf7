// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "zed/value/TEntitySpec.h"
#include "zed/value/TValueList.h"

#include <cstdint>

/// An event report (data type 80): which event, from which entity, when, and
/// the event's argument values found by argument identifier.
class ZED_EXPORT TEventReport final : public TValue {
public:
    explicit TEventReport(unsigned int eventId = 0, unsigned int id = 0);
    ~TEventReport() override;

    ZED_T_DATATYPE GetDatatype() const override { return ZED_DT_EVENTREPORT; }

    unsigned int GetEventID() const { return m_eventId; }
    const TEntitySpec& GetEntity() const { return m_entity; }
    void SetEntity(TEntitySpec entity) { m_entity = std::move(entity); }
    /// Milliseconds since 1970-01-01 UTC.
    std::int64_t GetTime() const { return m_time; }
    void SetTime(std::int64_t milliseconds) { m_time = milliseconds; }

    void Add(const TValue& argument) { m_arguments.Put(argument); }
    void Add(TValuePtr argument) { m_arguments.Put(std::move(argument)); }
    /// The argument's value, or an absent value.
    const TValue& operator[](unsigned int argumentId) const { return m_arguments[argumentId]; }
    const TValueList& GetArguments() const { return m_arguments; }

protected:
    std::unique_ptr<TValue> CloneValue() const override;
    /// "event 3 of Network core at 2026-11-22 09:00:00 { ... }"
    std::string ContentText() const override;
    bool SameContent(const TValue& other) const override;

private:
    unsigned int m_eventId;
    TEntitySpec m_entity;
    std::int64_t m_time = 0;
    TValueList m_arguments;
};
