#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""The table a reader compares: each pair's figure in each run, its aim, and
whether every run met it.

    bench/bench_table.py RUN_FOLDER...

Each folder holds one run: pairs.json (kel_bench's JSON output, repetitions
aggregated) and startup.json (bench/startup.py's). Exits 1 when a run missed
an aim, 0 otherwise.
"""

import json
import pathlib
import statistics
import sys


def medians(folder):
    """name -> counters of the median aggregate of each pair."""
    data = json.loads((folder / "pairs.json").read_text())
    found = {}
    for entry in data["benchmarks"]:
        if entry.get("aggregate_name", "median") != "median":
            continue
        name = entry.get("run_name", entry["name"]).split("/iterations:")[0]
        found[name] = entry
    return found


def startup(folder):
    return json.loads((folder / "startup.json").read_text())


# (label, figure from one run's medians and startup, aim text, test)
ROWS = [
    ("input form 1,000 lines / QFormLayout of 1,000 line edits",
     lambda m, s: m["Pair_InputForm/1000"]["ratio"], "<= 1.10x", lambda v: v <= 1.10),
    ("input form 10,000 lines / QFormLayout of 10,000 line edits",
     lambda m, s: m["Pair_InputForm/10000"]["ratio"], "(growth)", None),
    ("  input form time per line, 10,000 / 1,000",
     lambda m, s: m["Pair_InputForm/10000"]["subject_us_per_line"] / m["Pair_InputForm/1000"]["subject_us_per_line"],
     "(1.0 = linear)", None),
    ("output form 1,000 values / 1,000 read-only line edits",
     lambda m, s: m["Pair_OutputForm1000Values"]["ratio"], "<= 1.10x", lambda v: v <= 1.10),
    ("form of 1,000 lines filtered, ms a keystroke",
     lambda m, s: m["Pair_FormFilter1000Lines"]["subject_ms"], "< 16", lambda v: v < 16),
    ("form of 1,000 lines: an edit recorded, undone, redone, ms",
     lambda m, s: m["Pair_FormUndo1000Lines"]["subject_ms"], "< 16", lambda v: v < 16),
    ("console 100,000 messages, thousand messages/s",
     lambda m, s: m["Pair_Console/100000"]["messages_per_second"] / 1000, ">= 250", lambda v: v >= 250),
    ("  console / plain QTreeWidget of 100,000 rows",
     lambda m, s: m["Pair_Console/100000"]["ratio"], "(ratio)", None),
    ("  console heap after 100,000 / after 10,000 messages",
     lambda m, s: m["Pair_Console/100000"]["heap_MB_at_end"] / m["Pair_Console/100000"]["heap_MB_at_10000"],
     "<= 1.05 (flat)", lambda v: v <= 1.05),
    ("console 1,000,000 messages, thousand messages/s",
     lambda m, s: m["Pair_Console/1000000"]["messages_per_second"] / 1000, "(growth)", None),
    ("  plain QTreeWidget of 1,000,000 rows, thousand rows/s",
     lambda m, s: m["Pair_Console/1000000"]["baseline_rows_per_second"] / 1000, "(growth)", None),
    ("configuration load 20.6 MB: times faster than QSettings",
     lambda m, s: 1 / m["Pair_ConfigurationLoadVsQSettings"]["ratio"], ">= 8", lambda v: v >= 8),
    ("configuration load: times faster than inih's bare parse",
     lambda m, s: 1 / m["Pair_ConfigurationLoadVsInih"]["ratio"], ">= 2", lambda v: v >= 2),
    ("configuration load / read-and-find-lines floor",
     lambda m, s: m["Pair_ConfigurationLoadVsReadFloor"]["ratio"], "<= 5x", lambda v: v <= 5),
    ("kelbrowser start to first window, shipped network, ms",
     lambda m, s: statistics.median(s["shipped"]), "< 300", lambda v: v < 300),
    ("kelbrowser start to first window, 1,000 classes, ms",
     lambda m, s: statistics.median(s["classes1000"]), "< 600", lambda v: v < 600),
]


def main():
    folders = [pathlib.Path(f) for f in sys.argv[1:]]
    if not folders:
        sys.exit(__doc__)
    runs = [(medians(f), startup(f)) for f in folders]
    width = max(len(label) for label, *_ in ROWS)
    header = f"{'pair':<{width}}  {'aim':<15}" + "".join(f"  run {i + 1:<5}" for i in range(len(runs))) + "  met"
    print(header)
    print("-" * len(header))
    missed = False
    for label, figure, aim, test in ROWS:
        values = []
        for m, s in runs:
            try:
                values.append(figure(m, s))
            except (KeyError, ZeroDivisionError):
                values.append(None)
        cells = "".join(f"  {v:>9.2f}" if v is not None else f"  {'-':>9}" for v in values)
        if test is None:
            verdict = ""
        else:
            met = all(v is not None and test(v) for v in values)
            missed = missed or not met
            verdict = "yes" if met else "NO"
        print(f"{label:<{width}}  {aim:<15}{cells}  {verdict}")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
