#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Installs the default build into a temporary prefix and consumes it as a
# host outside this tree would: every installed header compiles on its own,
# the examples find the package with CMake (the mini console is the host
# kit's) and build with pkg-config, and run offscreen; the launch plugin
# builds from its sources against the installed headers and loads; the installed kelconf looks for system files in
# the layout's configuration folder; the Debian packages are built, checked
# (multiarch libraries without debug information, a copyright file each, the
# symbols apart), unpacked and their tools run, and apt (as root) says it
# would install them.
#   scripts/install-check.sh [BUILD_DIR]
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
cmake --install "$build" --prefix "$prefix" >/dev/null
libdir=$(dirname "$(find "$prefix" -name 'libkel.so' | head -n 1)")
export PKG_CONFIG_PATH=$libdir/pkgconfig
export LD_LIBRARY_PATH=$libdir
export QT_QPA_PLATFORM=offscreen

echo "== installed headers, each on its own"
private=$(find "$prefix/include" -name 'ZedJsonReader.h' -o -name 'KELIdlePass.h' | head -n 1)
if [ -n "$private" ]; then echo "a private header was installed: $private" >&2; exit 1; fi
count=0
for header in $(cd "$prefix/include" && find kel zed launch -name '*.h' | sort); do
  echo "#include <$header>" > "$work/one.cpp"
  # shellcheck disable=SC2046
  c++ -fsyntax-only "$work/one.cpp" $(pkg-config --cflags kel) -fPIC || { echo "does not compile alone: $header" >&2; exit 1; }
  count=$((count + 1))
done
echo "$count headers"

echo "== find_package(KEL 0.2)"
cmake -S examples/hello-host -B "$work/cmake" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/cmake" >/dev/null
"$work/cmake/hello-host"

echo "== the mini console: the host kit, found with CMake"
cmake -S examples/mini-console -B "$work/console" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/console" >/dev/null
"$work/console/mini-console" --send | grep -F "Test" || { echo "the mini console showed no reply" >&2; exit 1; }

echo "== pkg-config kel"
# shellcheck disable=SC2046
c++ -o "$work/hello-pkg" examples/hello-host/main.cpp -fPIC \
  -DKEL_NETWORK_DIR="\"$(pkg-config --variable=datadir kel)/network\"" $(pkg-config --cflags --libs kel)
"$work/hello-pkg"

echo "== the launch plugin, built as a site builds its own: the installed headers only"
mkdir -p "$work/plugin/launch"
cp launch/OrvexLaunch.cpp launch/GaLaunchRegistry.cpp launch/GaLaunchRegistry.h "$work/plugin/launch/"
# shellcheck disable=SC2046
c++ -std=c++20 -shared -fPIC -Wl,--no-undefined -o "$work/plugin/libOrvexLaunch.so" \
  "$work/plugin/launch/OrvexLaunch.cpp" "$work/plugin/launch/GaLaunchRegistry.cpp" -I"$work/plugin" \
  $(pkg-config --cflags --libs kel)
python3 - "$work/plugin/libOrvexLaunch.so" <<'PLUGIN'
import ctypes, sys
plugin = ctypes.CDLL(sys.argv[1])
plugin.GaLAUNCHGetAPIInterface.restype = ctypes.POINTER(ctypes.c_uint)
interface = plugin.GaLAUNCHGetAPIInterface()
assert interface and interface[0] == 1, "the plugin gives no interface of version 1"
print("libOrvexLaunch.so: interface version", interface[0])
PLUGIN

echo "== installed kelconf: the layout's configuration folder"
looked=$(env -u ORVEX_SYSTEM_PATH ORVEX_USER_PATH="$work" "$prefix/bin/kelconf" get console Console Font 2>&1 >/dev/null || true)
echo "$looked" | grep -F "kelconf: system file /etc/kel/console.cfg" \
  || { echo "kelconf did not look in /etc/kel:"; echo "$looked"; exit 1; } >&2

echo "== installed network files, schemas and checker"
"$prefix/bin/zedsh" validate "$prefix"/share/kel/network/dictionary.json "$prefix"/share/kel/network/instances.json
"$prefix/bin/zedsh" validate "$prefix"/share/kel/snmp/dictionary.json
ls "$prefix"/share/kel/snmp/agents.conf >/dev/null
ls "$prefix"/share/kel/schema/zed-dictionary.schema.json "$prefix"/share/kel/schema/zed-instances.schema.json >/dev/null

echo "== Debian packages"
(cd "$build" && rm -f ./*.deb ./*.ddeb && cpack >/dev/null)
for package in libkel0 libkel-dev kel-tools kel-doc; do
  deb=$(ls "$build/${package}"_*.deb)
  dpkg-deb --info "$deb" | grep -E '^ (Package|Version|Depends|Installed-Size):'
  contents=$(dpkg-deb --contents "$deb")
  grep -q "./usr/share/doc/$package/copyright" <<<"$contents" || { echo "$package: no copyright" >&2; exit 1; }
  dpkg-deb -x "$deb" "$work/root"
done
ls "$build"/libkel0-dbgsym_*.ddeb "$build"/kel-tools-dbgsym_*.ddeb >/dev/null
multiarch=$(dpkg-architecture -qDEB_HOST_MULTIARCH 2>/dev/null || gcc -print-multiarch)
for library in libkel.so.0 libzed.so.0 libzedsnmp.so.0; do
  file=$work/root/usr/lib/$multiarch/$library
  [ -e "$file" ] || { echo "$library is not in /usr/lib/$multiarch" >&2; exit 1; }
  sections=$(readelf -S "$file")
  if grep -q '\.debug_info' <<<"$sections"; then echo "$library carries its debug information" >&2; exit 1; fi
done
du -sh "$work/root"
unset LD_LIBRARY_PATH
classes=$("$work/root/usr/bin/zedsh" classes)
echo "${classes%%$'\n'*}"
# The SNMP dictionary found beside the installed network, as --agents finds it.
install -m 600 data/snmp/agents.conf "$work/agents.conf"
snmp=$("$work/root/usr/bin/zedsh" --agents "$work/agents.conf" classes)
[ "${snmp%%$'\n'*}" = "Agent (1)" ] || { echo "the installed zedsh did not find the SNMP dictionary: $snmp" >&2; exit 1; }
# What apt would do on this machine, without doing it.
if [ "$(id -u)" = 0 ]; then
  apt-get install --simulate "$(realpath "$build"/libkel0_*.deb)" "$(realpath "$build"/libkel-dev_*.deb)" \
    "$(realpath "$build"/kel-tools_*.deb)" "$(realpath "$build"/kel-doc_*.deb)" | grep -E '^(Inst|Conf) (lib)?kel'
fi
