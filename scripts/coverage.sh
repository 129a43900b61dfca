#!/usr/bin/env bash
# Lines and branches of the library that its tests reach; fails below 98 % and 90 %.
#   scripts/coverage.sh [--missed]    with the lines that no test reaches
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
build=build/coverage
mkdir -p build
if ! { cmake --preset linux-coverage && cmake --build --preset linux-coverage -j "$(nproc)"; } \
    >build/coverage.log 2>&1; then
  tail -n 40 build/coverage.log
  exit 1
fi
rm -f "$build"/*.profraw
# Of the tests of trust those of failing memory, which reach what no other does.
for layer in cxcdata cxcfile cxcpkg tools trust; do
  filter='*'
  [ "$layer" != trust ] || filter='*Memory*'
  LLVM_PROFILE_FILE="$build/$layer.profraw" "$build/bin/${layer}_tests" \
    --gtest_filter="$filter" >"$build/$layer.out" 2>&1 ||
    { tail -n 20 "$build/$layer.out"; exit 1; }
done
llvm-profdata-14 merge -o "$build/all.profdata" "$build"/*.profraw
sources=(cxcdata/*.cpp cxcdata/*.h cxcfile/*.cpp cxcfile/*.h cxcpkg/*.cpp cxcpkg/*.h)
if [ "${1:-}" = --missed ]; then
  llvm-cov-14 show "$build/bin/libcxc.so" -instr-profile="$build/all.profdata" \
    -show-expansions=false -show-instantiations=false "${sources[@]}" |
    awk '/^\/.*:$/ { file = $0 } /^ *[0-9]+\| *0\|/ { print file $0 }'
fi
llvm-cov-14 export "$build/bin/libcxc.so" -instr-profile="$build/all.profdata" -summary-only \
  "${sources[@]}" 2>/dev/null | /usr/bin/python3 -c '
import json, sys
totals = json.load(sys.stdin)["data"][0]["totals"]
lines, branches = totals["lines"], totals["branches"]
for name, part in [("lines", lines), ("branches", branches)]:
    print("coverage: %.1f %% of %d %s of the library" % (part["percent"], part["count"], name))
sys.exit(0 if lines["percent"] >= 98 and branches["percent"] >= 90 else 1)'
