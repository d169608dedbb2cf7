// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "zed/trace/TTraceStream.h"

/// A trace stream of one module and one kind: its lines are written only when
/// the library's copy of the application's mask (read once, see
/// KELTraceMethEntrance) holds both bits.
class KEL_EXPORT KELTraceStream : public TTraceStream {
public:
    KELTraceStream(unsigned int moduleBit, unsigned int kindBit);
    KELTraceStream(const KELTraceStream& other) = default;
    KELTraceStream& operator=(const KELTraceStream& other) = default;
    ~KELTraceStream() override;
};
