// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <string>

class IElementInfo;

/// What an element takes, as the dictionary says it, for people: its type's
/// presentation name, the range of its numbers or the size of its text, its
/// units, its default and its access, one per line, for example
///
///     Type: Unsigned16 (a whole number)
///     Range: 0 to 65535
///     Units: ms
///     Default: 5
///     Access: read-write
///
/// Lines the dictionary has nothing for are left out.
namespace KELElementHelp {

KEL_EXPORT std::string Describe(const IElementInfo& info);
/// What a field of the data type takes, in a few words: "a whole number
/// from 0 to 65535", "a number"; empty for a type that is not a number.
KEL_EXPORT std::string Accepted(unsigned int datatype);

}  // namespace KELElementHelp
