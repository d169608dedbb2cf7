#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# The performance pairs, each subject timed interleaved with its plain-Qt (or
# QSettings, inih, read-and-find-lines) baseline in one process, and the start
# of kelbrowser to its first window; then one table of the figures a reader
# compares, each run a column, with its aim and whether every run met it;
# then a burst of notifications into kelbrowser against the library alone;
# then MIB modules compiled against net-snmp's own parse of them.
#   bash scripts/bench.sh [--runs N] [--short]
# --short: one quick run that only shows the benchmarks still work (CI); its
# figures are too rough to judge, so it never fails on an aim.
# Exit status: 0 all aims met (or --short), 1 an aim missed, 2 usage.
set -euo pipefail
cd "$(dirname "$0")/.."
runs=3
short=0
while (($#)); do
  case "$1" in
    --runs) runs="${2:?--runs needs a number}"; shift 2 ;;
    --short) short=1; runs=1; shift ;;
    *) echo "usage: bash scripts/bench.sh [--runs N] [--short]" >&2; exit 2 ;;
  esac
done

bash scripts/setup.sh default kel_bench kelbrowser burst_bench zedsh
export QT_QPA_PLATFORM=offscreen ZED_TRACE_MASK=0
if ((short)); then
  repeat=(--benchmark_repetitions=1 --benchmark_min_time=0.001)
  launches=1
else
  repeat=(--benchmark_repetitions=5 --benchmark_report_aggregates_only=true)
  launches=5
fi
out="$(mktemp -d)"
trap 'rm -rf "$out"' EXIT
folders=()
for ((run = 1; run <= runs; run++)); do
  echo "bench: run $run of $runs" >&2
  mkdir -p "$out/run$run"
  build/bin/kel_bench --benchmark_filter='^Pair_' "${repeat[@]}" \
    --benchmark_out="$out/run$run/pairs.json" --benchmark_out_format=json >&2
  python3 bench/startup.py build/bin/kelbrowser --runs "$launches" --out "$out/run$run/startup.json" >/dev/null
  folders+=("$out/run$run")
done
status=0
python3 bench/bench_table.py "${folders[@]}" || status=$?

# A burst of 5,000 notifications in 0.5 s into kelbrowser's window, against
# the library alone, in each run.
echo
echo "Burst of notifications into kelbrowser (aims: >= 99% shown, longest turn <= 100 ms, memory flat)"
burst=(--count 5000 --seconds 0.5 --bursts 3)
((short)) && burst=(--count 500 --seconds 0.1 --bursts 2)
for ((run = 1; run <= runs; run++)); do
  echo "run $run:"
  build/bin/burst_bench build/bin/hostile_snmp_agent "${burst[@]}" 2>/dev/null | sed 's/^/  /' || status=1
done
# MIB modules: compiled against net-snmp's own parse, and kelbrowser's first
# window with 20 of them.
echo
if ((short)); then
  python3 bench/mib.py build/bin/zedsh build/bin/kelbrowser --runs 1 --short
else
  python3 bench/mib.py build/bin/zedsh build/bin/kelbrowser --runs "$runs" || status=1
fi
((short)) && exit 0
exit "$status"
