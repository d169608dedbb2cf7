# SPDX-License-Identifier: BSD-3-Clause
"""The JSON Schemas of the network files against the loader (zedsh validate).

- the schemas are themselves valid (draft 2020-12);
- every shipped file, and the example in each file's documentation,
  validates against its schema, and the loader takes it;
- every file under refused/ is refused by the loader and by the schema;
- every file under loader-only/ is refused by the loader, which checks what a
  schema cannot say (unique codes, references, depth), and taken by the schema,
  so that the list of what the schema leaves to the loader stays true;
- over the fuzzers' kept inputs, nothing the loader takes is refused by the
  schema: a schema stricter than the loader would flag good files in editors.

usage: check_schemas.py ZEDSH SOURCE_DIR
"""

import json
import pathlib
import re
import subprocess
import sys
import tempfile

import jsonschema

KINDS = ("dictionary", "instances")
DOCUMENTED = {"dictionary": "dictionary-format.md", "instances": "simulated-network.md"}


def main():
    zedsh, source = sys.argv[1], pathlib.Path(sys.argv[2])
    here = source / "tests" / "schema"
    validators = {}
    for kind in KINDS:
        name = "zed-dictionary" if kind == "dictionary" else "zed-instances"
        schema = json.loads((source / "docs" / "schema" / f"{name}.schema.json").read_text())
        jsonschema.Draft202012Validator.check_schema(schema)
        validators[kind] = jsonschema.Draft202012Validator(schema)

    faults = []
    scratch_dir = tempfile.TemporaryDirectory(prefix="kel-schema-")  # removed at exit
    scratch = scratch_dir.name

    def schema_errors(kind, path):
        try:
            document = json.loads(path.read_bytes())
        except (ValueError, UnicodeDecodeError, RecursionError):
            return ["not JSON"]
        try:
            return [f"{e.json_path}: {e.message}" for e in validators[kind].iter_errors(document)]
        except RecursionError:
            return ["nested too deep for the validator"]

    def loader_takes(path):
        run = subprocess.run([zedsh, "validate", str(path)], capture_output=True, text=True, errors="replace")
        if run.returncode not in (0, 1):
            faults.append(f"{path}: zedsh validate ended with {run.returncode}: {run.stderr.strip()}")
        return run.returncode == 0

    for kind in KINDS:
        for shipped in sorted((source / "data").glob(f"*/{kind}.json")):
            for error in schema_errors(kind, shipped):
                faults.append(f"{shipped}: the schema refuses a shipped file: {error}")
            if not loader_takes(shipped):
                faults.append(f"{shipped}: the loader refuses a shipped file")

        page = (source / "docs" / DOCUMENTED[kind]).read_text()
        example = pathlib.Path(scratch) / f"example-{kind}.json"
        example.write_text(re.search(r"```json\n(.*?)```", page, re.S).group(1))
        for error in schema_errors(kind, example):
            faults.append(f"{DOCUMENTED[kind]}: the schema refuses the example: {error}")
        if not loader_takes(example):
            faults.append(f"{DOCUMENTED[kind]}: the loader refuses the example")

        for path in sorted((here / "refused" / kind).glob("*.json")):
            if loader_takes(path):
                faults.append(f"{path}: the loader takes a file meant to be refused")
            if not schema_errors(kind, path):
                faults.append(f"{path}: the schema takes a file the loader refuses")

        for path in sorted((here / "loader-only" / kind).glob("*.json")):
            if loader_takes(path):
                faults.append(f"{path}: the loader takes a file meant to be refused")
            for error in schema_errors(kind, path):
                faults.append(f"{path}: the schema now says this itself ({error}): move the file to refused/")

        corpus = sorted((source / "fuzz" / "corpus" / kind).iterdir())
        taken = 0
        for path in corpus:
            errors = schema_errors(kind, path)
            if errors and loader_takes(path):
                faults.append(f"{path}: the schema refuses a file the loader takes: {errors[0]}")
            taken += not errors
        print(f"{kind}: {len(corpus)} kept fuzz inputs, {taken} taken by the schema")

    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
