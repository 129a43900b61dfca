#!/usr/bin/env bash
# The static checkers over the library, the framework subset and the tools; fails on any finding.
#   scripts/analyze.sh BUILD    a configured native build, for how each source is compiled
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
build=$1
failed=0

cppcheck -q -j "$(nproc)" --std=c++17 --enable=warning,performance,portability --inline-suppr \
  --suppress=missingInclude --suppress=unknownMacro --error-exitcode=1 \
  -I. -Iafx/include -DCXC_EXPORTS \
  cxcdata cxcfile cxcpkg siblings/matrix tools afx/core afx/headless python/src || failed=1

# What is only part of the Windows build has scripts/strict.sh; its sources do not compile here.
# A finding makes clang-tidy fail, too: what counts is what it says.
found=$(ls {cxcdata,cxcfile,cxcpkg,siblings/matrix,afx/core,afx/headless,tools/cxc}/*.cpp |
  grep -v _win32.cpp |
  xargs -P "$(nproc)" -n 3 clang-tidy -p "$build" --quiet 2>build/analyze.log |
  grep -E '(warning|error):' | grep -v unknown-warning-option) || true
if [ -n "$found" ]; then
  sort -u <<<"$found"
  failed=1
fi
# A checker that is missing or falls over finds nothing, either.
grep -E 'not found|No such file|Stack dump|terminated by signal' build/analyze.log && failed=1

[ "$failed" -eq 0 ] && echo "analyze: nothing found"
exit "$failed"
