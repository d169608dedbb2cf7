#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# A private SNMP agent to try the SNMP module on: Debian's snmpd run as you on
# udp:127.0.0.1:16161, with the communities and SNMPv3 user that
# data/snmp/agents.conf names, in a folder of its own.
#   bash scripts/local-snmpd.sh start|stop|status
# Writes reach only the system group and the notification tables: run by
# root, snmpd would otherwise let a Set take this machine's interfaces down.
set -euo pipefail
folder="${TMPDIR:-/tmp}/kel-local-snmpd-$(id -u)"
port="${KEL_SNMPD_PORT:-16161}"
pidfile="$folder/snmpd.pid"

running() { [[ -f $pidfile ]] && kill -0 "$(cat "$pidfile")" 2>/dev/null; }

case "${1:-}" in
  start)
    if running; then echo "local-snmpd: already running (pid $(cat "$pidfile")) on udp:127.0.0.1:$port"; exit 0; fi
    command -v /usr/sbin/snmpd >/dev/null || { echo "local-snmpd: snmpd is not installed (apt-get install snmpd)" >&2; exit 1; }
    mkdir -p "$folder/persistent"
    chmod 700 "$folder"
    cat >"$folder/snmpd.conf" <<CONF
view kelall included .1
view kelwrite included .1.3.6.1.2.1.1
view kelwrite included .1.3.6.1.6.3.13
rocommunity public 127.0.0.1
rwcommunity private 127.0.0.1 -V kelwrite
createUser kel SHA-256 "kel-auth-key" AES "kel-priv-key"
group kelusers usm kel
access kelusers "" usm priv exact kelall kelwrite none
trap2sink 127.0.0.1:1162 public
CONF
    SNMP_PERSISTENT_DIR="$folder/persistent" MIBS= /usr/sbin/snmpd -C -c "$folder/snmpd.conf" \
      -Lf "$folder/snmpd.log" -p "$pidfile" "udp:127.0.0.1:$port"
    for _ in $(seq 50); do running && break; sleep 0.1; done
    running || { echo "local-snmpd: snmpd did not start; see $folder/snmpd.log" >&2; exit 1; }
    echo "local-snmpd: running (pid $(cat "$pidfile")) on udp:127.0.0.1:$port; log in $folder/snmpd.log"
    ;;
  stop)
    if running; then kill "$(cat "$pidfile")"; echo "local-snmpd: stopped"; else echo "local-snmpd: not running"; fi
    rm -rf "$folder"
    ;;
  status)
    if running; then echo "local-snmpd: running (pid $(cat "$pidfile")) on udp:127.0.0.1:$port"; else echo "local-snmpd: not running"; exit 1; fi
    ;;
  *)
    echo "usage: bash scripts/local-snmpd.sh start|stop|status" >&2
    exit 2
    ;;
esac
