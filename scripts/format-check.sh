#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Checks that every C++ source is in the house style (.clang-format, Debian's
# clang-format); with --fix, puts it so.
#   bash scripts/format-check.sh [--fix]
set -euo pipefail
cd "$(dirname "$0")/.."
mode=(--dry-run --Werror)
[[ "${1:-}" == "--fix" ]] && mode=(-i)
git ls-files -z '*.cpp' '*.h' | xargs -0 clang-format "${mode[@]}"
