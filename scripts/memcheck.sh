#!/usr/bin/env bash
# The native tests under valgrind's memcheck; fails on any use of memory that is not there or not
# written, and on lost memory.
#   scripts/memcheck.sh BUILD    a native build
set -euo pipefail
build=$1
failed=0
for layer in matrix afx cxcdata cxcfile cxcpkg tools; do
  # Possibly lost is what datasets without an owner hold, which are kept deliberately.
  if valgrind -q --error-exitcode=9 --leak-check=full --show-leak-kinds=definite,indirect \
      --errors-for-leak-kinds=definite,indirect "$build/bin/${layer}_tests" \
      >"$build/memcheck.out" 2>&1; then
    echo "memcheck: $layer: $(grep -c '       OK' "$build/memcheck.out") tests, nothing found"
  else
    tail -n 60 "$build/memcheck.out"
    failed=1
  fi
done
exit "$failed"
