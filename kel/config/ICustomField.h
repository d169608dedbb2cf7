#pragma once

#include "kel/KELExport.h"

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

class KELTextReader;

/// One entry of a configuration section, written "    name = value". Name and
/// value are read trimmed, so blanks at either end of a value do not survive a
/// save and load; a value may hold "=" but never a line feed.
class KEL_EXPORT ICustomField {
public:
    ICustomField() = default;
    ICustomField(std::string name, std::string value);

    const std::string& GetFieldName() const { return m_fieldName; }
    const std::string& GetValue() const { return m_value; }
    void SetValue(std::string value) { m_value = std::move(value); }

    /// Reads the next field line: 1 field read, 3 a line without "=" (dropped),
    /// 6 a "[" line reached (the reader is set back to its start), 8 end of file.
    /// Blank and comment lines are passed over.
    int Load(KELTextReader& file);
    /// Appends the field's line to the text being written.
    void Save(std::string& out) const;

    /// The name part of a field line: 1, or 3 and an empty name without "=".
    static int GetFieldName(std::string_view line, std::string& name);
    /// The value part of a field line; empty without "=".
    static void GetFieldValue(std::string_view line, std::string& value);

    std::unique_ptr<ICustomField> Clone() const;
    void DumpDebug(std::ostream& out) const;

    friend bool operator==(const ICustomField&, const ICustomField&) = default;

protected:
    void SetFieldName(std::string name) { m_fieldName = std::move(name); }

private:
    std::string m_value;
    std::string m_fieldName;
};
