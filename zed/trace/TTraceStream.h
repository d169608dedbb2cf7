// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "zed/ZedExport.h"

#include <string>
#include <string_view>

/// Builds one trace line at a time under a mask and hands it to the
/// application's trace provider when the line is ended with endl. The line is
/// written only when the provider's mask holds every bit of the stream's mask;
/// a stream opened while that is not so formats nothing at all.
///
/// A module that keeps its own copy of the mask (KEL reads it once, for the
/// life of the process) opens its streams already decided: such a stream
/// writes exactly when the module said so, whatever the provider's mask
/// becomes meanwhile.
class ZED_EXPORT TTraceStream {
public:
    explicit TTraceStream(unsigned int mask);
    TTraceStream(const TTraceStream& other);
    TTraceStream& operator=(const TTraceStream& other);
    virtual ~TTraceStream();

    unsigned int GetMask() const { return m_mask; }
    bool IsActive() const { return m_active; }

    TTraceStream& operator<<(std::string_view text);
    TTraceStream& operator<<(const char* text);
    TTraceStream& operator<<(const std::string& text) { return *this << std::string_view(text); }
    TTraceStream& operator<<(char c);
    TTraceStream& operator<<(int n);
    TTraceStream& operator<<(unsigned int n);
    TTraceStream& operator<<(long n);
    TTraceStream& operator<<(unsigned long n);
    TTraceStream& operator<<(long long n);
    TTraceStream& operator<<(unsigned long long n);
    TTraceStream& operator<<(double d);
    /// Objects are shown by address, "0x" and lower-case hexadecimal digits.
    TTraceStream& operator<<(const void* object);
    TTraceStream& operator<<(TTraceStream& (*manipulator)(TTraceStream&)) { return manipulator(*this); }

    /// Ends the current line: writes it if the provider allows and starts a new one.
    void EndLine();

protected:
    /// Whether the provider has decided that lines of this stream are written.
    struct Decided {
        bool write;
    };
    TTraceStream(unsigned int mask, Decided decided);

private:
    unsigned int m_mask;
    bool m_active;
    bool m_decided = false;
    std::string m_line;
};

ZED_EXPORT TTraceStream& endl(TTraceStream& stream);
