#include "kel/frame/KELTraceStream.h"

KELTraceStream::KELTraceStream(unsigned int moduleBit, unsigned int kindBit) : TTraceStream(moduleBit | kindBit) {}

KELTraceStream::~KELTraceStream() = default;
