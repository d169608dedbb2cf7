#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Sets up, builds and runs the main job: the host application kelbrowser's
# tour of generated forms on the simulated network (PNGs and a transcript in
# build/tour/), then the layered configuration lookup of a context
# ("console") over a system file, a user file and a workspace, and kelconf
# check on a hand-edited file with a broken section.
set -euo pipefail
cd "$(dirname "$0")/.."
# Only what the main job runs: the browser, kelconf and the modules they load.
bash scripts/setup.sh default kelbrowser kelconf KELRes OrvexLaunch

user_dir=$(mktemp -d)
trap 'rm -rf "$user_dir"' EXIT

echo "== kelbrowser --tour build/tour"
rm -rf build/tour
ORVEX_USER_PATH="$user_dir" ORVEX_SYSTEM_PATH="$user_dir" QT_QPA_PLATFORM=offscreen \
  build/bin/kelbrowser --tour build/tour 2>/dev/null
sed -n '/^== Echo on Network core Router r1 Interface eth0/,/picture/p' build/tour/transcript.txt
echo
cp data/config/user/console.ucfg "$user_dir/$(id -un)console.ucfg"
export ORVEX_SYSTEM_PATH="$PWD/data/config/system" ORVEX_USER_PATH="$user_dir"

show() {
  echo "== kelconf get $*"
  build/bin/kelconf get "$@" 2>/dev/null
}
show console Console Font          # only the system file has it
show console Console MaxLines      # the user file wins over the system file
show console Display Width         # the user file lacks it: the system file answers
show --workspace data/config/workspaces/network.kws console Display Width   # the workspace first
show console Console Colour        # in neither: status 9, the default
echo "== kelconf check data/config/sample.conf"
build/bin/kelconf check data/config/sample.conf
