#pragma once

// Reading the files people give the access library (dictionaries, instance
// files), with the limits the library applies to them, so that a tool that
// checks such files reads them the same way.

#include "zed/ZedExport.h"

#include <cstddef>
#include <string>

/// Network description files are small; anything larger is refused rather
/// than read until memory runs out (a device such as /dev/zero never ends).
inline constexpr std::size_t ZED_MAX_FILE_SIZE = std::size_t(64) << 20;

/// The whole file, read once from start to end (pipes work too). Throws
/// TException "<path>: cannot read the <what>: <reason>" when it cannot be
/// opened or read, is a directory, or is larger than ZED_MAX_FILE_SIZE.
ZED_EXPORT std::string ZedReadFile(const std::string& path, const char* what);
