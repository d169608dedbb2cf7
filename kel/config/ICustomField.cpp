// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/ICustomField.h"

#include "kel/config/KELConfigStatus.h"
#include "kel/config/KELTextReader.h"
#include "kel/config/KELTextTrim.h"
#include "kel/frame/KELTrace.h"

#include <mutex>
#include <ostream>

namespace {
constexpr const char* kSource = "KELCustomField";
}

ICustomField::ICustomField(std::string name, std::string value)
    : m_fieldName(std::move(name)), m_value(new std::string(std::move(value)))
{
}

ICustomField::ICustomField(const ICustomField& other)
    : m_fieldName(other.m_fieldName), m_value(new std::string(other.Text()))
{
}

ICustomField& ICustomField::operator=(const ICustomField& other)
{
    if (this != &other) {
        m_fieldName = other.m_fieldName;
        SetValue(std::string(other.Text()));
    }
    return *this;
}

ICustomField::ICustomField(ICustomField&& other) noexcept
    : m_fieldName(std::move(other.m_fieldName)), m_text(other.m_text),
      m_value(other.m_value.exchange(nullptr, std::memory_order_relaxed))
{
    other.m_text = {};
}

ICustomField& ICustomField::operator=(ICustomField&& other) noexcept
{
    if (this != &other) {
        m_fieldName = std::move(other.m_fieldName);
        m_text = other.m_text;
        other.m_text = {};
        delete m_value.exchange(other.m_value.exchange(nullptr, std::memory_order_relaxed), std::memory_order_relaxed);
    }
    return *this;
}

ICustomField::~ICustomField() { delete m_value.load(std::memory_order_relaxed); }

ICustomField ICustomField::ViewingCopy() const
{
    if (m_value.load(std::memory_order_acquire))
        return *this;
    return ICustomField(ViewOf{}, m_fieldName, m_text);
}

const std::string& ICustomField::CopyOfText() const
{
    // The first reader copies; one lock for all fields, taken once per field.
    static std::mutex copying;
    const std::lock_guard<std::mutex> lock(copying);
    std::string* value = m_value.load(std::memory_order_relaxed);
    if (!value) {
        value = new std::string(m_text);
        m_value.store(value, std::memory_order_release);
    }
    return *value;
}

void ICustomField::SetValue(std::string value)
{
    m_text = {};
    if (std::string* owned = m_value.load(std::memory_order_relaxed))
        *owned = std::move(value);
    else
        m_value.store(new std::string(std::move(value)), std::memory_order_release);
}

int ICustomField::ReadLine(KELTextReader& file, std::string_view& name, std::string_view& value)
{
    std::string_view line;
    std::size_t start;
    do {
        start = file.GetPosition();
        if (!file.ReadLine(line))
            return KEL_CFG_EOF;
        line = KELTrimLeft(line);
    } while (KELIsSkippedLine(line));

    line = KELTrimRight(line);
    if (line.front() == '[') {
        // The end line belongs to the section reader: give it back.
        file.Seek(start);
        KEL_TRACE(KEL_TRACE_PBLM, kSource, nullptr) << "KEL End section reached";
        return KEL_CFG_END_OF_FIELDS;
    }
    const auto equals = line.find('=');
    if (equals == std::string_view::npos)
        return KEL_CFG_NO_EQUALS;
    name = KELTrimRight(line.substr(0, equals));
    value = KELTrimLeft(line.substr(equals + 1));
    return KEL_CFG_SUCCESS;
}

int ICustomField::Load(KELTextReader& file)
{
    std::string_view name, value;
    const int status = ReadLine(file, name, value);
    if (status == KEL_CFG_SUCCESS) {
        m_fieldName.assign(name);
        SetValue(std::string(value));
    }
    return status;
}

void ICustomField::Save(std::string& out) const
{
    const std::string_view value = Text();
    out.append("    ").append(m_fieldName).append(" = ").append(value).push_back('\n');
    KEL_TRACE(KEL_TRACE_PBLM, kSource, this) << "ICustomField::Save " << m_fieldName << " = " << value;
}

int ICustomField::GetFieldName(std::string_view line, std::string& name)
{
    const auto equals = line.find('=');
    if (equals == std::string_view::npos) {
        name.clear();
        return KEL_CFG_NO_EQUALS;
    }
    name.assign(KELTrim(line.substr(0, equals)));
    return KEL_CFG_SUCCESS;
}

void ICustomField::GetFieldValue(std::string_view line, std::string& value)
{
    const auto equals = line.find('=');
    if (equals == std::string_view::npos)
        value.clear();
    else
        value.assign(KELTrim(line.substr(equals + 1)));
}

std::unique_ptr<ICustomField> ICustomField::Clone() const { return std::make_unique<ICustomField>(*this); }

void ICustomField::DumpDebug(std::ostream& out) const
{
    out << "        " << m_fieldName << " = " << Text() << std::endl;
}
