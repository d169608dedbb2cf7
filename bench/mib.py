#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""MIB modules: compiling every module on the machine into a dictionary
(zedsh mib ALL) against net-snmp's own parse of the same modules
(snmptranslate -m ALL, to one translated OID), each timed as a process,
interleaved; and kelbrowser's first window with 20 modules on --mibs.

    bench/mib.py ZEDSH KELBROWSER [--runs N] [--short]

Prints a table of each run's figures, the aims, and whether every run met
them; exits 1 when one did not (never with --short).
"""

import argparse
import glob
import os
import statistics
import subprocess
import sys
import tempfile
import time
import pathlib

SOURCE = pathlib.Path(__file__).resolve().parent.parent


def folders():
    found = ["/usr/share/snmp/mibs"] + sorted(glob.glob("/usr/lib/erlang/lib/snmp-*/mibs"))
    return ":".join(found + [str(SOURCE / "tests" / "data" / "mib")])


def timed(command, env):
    start = time.monotonic()
    done = subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=env)
    elapsed = (time.monotonic() - start) * 1000.0
    if done.returncode not in (0, 1):
        sys.exit(f"mib.py: {command[0]} failed ({done.returncode})")
    return elapsed


def compile_pair(zedsh, dirs, launches):
    env = dict(os.environ, ZED_TRACE_MASK="0", MIBS="", MIBDIRS="")
    ours, theirs = [], []
    for _ in range(launches):
        ours.append(timed([zedsh, "mib", "--mib-dirs", dirs, "ALL"], env))
        theirs.append(timed(["snmptranslate", "-M", dirs, "-m", "ALL", "-IR", "sysDescr.0"], env))
    return statistics.median(ours), statistics.median(theirs)


def twenty_modules(dirs):
    """The first 20 modules the folders define, by the names their files give."""
    names = []
    for folder in dirs.split(":"):
        for path in sorted(pathlib.Path(folder).glob("*")):
            if path.suffix in (".funcs",) or not path.is_file():
                continue
            head = path.read_text(errors="replace")[:4096].split()
            if "DEFINITIONS" in head:
                names.append(head[head.index("DEFINITIONS") - 1])
    return sorted(set(names))[:20]


def first_window(kelbrowser, dirs, modules, launches):
    with tempfile.TemporaryDirectory() as folder:
        agents = pathlib.Path(folder) / "agents.conf"
        agents.write_text("[ Agent : bench ]\n    Address = udp:127.0.0.1:9\n[ End Agent : bench ]\n")
        agents.chmod(0o600)
        env = dict(os.environ, ZED_TRACE_MASK="0", QT_QPA_PLATFORM="offscreen")
        shown = []
        for _ in range(launches):
            start = time.monotonic()
            process = subprocess.Popen([kelbrowser, "--startup-time", "--agents", str(agents), "--mib-dirs", dirs,
                                        "--mibs", ",".join(modules)], stdout=subprocess.PIPE,
                                       stderr=subprocess.DEVNULL, env=env, text=True)
            line = process.stdout.readline()
            shown.append((time.monotonic() - start) * 1000.0)
            process.wait()
            if "first window shown" not in line:
                sys.exit(f"mib.py: kelbrowser did not report its first window: {line!r}")
        return statistics.median(shown)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("zedsh")
    parser.add_argument("kelbrowser")
    parser.add_argument("--runs", type=int, default=3)
    parser.add_argument("--short", action="store_true")
    options = parser.parse_args()
    dirs = folders()
    launches = 1 if options.short else 5
    modules = twenty_modules(dirs)
    rows = {"compile ALL, ms (zedsh mib)": [], "  net-snmp's parse, ms (snmptranslate -m ALL)": [],
            "  ratio": [], f"kelbrowser first window, {len(modules)} modules, ms": []}
    for _ in range(options.runs):
        ours, theirs = compile_pair(options.zedsh, dirs, launches)
        rows["compile ALL, ms (zedsh mib)"].append(ours)
        rows["  net-snmp's parse, ms (snmptranslate -m ALL)"].append(theirs)
        rows["  ratio"].append(ours / theirs)
        rows[f"kelbrowser first window, {len(modules)} modules, ms"].append(
            first_window(options.kelbrowser, dirs, modules, launches))
    aims = {"  ratio": (1.5, "<= 1.5x"), f"kelbrowser first window, {len(modules)} modules, ms": (300, "< 300")}
    status = 0
    print(f"{'MIB modules (median of each run)':58} " + " ".join(f"run {i + 1:>3}" for i in range(options.runs))
          + "   aim")
    for label, values in rows.items():
        aim = aims.get(label)
        met = aim is None or all(v <= aim[0] for v in values)
        status |= 0 if met else 1
        print(f"{label:58} " + " ".join(f"{v:7.2f}" for v in values)
              + (f"   {aim[1]} {'met' if met else 'MISSED'}" if aim else ""))
    return 0 if options.short else status


if __name__ == "__main__":
    sys.exit(main())
