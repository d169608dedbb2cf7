// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "zed/ZedExport.h"

#include <stdexcept>
#include <string>

/// What the access library throws: a fault with a text for people.
class ZED_EXPORT TException : public std::runtime_error {
public:
    explicit TException(const std::string& text);
    ~TException() override;

    std::string GetText() const { return what(); }
};

class TTraceStream;
/// Trace lines show an exception by its text.
ZED_EXPORT TTraceStream& operator<<(TTraceStream& stream, const TException& exception);
