#!/usr/bin/env bash
# Installs the default build into a temporary prefix and consumes it as a
# host outside this tree would: every installed header compiles on its own,
# the example finds the package with CMake and builds with pkg-config, and
# both builds run offscreen; the Debian package is built, unpacked and
# its tools run, and apt (as root) says it would install it.
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
private=$(find "$prefix/include" -name 'ZedJsonReader.h' -o -name 'KELTextReader.h' -o -name 'KELIdlePass.h' | head -n 1)
if [ -n "$private" ]; then echo "a private header was installed: $private" >&2; exit 1; fi
count=0
for header in $(cd "$prefix/include" && find kel zed -name '*.h' | sort); do
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

echo "== pkg-config kel"
# shellcheck disable=SC2046
c++ -o "$work/hello-pkg" examples/hello-host/main.cpp -fPIC \
  -DKEL_NETWORK_DIR="\"$(pkg-config --variable=datadir kel)/network\"" $(pkg-config --cflags --libs kel)
"$work/hello-pkg"

echo "== installed network files, schemas and checker"
"$prefix/bin/zedsh" validate "$prefix"/share/kel/network/dictionary.json "$prefix"/share/kel/network/instances.json
ls "$prefix"/share/kel/schema/zed-dictionary.schema.json "$prefix"/share/kel/schema/zed-instances.schema.json >/dev/null

echo "== Debian package"
(cd "$build" && cpack >/dev/null)
deb=$(ls "$build"/kel_*.deb | head -n 1)
dpkg-deb --info "$deb" | grep -E '^ (Package|Version|Depends):'
dpkg-deb -x "$deb" "$work/root"
unset LD_LIBRARY_PATH
classes=$("$work/root/usr/bin/zedsh" classes)
echo "${classes%%$'\n'*}"
# What apt would do on this machine, without doing it.
if [ "$(id -u)" = 0 ]; then apt-get install --simulate "$(realpath "$deb")" | grep -E '^(Inst|Conf) kel'; fi
