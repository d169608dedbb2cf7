#pragma once

#include <string>
#include <string_view>

// Replaces a file's content in one step: the text is written to a new file
// beside it, flushed to the disk, given the old file's permissions, and
// renamed over the old one. A crash at any moment leaves the old file or the
// new one, never a part of either; two writers leave one whole version.
// With keepBackup the old file also stays under path + ".bak".
// False, with the reason, when the text could not be written; the old file
// is then untouched.
bool KELWriteFileAtomically(const std::string& path, std::string_view content, bool keepBackup, std::string* error);
