// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <atomic>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

class KELTextReader;

/// One entry of a configuration section, written "    name = value". Name and
/// value are read trimmed, so blanks at either end of a value do not survive a
/// save and load; a value may hold "=" but never a line feed.
///
/// A field its section read from a file keeps its value as a view of the
/// file's text, which the section keeps, until the value is first asked for:
/// most values of a large file are never read, and copying each at load time
/// would cost an allocation. Asking is safe from several threads at once. A
/// copy of a field always owns its value.
class KEL_EXPORT ICustomField {
public:
    ICustomField() = default;
    ICustomField(std::string name, std::string value);
    /// Only a section makes this key: its fields may view the text it keeps.
    class ViewOf {
        friend class ISection;
        friend class ICustomField;
        ViewOf() = default;
    };
    /// A field whose value views text that its section keeps alive.
    ICustomField(ViewOf, std::string_view name, std::string_view value) : m_fieldName(name), m_text(value) {}
    ICustomField(const ICustomField& other);
    ICustomField& operator=(const ICustomField& other);
    ICustomField(ICustomField&& other) noexcept;
    ICustomField& operator=(ICustomField&& other) noexcept;
    ~ICustomField();

    const std::string& GetFieldName() const { return m_fieldName; }
    const std::string& GetValue() const
    {
        const std::string* value = m_value.load(std::memory_order_acquire);
        return value ? *value : CopyOfText();
    }
    void SetValue(std::string value);

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

    friend bool operator==(const ICustomField& a, const ICustomField& b)
    {
        return a.m_fieldName == b.m_fieldName && a.Text() == b.Text();
    }

protected:
    void SetFieldName(std::string name) { m_fieldName = std::move(name); }

private:
    friend class ISection;

    /// The next field line's name and value, trimmed, with the statuses of Load.
    static int ReadLine(KELTextReader& file, std::string_view& name, std::string_view& value);

    /// A copy viewing the same text, for a holder that keeps that text too.
    ICustomField ViewingCopy() const;
    /// The value without copying it out of the text it views.
    std::string_view Text() const
    {
        const std::string* value = m_value.load(std::memory_order_acquire);
        return value ? std::string_view(*value) : m_text;
    }
    const std::string& CopyOfText() const;

    std::string m_fieldName;
    std::string_view m_text;                             // the value, until it is first asked for
    mutable std::atomic<std::string*> m_value{nullptr};  // owned; null while the value is a view
};
