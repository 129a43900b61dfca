#!/usr/bin/env bash
# Passes every test: installs what is missing, then builds and tests each build.
#   ./test.sh                 everything
#   ./test.sh checks|native|analysis|coverage|memcheck|threads|instructions|sanitized|fuzz|windows \
#             [...]
#                             only these stages
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
scripts/install-deps.sh

# Nothing of the Windows stage goes on running behind the last line.
trap 'scripts/wine-run.sh --stop' EXIT

stages=("$@")
[ ${#stages[@]} -gt 0 ] ||
  stages=(checks native analysis coverage memcheck threads instructions sanitized fuzz windows)
jobs=$(nproc)
failed=()
tested=
rm -rf build/*/tests/results  # those of earlier runs do not count

# run_stage NAME PRESET: configure, build, test; the log is shown where something went wrong.
run_stage() {
  local name=$1 preset=$2 log="build/$2.log" begin=$SECONDS
  mkdir -p build
  echo "== $name: configure and build"
  if ! { cmake --preset "$preset" && cmake --build --preset "$preset" -j "$jobs"; } \
      >"$log" 2>&1; then
    tail -n 60 "$log"
    echo "== $name: the build failed"
    failed+=("$name build")
    return
  fi
  echo "== $name: test"
  tested=1
  if ! GTEST_OUTPUT=xml:results/ ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1 \
      UBSAN_OPTIONS=print_stacktrace=1 ctest --preset "$preset"; then
    failed+=("$name tests")
  fi
  echo "== $name: $((SECONDS - begin)) s"
}

for stage in "${stages[@]}"; do
  case $stage in
    native) run_stage native linux ;;
    sanitized) run_stage sanitized linux-asan ;;
    windows) run_stage windows windows ;;
    analysis)
      echo "== analysis"
      [ -f build/linux/compile_commands.json ] || cmake --preset linux >/dev/null
      scripts/analyze.sh build/linux || failed+=(analysis)
      ;;
    coverage)
      echo "== coverage"
      scripts/coverage.sh || failed+=(coverage)
      ;;
    memcheck)
      echo "== memcheck"
      scripts/memcheck.sh build/linux || failed+=(memcheck)
      ;;
    threads)
      echo "== threads"
      scripts/threads.sh || failed+=(threads)
      ;;
    fuzz)
      echo "== fuzz"
      fuzz/run.sh || failed+=(fuzz)
      ;;
    instructions)
      echo "== instructions"
      bench/compare || failed+=(instructions)
      ;;
    checks)
      echo "== checks"
      scripts/check.py || failed+=(checks)
      scripts/docs.sh || failed+=(docs)
      scripts/strict.sh || failed+=(strict)
      ;;
    *) echo "test.sh: unknown stage $stage" >&2; exit 2 ;;
  esac
done

if [ -n "$tested" ]; then
  /usr/bin/python3 scripts/summary.py build/*/tests/results || failed+=("the tests counted")
fi
if [ ${#failed[@]} -gt 0 ]; then
  echo "FAILED: ${failed[*]}"
  exit 1
fi
