// SPDX-License-Identifier: BSD-3-Clause
#include "zed/value/TScalarValues.h"

#include <charconv>

namespace {

template <typename Number>
std::string NumberText(Number n)
{
    char buffer[64];
    auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, n);
    return ec == std::errc() ? std::string(buffer, end) : std::string();
}

}  // namespace

std::string ZedContentText(bool value) { return value ? "TRUE" : "FALSE"; }
std::string ZedContentText(const std::string& value) { return value; }
std::string ZedContentText(std::int64_t value) { return NumberText(value); }
std::string ZedContentText(std::uint64_t value) { return NumberText(value); }
std::string ZedContentText(double value) { return NumberText(value); }
std::string ZedContentText(float value) { return NumberText(value); }

// Out-of-line destructors anchor each class's virtual table in this library.
TBoolean::~TBoolean() = default;
TLatin1String::~TLatin1String() = default;
TSimpleName::~TSimpleName() = default;
TFullName::~TFullName() = default;
TOctetString::~TOctetString() = default;
TInteger16::~TInteger16() = default;
TInteger32::~TInteger32() = default;
TUnsigned16::~TUnsigned16() = default;
TUnsigned32::~TUnsigned32() = default;
TCounter16::~TCounter16() = default;
TCounter32::~TCounter32() = default;
TFloat::~TFloat() = default;
TReal::~TReal() = default;

TAttributeID::TAttributeID(std::uint32_t code, std::string name, unsigned int id)
    : TScalarValue(code, id), m_name(std::move(name))
{
}

TAttributeID::~TAttributeID() = default;

std::string TAttributeID::ContentText() const
{
    return m_name.empty() ? ZedContentText(static_cast<std::uint64_t>(GetValue())) : m_name;
}

TOpaque::TOpaque(ZED_T_DATATYPE datatype) : m_datatype(datatype) {}

TOpaque::TOpaque(ZED_T_DATATYPE datatype, std::string text, unsigned int id)
    : TValue(id), m_datatype(datatype), m_text(std::move(text))
{
}

TOpaque::~TOpaque() = default;

void TOpaque::SetValue(std::string text)
{
    m_text = std::move(text);
    MarkPresent();
}

std::unique_ptr<TValue> TOpaque::CloneValue() const { return std::make_unique<TOpaque>(*this); }

bool TOpaque::SameContent(const TValue& other) const { return m_text == static_cast<const TOpaque&>(other).m_text; }
