// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/KELTextReader.h"

#include "kel/config/KELTextTrim.h"
#include "zed/ZedFile.h"

#include <cstring>

KELTextReader::KELTextReader(std::string text)
    : m_storage(std::make_shared<const std::string>(std::move(text))), m_text(*m_storage)
{
}

KELTextReader KELTextReader::OverView(std::string_view text)
{
    KELTextReader reader;
    reader.m_text = text;
    return reader;
}

KELTextReader::KELTextReader(KELTextReader&& other) noexcept { *this = std::move(other); }

KELTextReader& KELTextReader::operator=(KELTextReader&& other) noexcept
{
    if (this != &other) {
        // The shared text does not move in memory: views of it stay good.
        m_storage = std::move(other.m_storage);
        m_text = other.m_text;
        m_pos = other.m_pos;
        other.m_storage.reset();
        other.m_text = {};
        other.m_pos = 0;
    }
    return *this;
}

bool KELTextReader::Open(const std::string& path, std::string* error)
{
    *this = KELTextReader();
    std::string content, why;
    if (!ZedReadRegularFile(path, kMaxFileSize, content, why)) {
        if (error)
            *error = why;
        return false;
    }
    *this = KELTextReader(std::move(content));
    return true;
}

bool KELTextReader::OnlyBlankOrCommentsFrom(std::size_t position) const
{
    KELTextReader rest = OverView(m_text.substr(position < m_text.size() ? position : m_text.size()));
    std::string_view line;
    while (rest.ReadLine(line))
        if (!KELIsSkippedLine(KELTrimLeft(line)))
            return false;
    return true;
}
