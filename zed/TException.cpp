// SPDX-License-Identifier: BSD-3-Clause
#include "zed/TException.h"

#include "zed/trace/TTraceStream.h"

TException::TException(const std::string& text) : std::runtime_error(text) {}

TException::~TException() = default;

TTraceStream& operator<<(TTraceStream& stream, const TException& exception) { return stream << exception.what(); }
