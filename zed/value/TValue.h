// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "zed/ZedExport.h"
#include "zed/value/ZedDatatypes.h"

#include <memory>
#include <optional>
#include <string>

class TDictType;
class TTraceStream;

/// A value of the management model: the argument of a request, a value of a
/// reply, a member of a record. Every value has
///   - an identifier: the code of the argument, attribute or member it is;
///   - presence: a value made without content is absent until it gets one;
///   - a default mark: "let the server use its default" (SetDefault);
///   - an optional reason code, set by a server that could not give the
///     content ("access denied"); a value with a reason is present.
/// Values are copied deeply with Clone; composites own their parts.
class ZED_EXPORT TValue {
public:
    virtual ~TValue();

    virtual ZED_T_DATATYPE GetDatatype() const = 0;
    /// The dictionary type that a composite value was made from (record,
    /// set-of, sequence-of, enumeration, user-defined), so that its parts can
    /// be named; null for scalars and for composites made without one.
    virtual const TDictType* GetDictType() const { return nullptr; }

    unsigned int GetID() const { return m_id; }
    void SetID(unsigned int id) { m_id = id; }

    bool IsPresent() const { return m_present; }

    bool IsDefault() const { return m_default; }
    void SetDefault(bool isDefault = true) { m_default = isDefault; }

    bool HasReason() const { return m_reason.has_value(); }
    unsigned int GetReason() const { return m_reason.value_or(0); }
    void SetReason(unsigned int reason);
    /// A reason with what was seen, for people: "(invalid value: OCTET
    /// STRING abc does not fit Integer32)".
    void SetReason(unsigned int reason, const std::string& detail);
    /// The detail of the reason; empty when none was given.
    std::string GetReasonDetail() const { return m_reasonDetail ? *m_reasonDetail : std::string(); }

    std::unique_ptr<TValue> Clone() const { return CloneValue(); }

    /// The value as text: the content's text form, or the reason's text (and
    /// its detail) when the value carries a reason; empty for an absent value.
    std::string ToString() const;

    /// Same kind, identifier, presence, default mark, reason and content.
    bool operator==(const TValue& other) const;

    /// The text of a reason code: "(access denied)" and the like.
    static std::string ReasonText(unsigned int reason);

    /// The one shared value that lookups answer for an identifier that is not
    /// there: absent, of data type ZED_DT_MARKER.
    static const TValue& Absent();

protected:
    TValue() = default;
    explicit TValue(unsigned int id, bool present = true) : m_id(id), m_present(present) {}
    TValue(const TValue&) = default;
    TValue& operator=(const TValue&) = default;

    void MarkPresent() { m_present = true; }

    virtual std::unique_ptr<TValue> CloneValue() const = 0;
    /// The content's text; only called on present values without a reason.
    virtual std::string ContentText() const = 0;
    /// Compares contents; other is of the same dynamic class.
    virtual bool SameContent(const TValue& other) const = 0;

private:
    unsigned int m_id = 0;
    bool m_present = false;
    bool m_default = false;
    std::optional<unsigned int> m_reason;
    std::shared_ptr<const std::string> m_reasonDetail;  // rare: shared, not copied, between clones
};

using TValuePtr = std::unique_ptr<TValue>;

/// Trace lines show a value by its text form (an entity specification too).
ZED_EXPORT TTraceStream& operator<<(TTraceStream& stream, const TValue& value);

/// Reason codes that servers give instead of a value.
inline constexpr unsigned int ZED_REASON_NOT_AVAILABLE = 1;
inline constexpr unsigned int ZED_REASON_ACCESS_DENIED = 2;
inline constexpr unsigned int ZED_REASON_NO_SUCH_ATTRIBUTE = 3;
inline constexpr unsigned int ZED_REASON_NOT_IMPLEMENTED = 4;
inline constexpr unsigned int ZED_REASON_INVALID_VALUE = 5;
