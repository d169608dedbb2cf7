// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Statuses of the configuration readers.
inline constexpr int KEL_CFG_SUCCESS = 1;
inline constexpr int KEL_CFG_NO_EQUALS = 3;      // a line in a section without "="; skipped
inline constexpr int KEL_CFG_INVALID_END = 4;    // the line after the fields is no valid end line
inline constexpr int KEL_CFG_INVALID_BEGIN = 5;  // no valid begin line where a section was expected
inline constexpr int KEL_CFG_END_OF_FIELDS = 6;  // a "[" line reached where a field was expected
inline constexpr int KEL_CFG_EOF = 8;            // end of file
