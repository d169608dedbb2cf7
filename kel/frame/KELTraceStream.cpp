// SPDX-License-Identifier: BSD-3-Clause
#include "kel/frame/KELTraceStream.h"

#include "kel/frame/KELTraceMethEntrance.h"

// Decided by the library's own copy of the mask, so that a host that changes
// the provider's mask later neither silences nor wakes the library's lines.
KELTraceStream::KELTraceStream(unsigned int moduleBit, unsigned int kindBit)
    : TTraceStream(moduleBit | kindBit, Decided{KELTraceMethEntrance::IsOn(moduleBit | kindBit)})
{
}

KELTraceStream::~KELTraceStream() = default;
