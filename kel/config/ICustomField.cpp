#include "kel/config/ICustomField.h"

#include "kel/config/KELConfigStatus.h"
#include "kel/config/KELTextReader.h"
#include "kel/config/KELTextTrim.h"
#include "kel/frame/KELTrace.h"

#include <ostream>

namespace {
constexpr const char* kSource = "KELCustomField";
}

ICustomField::ICustomField(std::string name, std::string value) : m_value(std::move(value)), m_fieldName(std::move(name)) {}

int ICustomField::Load(KELTextReader& file)
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
        KEL_TRACE(KEL_TRACE_PBLM, kSource, this) << "KEL End section reached";
        return KEL_CFG_END_OF_FIELDS;
    }
    const auto equals = line.find('=');
    if (equals == std::string_view::npos)
        return KEL_CFG_NO_EQUALS;
    // Assigning in place keeps the strings' buffers when a field object is reused.
    m_fieldName.assign(KELTrim(line.substr(0, equals)));
    m_value.assign(KELTrim(line.substr(equals + 1)));
    return KEL_CFG_SUCCESS;
}

void ICustomField::Save(std::string& out) const
{
    out.append("    ").append(m_fieldName).append(" = ").append(m_value).push_back('\n');
    KEL_TRACE(KEL_TRACE_PBLM, kSource, this) << "ICustomField::Save " << m_fieldName << " = " << m_value;
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
    out << "        " << m_fieldName << " = " << m_value << std::endl;
}
