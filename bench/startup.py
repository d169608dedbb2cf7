#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Time from starting kelbrowser to its first window painted, measured from
outside (so exec, library loading and KEL's start all count): with the shipped
network, and with a dictionary of 1,000 classes made from it.

    bench/startup.py KELBROWSER [--runs N] [--out FILE]

Prints one JSON object: the milliseconds of each run for each case.
"""

import argparse
import copy
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import time

SOURCE = pathlib.Path(__file__).resolve().parent.parent
SHIPPED = SOURCE / "data" / "network"


def thousand_classes(folder):
    """The shipped dictionary with classes added below its top class until there are 1,000."""
    dictionary = json.loads((SHIPPED / "dictionary.json").read_text())
    top = dictionary["classes"][0]

    def count(classes):
        return sum(1 + count(c.get("children", [])) for c in classes)

    codes = set()

    def collect(classes):
        for c in classes:
            codes.add(c["code"])
            collect(c.get("children", []))

    collect(dictionary["classes"])
    model = copy.deepcopy(top["children"][0])
    model.pop("children", None)
    code = max(codes) + 1
    while count(dictionary["classes"]) < 1000:
        added = copy.deepcopy(model)
        added["code"] = code
        added["name"] = f"Kind{code}"
        top["children"].append(added)
        code += 1
    path = pathlib.Path(folder) / "dictionary-1000.json"
    path.write_text(json.dumps(dictionary))
    return path


def first_paint_ms(program, arguments):
    env = dict(os.environ, ZED_TRACE_MASK="0")
    start = time.monotonic()
    process = subprocess.Popen([program, "--startup-time", *arguments], stdout=subprocess.PIPE,
                               stderr=subprocess.DEVNULL, env=env, text=True)
    line = process.stdout.readline()
    shown = time.monotonic()
    process.wait()
    if process.returncode != 0 or "first window shown" not in line:
        sys.exit(f"startup.py: {program} did not report its first window ({process.returncode}): {line!r}")
    return (shown - start) * 1000.0


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--out")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        large = thousand_classes(folder)
        cases = {
            "shipped": [],
            "classes1000": ["--dictionary", str(large), "--instances", str(SHIPPED / "instances.json")],
        }
        first_paint_ms(options.program, [])  # the libraries into the page cache
        result = {name: [first_paint_ms(options.program, arguments) for _ in range(options.runs)]
                  for name, arguments in cases.items()}
    text = json.dumps(result)
    if options.out:
        pathlib.Path(options.out).write_text(text)
    print(text)


if __name__ == "__main__":
    main()
