// SPDX-License-Identifier: BSD-3-Clause
#include "zed/trace/TTraceProvider.h"

#include <atomic>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <utility>

namespace {

struct FileCloser {
    void operator()(std::FILE* f) const { std::fclose(f); }
};
using FilePtr = std::unique_ptr<std::FILE, FileCloser>;

void WriteLineTo(std::FILE* f, std::string_view line)
{
    std::fwrite(line.data(), 1, line.size(), f);
    std::fputc('\n', f);
    std::fflush(f);
}

}  // namespace

struct TTraceProvider::Impl {
    std::atomic<unsigned int> mask{0};
    std::atomic<unsigned int> devEnvMask{0};
    mutable std::mutex mutex;  // guards the sinks below
    FilePtr file;
    bool capturing = false;
    std::string capture;
};

TTraceProvider::TTraceProvider() : m_pImpl(std::make_unique<Impl>())
{
    if (const char* text = std::getenv("ZED_TRACE_MASK")) {
        unsigned int mask = 0;
        if (ParseMask(text, mask))
            m_pImpl->mask = mask;
        else
            std::fprintf(stderr,
                         "zed: ZED_TRACE_MASK=\"%s\" is not a decimal or 0x-hexadecimal number; trace stays off\n",
                         text);
    }
    if (const char* path = std::getenv("ZED_TRACE_FILE"); path && *path) {
        if (!SetTraceFile(path))
            std::fprintf(stderr, "zed: cannot open ZED_TRACE_FILE \"%s\"; trace goes to standard error\n", path);
    }
}

TTraceProvider::~TTraceProvider() = default;

unsigned int TTraceProvider::GetMask() const { return m_pImpl->mask.load(std::memory_order_relaxed); }

void TTraceProvider::SetMask(unsigned int mask) { m_pImpl->mask.store(mask, std::memory_order_relaxed); }

bool TTraceProvider::Allows(unsigned int streamMask) const
{
    return streamMask != 0 && (GetMask() & streamMask) == streamMask;
}

void TTraceProvider::Write(unsigned int streamMask, std::string_view line)
{
    std::lock_guard lock(m_pImpl->mutex);
    bool onStderr = false;
    if (m_pImpl->capturing) {
        m_pImpl->capture.append(line);
        m_pImpl->capture.push_back('\n');
    } else if (m_pImpl->file) {
        WriteLineTo(m_pImpl->file.get(), line);
    } else {
        WriteLineTo(stderr, line);
        onStderr = true;
    }
    if (!onStderr && (streamMask & m_pImpl->devEnvMask.load(std::memory_order_relaxed)) != 0)
        WriteLineTo(stderr, line);
}

bool TTraceProvider::SetTraceFile(const std::string& path)
{
    FilePtr file;
    if (!path.empty()) {
        file.reset(std::fopen(path.c_str(), "ae"));  // never inherited by a program started later
        if (!file)
            return false;
    }
    std::lock_guard lock(m_pImpl->mutex);
    m_pImpl->file = std::move(file);
    return true;
}

void TTraceProvider::StartCapture()
{
    std::lock_guard lock(m_pImpl->mutex);
    m_pImpl->capturing = true;
}

std::string TTraceProvider::GetCapture() const
{
    std::lock_guard lock(m_pImpl->mutex);
    return m_pImpl->capture;
}

void TTraceProvider::ClearCapture()
{
    std::lock_guard lock(m_pImpl->mutex);
    m_pImpl->capture.clear();
}

std::string TTraceProvider::StopCapture()
{
    std::lock_guard lock(m_pImpl->mutex);
    m_pImpl->capturing = false;
    return std::exchange(m_pImpl->capture, {});
}

unsigned int TTraceProvider::GetDevEnvMask() const { return m_pImpl->devEnvMask.load(std::memory_order_relaxed); }

void TTraceProvider::SetDevEnvMask(unsigned int mask) { m_pImpl->devEnvMask.store(mask, std::memory_order_relaxed); }

bool TTraceProvider::ParseMask(std::string_view text, unsigned int& mask)
{
    int base = 10;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        base = 16;
        text.remove_prefix(2);
    }
    unsigned int value = 0;
    const char* end = text.data() + text.size();
    auto [ptr, ec] = std::from_chars(text.data(), end, value, base);
    if (text.empty() || ec != std::errc() || ptr != end)
        return false;
    mask = value;
    return true;
}
