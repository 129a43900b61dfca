#!/usr/bin/env bash
# The main job on real work: recording -> coherence -> dataset -> .cxc file -> picture -> windows.
#   ./demo.sh                 a simulated recording with known coupling
#   ./demo.sh RECORDING       any recording that MNE reads
# Leaves the .cxc file, two pictures and a report in out/. Then the sample host: on a machine with a
# display it opens with the dataset; without one it is worked through on a virtual screen, and
# pictures of its windows are left in out/windows/.
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

# build PRESET TARGET...
build() {
  local preset=$1
  shift
  if ! { cmake --preset "$preset" &&
         cmake --build --preset "$preset" -j "$(nproc)" --target "$@"; } >"$log" 2>&1; then
    tail -n 40 "$log" >&2
    echo "demo: the build failed" >&2
    exit 1
  fi
}

echo "demo: building the library, its Python package and the program cxc"
build linux cxc_python cxc_tool
PYTHONPATH="build/linux/python" /usr/bin/python3 -m cxc demo "${recording[@]}" --out out
dataset=$(ls -t out/*.cxc | head -n 1)

echo "demo: building the windows"
build windows cxc_host cxc_tour
if [ -n "${DISPLAY:-}" ]; then
  echo "demo: $dataset in the sample host; close its window to end"
  CXC_DISPLAY="$DISPLAY" scripts/wine-run.sh build/windows/bin/cxc_host.exe "$dataset"
  exit
fi
echo "demo: $dataset in the sample host, on a virtual screen"
trap 'scripts/wine-run.sh --stop' EXIT
rm -rf out/windows
mkdir -p out/windows
# The dataset is Active and Control at once: combined, each slice is seen against the mean.
scripts/wine-run.sh build/windows/bin/cxc_tour.exe out/windows "$dataset" "$dataset"
/usr/bin/python3 - out/windows/*.bmp <<'PY'
import pathlib
import sys

from PIL import Image

for name in sys.argv[1:]:
    path = pathlib.Path(name)
    Image.open(path).convert("RGB").save(path.with_suffix(".png"))
    path.unlink()
PY
echo "demo: pictures of the windows in out/windows"
