#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# The sizes a reader meets: the largest source files and the longest
# functions of the libraries and applications (tests, benchmarks and fuzz
# targets aside). With --check N, fails when a function is longer than N
# lines; the tours' step lists, read as scripts, are allowed their length.
#
#   scripts/sizes.sh [--top N] [--check LINES] [DIR]
set -eu

top=5
check=0
root=.
while [ $# -gt 0 ]; do
    case "$1" in
    --top) top=$2; shift 2 ;;
    --check) check=$2; shift 2 ;;
    *) root=$1; shift ;;
    esac
done
cd "$root"
sources=$(find kel zed apps launch -name '*.cpp' -o -name '*.h' 2>/dev/null | sort)

echo "Largest files (lines):"
wc -l $sources | grep -v ' total$' | sort -rn | head -n "$top"

# ctags gives each function's first and last line.
lengths=$(ctags --c++-kinds=f --fields=+ne --language-force=C++ -o - $sources 2>/dev/null |
    awk -F'\t' '{ line = ""; end = ""; scope = "";
        for (i = 4; i <= NF; ++i) {
            if ($i ~ /^line:/) line = substr($i, 6);
            if ($i ~ /^end:/) end = substr($i, 5);
            if ($i ~ /^(class|struct|namespace):/) scope = substr($i, index($i, ":") + 1) "::";
        }
        if (line != "" && end != "") print end - line + 1, $2 ":" line, scope $1 }' | sort -rn)

echo "Longest functions (lines):"
echo "$lengths" | head -n "$top"

if [ "$check" -gt 0 ]; then
    # The tours walk the windows step by step: one list, read top to bottom.
    over=$(echo "$lengths" | awk -v most="$check" '$1 > most' | grep -v -E 'apps/kelbrowser/(Snmp)?Tour\.cpp' || true)
    if [ -n "$over" ]; then
        echo "Functions longer than $check lines:" >&2
        echo "$over" >&2
        exit 1
    fi
fi
