#!/usr/bin/env bash
# Sets up, builds and runs the main job: kelconf on the shipped sample
# configuration file (sections written back on stdout, failures on stderr).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh default
echo "== kelconf check data/config/sample.conf"
build/bin/kelconf check data/config/sample.conf
