# SPDX-License-Identifier: BSD-3-Clause
# One switch turns on ASan and UBSan for every target, so the libraries, the
# tests and the tools are instrumented alike.
if(KEL_SANITIZE)
  set(_kel_san -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_compile_options(${_kel_san})
  add_link_options(${_kel_san})
endif()
