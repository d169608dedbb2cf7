// SPDX-License-Identifier: BSD-3-Clause
#include "zed/call/TRequest.h"

TRequest::TRequest() = default;
TRequest::~TRequest() = default;
TRequest::TRequest(const TRequest&) = default;
TRequest& TRequest::operator=(const TRequest&) = default;
