// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The access library is built with hidden visibility; only what carries this
// mark is part of its binary interface.
#define ZED_EXPORT __attribute__((visibility("default")))
