#!/usr/bin/env bash
# Runs a Windows program under Wine: with a prefix of its own in the build folder, without the
# questions for Mono and Gecko, and on a virtual screen unless CXC_DISPLAY names a real one.
#   scripts/wine-run.sh PROGRAM.exe [ARGUMENTS]
#   scripts/wine-run.sh --stop      ends Wine and the virtual screen
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
state="${CXC_WINE_STATE:-$root/build/wine}"
mkdir -p "$state"
export WINEPREFIX="$state/prefix" WINEARCH=win64 WINEDEBUG="${WINEDEBUG:--all}"
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"

wine=/usr/lib/wine/wine64
[ -x "$wine" ] || wine=$(command -v wine64 || command -v wine)

if [ "${1:-}" = --stop ]; then
  wineserver -k 2>/dev/null || true
  if [ -s "$state/xvfb.pid" ]; then
    kill "$(cat "$state/xvfb.pid")" 2>/dev/null || true
    rm -f "$state/xvfb.pid"
  fi
  exit 0
fi

# One screen and one prefix serve all programs of a run; whoever comes first makes them.
exec 9>"$state/lock"
flock 9
if [ -n "${CXC_DISPLAY:-}" ]; then
  export DISPLAY="$CXC_DISPLAY"
else
  if ! { [ -s "$state/xvfb.pid" ] && kill -0 "$(cat "$state/xvfb.pid")" 2>/dev/null; }; then
    rm -f "$state/display"
    Xvfb -displayfd 8 -screen 0 1280x960x24 -nolisten tcp 8>"$state/display" 9>&- \
      >"$state/xvfb.log" 2>&1 &
    echo $! >"$state/xvfb.pid"
    for _ in $(seq 200); do
      [ -s "$state/display" ] && break
      sleep 0.05
    done
    if [ ! -s "$state/display" ]; then
      echo "wine-run: no virtual screen: $(cat "$state/xvfb.log")" >&2
      exit 1
    fi
  fi
  DISPLAY=":$(cat "$state/display")"
  export DISPLAY
fi
if [ ! -f "$state/ready" ]; then
  if ! "$wine" wineboot --init >"$state/wineboot.log" 2>&1 9>&-; then
    cat "$state/wineboot.log" >&2
    exit 1
  fi
  # The virtual screen has no window manager; waiting for one costs two seconds per window.
  "$wine" reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /t REG_SZ /d N /f >/dev/null 2>&1 9>&-
  wineserver -w 9>&- || true
  touch "$state/ready"
fi
flock -u 9
exec 9>&-
exec "$wine" "$@"
