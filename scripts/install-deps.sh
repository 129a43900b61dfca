#!/usr/bin/env bash
# Installs from Debian what the build, the tests and the demo need and this machine lacks.
# Says what it does; a second run finds everything and returns at once.
set -euo pipefail

packages=(
  g++ clang libclang-rt-14-dev llvm-14 clang-format clang-tidy cppcheck valgrind
  cmake ninja-build git doxygen dpkg-dev file
  libgtest-dev googletest libbenchmark-dev libcli11-dev nlohmann-json3-dev
  g++-mingw-w64-x86-64-posix wine wine64 xvfb xauth
  python3 python3-dev python3-numpy python3-scipy python3-matplotlib python3-mne
  python3-pytest python3-tqdm python3-pil pybind11-dev
  python3-pip python3-setuptools python3-wheel python3-venv mypy
  python3-netcdf4 python3-h5netcdf python3-h5py python3-xarray python3-pandas python3-networkx
  octave python3-distributed chromium chromium-driver python3-selenium
)

missing=()
for package in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$status" = installed ] || missing+=("$package")
done
if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

sudo=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "install: run as root, or install sudo" >&2; exit 1; }
  sudo=(sudo)
fi
echo "install: from Debian: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { "${sudo[@]}" apt-get update &&
       "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive \
         apt-get install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
  tail -n 20 "$log" >&2
  echo "install: apt-get failed" >&2
  exit 1
fi
echo "install: done"
