// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "zed/ZedExport.h"

#include <memory>
#include <string>
#include <string_view>

/// Receives every finished trace line of every module and decides, by its
/// mask, which lines are kept and where they go.
///
/// A line goes to exactly one main sink: the in-memory capture while one is
/// running (tests read it), otherwise the trace file when one is set,
/// otherwise standard error. Lines of modules in the development-environment
/// mask are copied to standard error as well when the main sink is elsewhere,
/// so a developer sees them in the terminal the program was started from.
///
/// Initial settings come from the environment when the provider is made:
///   ZED_TRACE_MASK  the mask, decimal or 0x-prefixed hexadecimal (default 0)
///   ZED_TRACE_FILE  a file that lines are appended to
class ZED_EXPORT TTraceProvider {
public:
    TTraceProvider();
    TTraceProvider(const TTraceProvider&) = delete;
    TTraceProvider& operator=(const TTraceProvider&) = delete;
    virtual ~TTraceProvider();

    unsigned int GetMask() const;
    void SetMask(unsigned int mask);

    /// True when every bit of a stream's mask is in the provider's mask.
    bool Allows(unsigned int streamMask) const;

    /// Sends one finished line (without its line end) to the sinks.
    virtual void Write(unsigned int streamMask, std::string_view line);

    /// Appends lines to the named file from now on; an empty name goes back to
    /// standard error. False (and no change) when the file cannot be opened.
    bool SetTraceFile(const std::string& path);

    void StartCapture();
    std::string GetCapture() const;
    void ClearCapture();
    /// Ends the capture and hands over what it held.
    std::string StopCapture();

    unsigned int GetDevEnvMask() const;
    void SetDevEnvMask(unsigned int mask);

    /// Reads a mask written in decimal or with a 0x prefix in hexadecimal.
    /// False for anything else, empty text and values beyond 32 bits included.
    static bool ParseMask(std::string_view text, unsigned int& mask);

private:
    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};
