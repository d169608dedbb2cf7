# SPDX-License-Identifier: BSD-3-Clause
# Project code is held to -Wall -Wextra -Werror; third-party headers come in as
# system includes and are not.
add_library(kel_warnings INTERFACE)
target_compile_options(kel_warnings INTERFACE -Wall -Wextra -Werror)
