// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/IConfigList.h"

#include <strings.h>

long IConfigList::GetNext(std::string& item, long position) const
{
    if (position < 0 || static_cast<std::size_t>(position) > m_text.size()) {
        item.clear();
        return -1;
    }
    const std::size_t start = static_cast<std::size_t>(position);
    const std::size_t separator = m_text.find(m_separator, start);
    if (separator == std::string::npos) {
        item = m_text.substr(start);
        return -1;
    }
    item = m_text.substr(start, separator - start);
    return static_cast<long>(separator + 1);
}

long IConfigList::FindAndGetIndex(const char* text) const
{
    std::string item;
    long index = 0;
    for (long position = GetHeadPosition(); position >= 0; ++index) {
        position = GetNext(item, position);
        if (::strcasecmp(item.c_str(), text ? text : "") == 0)
            return index;
    }
    return -1;
}
