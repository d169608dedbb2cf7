#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Sets up, builds and runs the test suite headless; with "asan", the same
# suite under AddressSanitizer and UndefinedBehaviorSanitizer.
#   bash scripts/test.sh [default|asan]
set -euo pipefail
cd "$(dirname "$0")/.."
preset="${1:-default}"
KEL_WITH_TEST_DATA=1 bash scripts/setup.sh "$preset"
export QT_QPA_PLATFORM=offscreen
ctest --preset "$preset" -j "$(nproc)"
