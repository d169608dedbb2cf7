# SPDX-License-Identifier: BSD-3-Clause
# Fails the API reference when Doxygen warned of anything but an undocumented
# member: an undocumented public class, a broken page or comment is an error.
# Undocumented members are counted, not refused.
#   cmake -DLOG=warnings.log -P CheckApiWarnings.cmake
file(STRINGS "${LOG}" lines)
set(errors "")
set(members 0)
foreach(line IN LISTS lines)
  if(line MATCHES "warning: Member .* is not documented")
    math(EXPR members "${members} + 1")
  elseif(NOT line STREQUAL "")
    string(APPEND errors "${line}\n")
  endif()
endforeach()
if(errors)
  message(FATAL_ERROR "the API reference has faults:\n${errors}")
endif()
message(STATUS "API reference: every public class documented; ${members} members without a comment of their own")
