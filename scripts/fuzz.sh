#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Builds the libFuzzer targets and runs one over its kept inputs.
#   scripts/fuzz.sh TARGET [SECONDS]
# TARGET: section_reader, configuration_load, dictionary_loader,
# instance_loader, value_parser, launch_registry, workspace_reader, agents_file
# or snmp_index. The JSON readers get inputs up to 256 KiB,
# enough to nest values thousands of levels deep; the line readers 64 KiB.
set -euo pipefail
cd "$(dirname "$0")/.."
target=${1:?usage: scripts/fuzz.sh TARGET [SECONDS]}
seconds=${2:-60}
case "$target" in
  section_reader) corpus=section; max_len=65536 ;;
  configuration_load) corpus=configuration; max_len=65536 ;;
  dictionary_loader) corpus=dictionary; max_len=262144 ;;
  instance_loader) corpus=instances; max_len=262144 ;;
  value_parser) corpus=value; max_len=262144 ;;
  launch_registry) corpus=launch; max_len=65536 ;;
  workspace_reader) corpus=workspace; max_len=262144 ;;
  agents_file) corpus=agents; max_len=65536 ;;
  snmp_index) corpus=snmp-index; max_len=4096 ;;
  notification) corpus=notification; max_len=65507 ;;
  *) echo "fuzz.sh: unknown target \"$target\"" >&2; exit 2 ;;
esac
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target "fuzz_$target"
# New findings go to a scratch directory; the kept inputs stay as reviewed.
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
"build-fuzz/bin/fuzz_$target" -max_len="$max_len" -max_total_time="$seconds" -rss_limit_mb=4096 \
  "$scratch" "fuzz/corpus/$corpus"
