// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <string>

/// Whether outputs show an enumeration's number beside its name, "Up (1)",
/// where an operator asks for it (read-only fields, list columns); names
/// alone by default. The choice is the process's; what is sent or kept in
/// settings is always the name.
namespace KELEnumerationCodes {

KEL_EXPORT void Show(bool shown);
KEL_EXPORT bool Shown();
/// "Up (1)" while numbers are shown, else "Up".
KEL_EXPORT std::string Text(const std::string& name, long code);

}  // namespace KELEnumerationCodes
