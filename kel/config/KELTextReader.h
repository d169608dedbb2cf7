// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

/// A text file opened for reading, as the configuration readers see it: lines
/// without their line ends ("\n" or "\r\n"), a position that can be taken and
/// set back, and the end of the file.
///
/// The whole file is read into memory when it is opened, so reading a line is
/// a search for the next line feed and moving back is an assignment: this is
/// what lets a large configuration file load at memory speed.
class KEL_EXPORT KELTextReader {
public:
    KELTextReader() = default;
    /// Reads the given text, which the reader keeps a copy of.
    explicit KELTextReader(std::string text);
    /// Reads text that the caller keeps alive for the reader's lifetime.
    static KELTextReader OverView(std::string_view text);

    KELTextReader(const KELTextReader&) = delete;
    KELTextReader& operator=(const KELTextReader&) = delete;
    KELTextReader(KELTextReader&& other) noexcept;
    KELTextReader& operator=(KELTextReader&& other) noexcept;

    /// Configuration files are small; anything larger is refused rather than
    /// read until memory runs out (a device such as /dev/zero never ends).
    static constexpr std::size_t kMaxFileSize = std::size_t(256) << 20;

    /// Replaces the content with the named file's, read once from its start to
    /// its end. On failure (no such file, not a regular file, more than
    /// kMaxFileSize bytes) the reader is left empty and error, when given,
    /// says why.
    bool Open(const std::string& path, std::string* error = nullptr);

    /// The next line without its line end; false at the end of the text.
    /// Inline: it runs once for every line of every file read.
    bool ReadLine(std::string_view& line)
    {
        if (m_pos >= m_text.size())
            return false;
        const char* begin = m_text.data() + m_pos;
        const std::size_t left = m_text.size() - m_pos;
        const void* feed = std::memchr(begin, '\n', left);
        std::size_t length = feed ? static_cast<std::size_t>(static_cast<const char*>(feed) - begin) : left;
        m_pos += feed ? length + 1 : length;
        if (feed && length > 0 && begin[length - 1] == '\r')
            --length;
        line = std::string_view(begin, length);
        return true;
    }

    std::size_t GetPosition() const { return m_pos; }
    void Seek(std::size_t position) { m_pos = position < m_text.size() ? position : m_text.size(); }
    bool AtEnd() const { return m_pos >= m_text.size(); }
    std::string_view GetText() const { return m_text; }
    /// The text the reader owns, for whoever keeps views of it beyond the
    /// reader's life; null when the reader views text its caller keeps.
    std::shared_ptr<const std::string> Share() const { return m_storage; }
    /// True when nothing from the position on is more than blank and comment
    /// lines: an end-of-file status there is a clean end, not a cut-off section.
    bool OnlyBlankOrCommentsFrom(std::size_t position) const;

private:
    std::shared_ptr<const std::string> m_storage;  // owned content, when the reader owns it
    std::string_view m_text;                       // what is read: m_storage or the caller's text
    std::size_t m_pos = 0;
};
