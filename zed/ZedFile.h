// SPDX-License-Identifier: BSD-3-Clause
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

/// The whole of a regular file, refused before anything is read when it is
/// not one (a directory; a FIFO or a device, which could block the opening or
/// never end) or is larger than limit bytes. False, with the reason, when it
/// cannot be read. Every file a person gives the libraries is read so.
ZED_EXPORT bool ZedReadRegularFile(const std::string& path, std::size_t limit, std::string& content,
                                   std::string& error);

/// The whole file, read once from start to end. Throws TException "<path>:
/// cannot read the <what>: <reason>" when ZedReadRegularFile refuses it with
/// ZED_MAX_FILE_SIZE as the limit.
ZED_EXPORT std::string ZedReadFile(const std::string& path, const char* what);
