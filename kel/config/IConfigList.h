// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <string>

/// Walks a list of items held in one string ("Arg:3,Arg:7") without copying
/// it; the caller's string must outlive the walk. An empty text is one empty
/// item, and a text ending with the separator ends with an empty item.
class KEL_EXPORT IConfigList {
public:
    IConfigList(const std::string& text, char separator) : m_text(text), m_separator(separator) {}

    long GetHeadPosition() const { return 0; }
    /// The item at the position (untrimmed) and the next position, -1 at the end.
    long GetNext(std::string& item, long position) const;
    /// The zero-based index of the first item equal to the text ignoring case, or -1.
    long FindAndGetIndex(const char* text) const;

private:
    const std::string& m_text;
    char m_separator;
};
