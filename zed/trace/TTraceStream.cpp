// SPDX-License-Identifier: BSD-3-Clause
#include "zed/trace/TTraceStream.h"

#include "zed/TApplication.h"
#include "zed/trace/TTraceProvider.h"

#include <charconv>
#include <cstdint>

namespace {

template <typename Number>
void AppendNumber(std::string& line, Number n)
{
    char buffer[32];
    auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, n);
    if (ec == std::errc())
        line.append(buffer, end);
}

bool ProviderAllows(unsigned int mask) { return ZEDGetApplication()->GetTraceProvider()->Allows(mask); }

}  // namespace

TTraceStream::TTraceStream(unsigned int mask) : m_mask(mask), m_active(ProviderAllows(mask)) {}

TTraceStream::TTraceStream(unsigned int mask, Decided decided) : m_mask(mask), m_active(decided.write), m_decided(true)
{
}

TTraceStream::TTraceStream(const TTraceStream& other) = default;

TTraceStream& TTraceStream::operator=(const TTraceStream& other) = default;

TTraceStream::~TTraceStream() = default;

TTraceStream& TTraceStream::operator<<(std::string_view text)
{
    if (m_active)
        m_line.append(text);
    return *this;
}

TTraceStream& TTraceStream::operator<<(const char* text)
{
    if (m_active)
        m_line.append(text ? text : "(null)");
    return *this;
}

TTraceStream& TTraceStream::operator<<(char c)
{
    if (m_active)
        m_line.push_back(c);
    return *this;
}

#define ZED_TRACE_NUMBER(Type)                                                                                         \
    TTraceStream& TTraceStream::operator<<(Type n)                                                                     \
    {                                                                                                                  \
        if (m_active)                                                                                                  \
            AppendNumber(m_line, n);                                                                                   \
        return *this;                                                                                                  \
    }
ZED_TRACE_NUMBER(int)
ZED_TRACE_NUMBER(unsigned int)
ZED_TRACE_NUMBER(long)
ZED_TRACE_NUMBER(unsigned long)
ZED_TRACE_NUMBER(long long)
ZED_TRACE_NUMBER(unsigned long long)
#undef ZED_TRACE_NUMBER

TTraceStream& TTraceStream::operator<<(double d)
{
    if (m_active)
        AppendNumber(m_line, d);
    return *this;
}

TTraceStream& TTraceStream::operator<<(const void* object)
{
    if (m_active) {
        char buffer[2 + 2 * sizeof(std::uintptr_t)] = {'0', 'x'};
        auto [end, ec] =
            std::to_chars(buffer + 2, buffer + sizeof buffer, reinterpret_cast<std::uintptr_t>(object), 16);
        if (ec == std::errc())
            m_line.append(buffer, end);
    }
    return *this;
}

void TTraceStream::EndLine()
{
    if (m_active && (m_decided || ProviderAllows(m_mask)))
        ZEDGetApplication()->GetTraceProvider()->Write(m_mask, m_line);
    m_line.clear();
}

TTraceStream& endl(TTraceStream& stream)
{
    stream.EndLine();
    return stream;
}
