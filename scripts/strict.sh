#!/usr/bin/env bash
# Keeps the library honest: compiles each of its sources, and the sample host, with strict warnings
# as errors and without anything that afx/ has beyond the documented framework
# (afx/documented_only.h), for Windows and natively. Fails on any finding.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0

# -isystem: the framework's headers are held to the same rules as Visual Studio's would be.
flags=(
  -std=c++17 -Werror -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow
  -Wold-style-cast -Woverloaded-virtual -Wnon-virtual-dtor -Wsuggest-override -Wextra-semi
  -Wcast-qual -Wcast-align -Wformat=2 -Wdouble-promotion -Wswitch-enum -Wundef
  -Wduplicated-cond -Wduplicated-branches -Wlogical-op -Wredundant-decls -Wunused-macros
  -Wzero-as-null-pointer-constant -Wdeprecated-copy-dtor
  -Werror=conditionally-supported -mavx512f -DCXC_WIDE_PASSES
  -DCXC_EXPORTS -DCXC_MATRIX_EXPORTS -DCXC_COMMONUI_EXPORTS
  -I. -isystem afx/include
)
windows=(-DUNICODE -D_UNICODE -DNOMINMAX -DWINVER=0x0A00 -D_WIN32_WINNT=0x0A00)

portable=({cxcdata,cxcfile,cxcpkg,siblings/matrix}/*.cpp)
# The counterpart without windows is not part of the Windows library.
everything=($(ls {cxcdata,cxcfile,cxcpkg,cxcui,siblings/*,host}/*.cpp | grep -v no_managers.cpp))

# compile COMPILER FLAGS... -- SOURCES...: the framework is compiled once, the sources behind it.
compile() {
  local command=()
  while [ "$1" != -- ]; do command+=("$1"); shift; done
  shift
  "${command[@]}" "${flags[@]}" -x c++-header "$work/first.h" -o "$work/first.h.gch"
  printf '%s\n' "$@" | xargs -P "$(nproc)" -n 1 "${command[@]}" "${flags[@]}" -fsyntax-only \
    -I "$work" -include first.h || failed=1
}
echo '#include "afx/documented_only.h"' >"$work/first.h"
compile g++ -- "${portable[@]}"
compile x86_64-w64-mingw32-g++-posix "${windows[@]}" -- "${everything[@]}"

# What neither compiler comes across: other branches of the preprocessor, macros, texts. The folder
# may be named, its namespace may not.
words=$(sed -nE 's/^(#pragma GCC poison|\/\/ not used:) //p' afx/documented_only.h |
  tr ' ' '\n' | grep -vx afx)
for word in $words; do
  grep -rqw -- "$word" afx/include afx/core || { echo "strict: afx/ has no $word"; failed=1; }
done
forbidden="\\b(${words//$'\n'/|})\\b|\\bafx::|#\\s*include\\s*[\"<]afx[/_]"
grep -rnE --include='*.h' --include='*.cpp' "$forbidden" \
  cxc.h framework.h cxcdata cxcfile cxcpkg cxcui siblings host && failed=1

[ "$failed" -eq 0 ] && echo "strict: nothing found"
exit "$failed"
