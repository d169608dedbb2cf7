// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

class ICustomField;
class KELTextReader;

/// One named section of a configuration file:
///
///     [ Display ]
///         Width = 640
///     [ End Display ]
///
/// followed by an empty line. Field names are case-sensitive and unique; the
/// section owns its fields. Fields are written in the order they were first
/// read or added, though nothing may rely on an order.
class KEL_EXPORT ISection {
public:
    ISection();
    explicit ISection(std::string name);
    ISection(const ISection&) = delete;
    ISection& operator=(const ISection&) = delete;
    virtual ~ISection();

    void GetSectionName(std::string& name) const { name = GetSectionName(); }
    const std::string& GetSectionName() const;

    /// Reads the next section from the file: 1 success; 5 invalid begin line;
    /// 4 invalid end line; 8 end of file. Fields read before a failure stay.
    int Load(KELTextReader& file);
    /// Appends the section in the file format.
    void Save(std::string& out) const;

    /// 1 and the value when the field exists; otherwise 0 and value untouched.
    int GetString(std::string_view name, std::string& value) const;
    /// The field's value, or null; no copy and no trace, for lookups on hot paths.
    const std::string* FindValue(std::string_view name) const;
    /// Replaces the field's value, adding the field when it is missing. A name
    /// or value with a line end is refused (traced, nothing changes): it could
    /// not be read back.
    void SetString(std::string_view name, std::string_view value);
    /// 0 when a field of that name exists or a text holds a line end (nothing
    /// changes), else adds it: 1.
    int AddField(std::string_view name, std::string_view value);
    /// 0 when absent, else removes and destroys the field: 1.
    int RemoveField(std::string_view name);

    std::size_t GetFieldCount() const;
    const ICustomField& GetField(std::size_t index) const;

    std::unique_ptr<ISection> Clone() const;
    /// Null when the name is empty.
    std::unique_ptr<ISection> CloneWithName(std::string_view name) const;

    void DumpDebug(std::ostream& out) const;

protected:
    void SetSectionName(std::string name);

private:
    int ValidBeginSection(KELTextReader& file);
    int ValidEndSection(KELTextReader& file);

    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};
