// SPDX-License-Identifier: BSD-3-Clause
#include "kel/frame/KELTraceProvider.h"

#include "zed/TApplication.h"

unsigned int KELTraceProvider::s_maskSendToDevEnv = 0;

KELTraceProvider::KELTraceProvider() = default;

KELTraceProvider::~KELTraceProvider() = default;

void KELTraceProvider::SendToDevEnvTraceOfModule(unsigned int moduleBits)
{
    s_maskSendToDevEnv |= moduleBits;
    ZEDGetApplication()->GetTraceProvider()->SetDevEnvMask(s_maskSendToDevEnv);
}
