// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "zed/trace/TTraceProvider.h"

/// The library's trace provider. A host that wants its own sinks derives from it
/// and installs it on the access library's application object.
class KEL_EXPORT KELTraceProvider : public TTraceProvider {
public:
    KELTraceProvider();
    ~KELTraceProvider() override;

    /// Adds modules whose lines the host wants in the development environment's
    /// output (here: standard error, beside the provider's own sink). The bits
    /// accumulate; nothing else in the library reads them.
    static void SendToDevEnvTraceOfModule(unsigned int moduleBits);

    static unsigned int GetSendToDevEnvMask() { return s_maskSendToDevEnv; }

private:
    static unsigned int s_maskSendToDevEnv;
};
