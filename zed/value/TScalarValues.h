// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The values that hold one plain content: truth values, texts, numbers and
// attribute identifiers. They differ only in data type code and content
// type, so one template carries them all.

#include "zed/value/TValue.h"

#include <cstdint>
#include <string>

/// Text forms of contents, shared by every scalar kind.
ZED_EXPORT std::string ZedContentText(bool value);
ZED_EXPORT std::string ZedContentText(const std::string& value);
ZED_EXPORT std::string ZedContentText(std::int64_t value);
ZED_EXPORT std::string ZedContentText(std::uint64_t value);
ZED_EXPORT std::string ZedContentText(double value);
ZED_EXPORT std::string ZedContentText(float value);

/// What the scalar values share: one content of type Content under data type DT.
template <typename Derived, ZED_T_DATATYPE DT, typename Content>
class TScalarValue : public TValue {
public:
    using ContentType = Content;
    static constexpr ZED_T_DATATYPE kDatatype = DT;

    /// An absent value.
    TScalarValue() = default;
    /// A present value.
    explicit TScalarValue(Content value, unsigned int id = 0) : TValue(id), m_value(std::move(value)) {}

    ZED_T_DATATYPE GetDatatype() const override { return DT; }

    const Content& GetValue() const { return m_value; }
    void SetValue(Content value)
    {
        m_value = std::move(value);
        MarkPresent();
    }

protected:
    std::unique_ptr<TValue> CloneValue() const override
    {
        return std::make_unique<Derived>(static_cast<const Derived&>(*this));
    }
    std::string ContentText() const override
    {
        if constexpr (std::is_integral_v<Content> && !std::is_same_v<Content, bool>) {
            if constexpr (std::is_signed_v<Content>)
                return ZedContentText(static_cast<std::int64_t>(m_value));
            else
                return ZedContentText(static_cast<std::uint64_t>(m_value));
        } else {
            return ZedContentText(m_value);
        }
    }
    bool SameContent(const TValue& other) const override
    {
        return m_value == static_cast<const TScalarValue&>(other).m_value;
    }

private:
    Content m_value{};
};

#define ZED_SCALAR_VALUE(Name, DT, Content)                                                                            \
    class ZED_EXPORT Name final : public TScalarValue<Name, DT, Content> {                                             \
    public:                                                                                                            \
        using TScalarValue::TScalarValue;                                                                              \
        ~Name() override;                                                                                              \
    }

ZED_SCALAR_VALUE(TBoolean, ZED_DT_BOOLEAN, bool);
ZED_SCALAR_VALUE(TLatin1String, ZED_DT_LATIN1STRING, std::string);
ZED_SCALAR_VALUE(TSimpleName, ZED_DT_SIMPLENAME, std::string);
ZED_SCALAR_VALUE(TFullName, ZED_DT_FULLNAME, std::string);
/// Octets shown and entered as text.
ZED_SCALAR_VALUE(TOctetString, ZED_DT_OCTETSTRING, std::string);
ZED_SCALAR_VALUE(TInteger16, ZED_DT_INTEGER16, std::int16_t);
ZED_SCALAR_VALUE(TInteger32, ZED_DT_INTEGER32, std::int32_t);
ZED_SCALAR_VALUE(TUnsigned16, ZED_DT_UNSIGNED16, std::uint16_t);
ZED_SCALAR_VALUE(TUnsigned32, ZED_DT_UNSIGNED32, std::uint32_t);
ZED_SCALAR_VALUE(TCounter16, ZED_DT_COUNTER16, std::uint16_t);
ZED_SCALAR_VALUE(TCounter32, ZED_DT_COUNTER32, std::uint32_t);
ZED_SCALAR_VALUE(TFloat, ZED_DT_FLOAT, float);
ZED_SCALAR_VALUE(TReal, ZED_DT_REAL, double);

#undef ZED_SCALAR_VALUE

/// The identifier of an attribute, as a value (data type 83). The name, when a
/// producer knows it, is what the text form shows; equality is by code.
class ZED_EXPORT TAttributeID final : public TScalarValue<TAttributeID, ZED_DT_ATTRIBUTEID, std::uint32_t> {
public:
    using TScalarValue::TScalarValue;
    TAttributeID(std::uint32_t code, std::string name, unsigned int id = 0);
    ~TAttributeID() override;

    const std::string& GetName() const { return m_name; }
    void SetName(std::string name) { m_name = std::move(name); }

protected:
    std::string ContentText() const override;

private:
    std::string m_name;
};

/// A value of one of the reserved kinds 14, 15 and 16, kept as text.
class ZED_EXPORT TOpaque final : public TValue {
public:
    explicit TOpaque(ZED_T_DATATYPE datatype);
    TOpaque(ZED_T_DATATYPE datatype, std::string text, unsigned int id = 0);
    ~TOpaque() override;

    ZED_T_DATATYPE GetDatatype() const override { return m_datatype; }
    const std::string& GetValue() const { return m_text; }
    void SetValue(std::string text);

protected:
    std::unique_ptr<TValue> CloneValue() const override;
    std::string ContentText() const override { return m_text; }
    bool SameContent(const TValue& other) const override;

private:
    ZED_T_DATATYPE m_datatype;
    std::string m_text;
};
