#!/usr/bin/env bash
# The tests of what several threads do together, under clang's thread sanitizer; fails where two
# threads touch the same memory without an order.
#   scripts/threads.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
log=build/linux-threads.log
mkdir -p build
if ! { cmake --preset linux-threads && cmake --build --preset linux-threads -j "$(nproc)"; } \
    >"$log" 2>&1; then
  tail -n 60 "$log"
  exit 1
fi

# watch PROGRAM FILTER
watch() {
  if "build/linux-threads/bin/$1" --gtest_filter="$2" >"$log" 2>&1; then
    echo "threads: $1: $(grep -c '       OK' "$log") tests, nothing found"
  else
    tail -n 60 "$log"
    return 1
  fi
}

watch cxcdata_tests 'ArrayExchange.*'
watch tools_tests '*'
