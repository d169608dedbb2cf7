// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/frame/KELTraceMethEntrance.h"
#include "zed/TApplication.h"
#include "zed/trace/TTraceProvider.h"

#include <sstream>
#include <string>
#include <vector>

// Runs a test under a given trace mask and collects the lines written
// meanwhile. The library's cached copy of the mask is dropped on both sides,
// so each test sees exactly the mask it asked for.
class TraceCapture {
public:
    explicit TraceCapture(unsigned int mask) : m_previousMask(Provider()->GetMask())
    {
        Provider()->SetMask(mask);
        Provider()->StartCapture();
        KELTraceMethEntrance::ForgetMaskForTesting();
    }
    TraceCapture(const TraceCapture&) = delete;
    TraceCapture& operator=(const TraceCapture&) = delete;
    ~TraceCapture()
    {
        Provider()->StopCapture();
        Provider()->SetMask(m_previousMask);
        KELTraceMethEntrance::ForgetMaskForTesting();
    }

    std::string Text() const { return Provider()->GetCapture(); }

    std::vector<std::string> Lines() const
    {
        std::vector<std::string> lines;
        std::istringstream in(Text());
        for (std::string line; std::getline(in, line);)
            lines.push_back(line);
        return lines;
    }

    void Clear() { Provider()->ClearCapture(); }

    static TTraceProvider* Provider() { return ZEDGetApplication()->GetTraceProvider(); }

private:
    unsigned int m_previousMask;
};
