#!/usr/bin/env bash
# The main job on real work: recording -> coherence -> dataset -> .cxc file -> picture.
#   ./demo.sh                 a simulated recording with known coupling
#   ./demo.sh RECORDING       any recording that MNE reads
# Leaves the .cxc file, two pictures and a report in out/.
set -euo pipefail
caller=$PWD
cd "$(dirname "${BASH_SOURCE[0]}")"
scripts/install-deps.sh

recording=()
if [ $# -gt 0 ]; then
  case $1 in
    /*) recording=("$1") ;;
    *) recording=("$caller/$1") ;;
  esac
fi

mkdir -p build out
log=build/demo-build.log
echo "demo: building the library and its Python package"
if ! { cmake --preset linux && cmake --build --preset linux -j "$(nproc)" --target cxc_python; } \
    >"$log" 2>&1; then
  tail -n 40 "$log" >&2
  echo "demo: the build failed" >&2
  exit 1
fi
PYTHONPATH="build/linux/python" /usr/bin/python3 -m cxc demo "${recording[@]}" --out out
