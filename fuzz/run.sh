#!/usr/bin/env bash
# Fuzzes the records, the public interface and the framework subset.
#   fuzz/run.sh                       a bounded number of inputs for each target, as the tests do
#   fuzz/run.sh --minutes N [TARGET]  each target (or one) for N minutes; keeps what is new
#   fuzz/run.sh --coverage            what the corpus reaches of the library
# Inputs that end a target are left in build/fuzz/found, new ones of interest in build/fuzz/corpus.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

declare -A runs=([vector]=10000 [dataset]=2000 [package]=500 [group]=1000 [sequence]=20000
                 [framework]=20000)
targets=(vector dataset package group sequence framework)
mode=${1:-}
minutes=${2:-}
if [ "$mode" = --minutes ] && [ $# -ge 3 ]; then
  targets=("$3")
fi

# build PRESET [CMAKE-ARGUMENT...]
build() {
  local preset=$1
  shift
  mkdir -p build/fuzz/found
  if ! { cmake --preset linux-fuzz -B "build/$preset" "$@" &&
         cmake --build "build/$preset" -j "$(nproc)"; } >build/fuzz/build.log 2>&1; then
    tail -n 40 build/fuzz/build.log
    exit 1
  fi
  "build/$preset/bin/fuzz_seeds" build/fuzz/seeds
}

# The folders with inputs for a target; the fuzzer writes what is new into the first.
corpus_of() {
  mkdir -p "build/fuzz/corpus/$1"
  for folder in "build/fuzz/corpus/$1" "fuzz/corpus/$1" "build/fuzz/seeds/$1"; do
    [ ! -d "$folder" ] || echo "$folder"
  done
}

export ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1

if [ "$mode" = --coverage ]; then
  build linux-fuzz-coverage "-DCMAKE_CXX_FLAGS=-fprofile-instr-generate -fcoverage-mapping"
  bin=build/linux-fuzz-coverage/bin
  rm -f build/fuzz/*.profraw
  for target in "${targets[@]}"; do
    mapfile -t corpus < <(corpus_of "$target")
    LLVM_PROFILE_FILE="build/fuzz/$target.profraw" "$bin/fuzz_$target" -runs=0 "${corpus[@]}" \
      >"build/fuzz/$target.log" 2>&1
  done
  llvm-profdata-14 merge -o build/fuzz/all.profdata build/fuzz/*.profraw
  llvm-cov-14 export "$bin/libcxc.so" -instr-profile=build/fuzz/all.profdata -summary-only \
    cxcdata/*.cpp cxcdata/*.h cxcfile/*.cpp cxcfile/*.h cxcpkg/*.cpp cxcpkg/*.h 2>/dev/null |
    /usr/bin/python3 -c '
import json, sys
totals = json.load(sys.stdin)["data"][0]["totals"]
for name in ("lines", "branches"):
    print("fuzz: %.1f %% of %d %s" % (totals[name]["percent"], totals[name]["count"], name))'
  exit
fi

build linux-fuzz
bin=build/linux-fuzz/bin
failed=0
for target in "${targets[@]}"; do
  mapfile -t corpus < <(corpus_of "$target")
  log=build/fuzz/$target.log
  limit=(-runs="${runs[$target]}" -seed=1)
  [ "$mode" != --minutes ] || limit=(-max_total_time=$((60 * minutes)))
  if "$bin/fuzz_$target" "${limit[@]}" -max_len=4096 -timeout=60 -rss_limit_mb=2500 \
      -malloc_limit_mb=1000 -dict=fuzz/records.dict -artifact_prefix=build/fuzz/found/ \
      "${corpus[@]}" >"$log" 2>&1; then
    echo "fuzz: $target: $(grep -aoE 'Done [0-9]+ runs in [0-9]+ second' "$log")s," \
      "$(grep -aoE 'cov: [0-9]+ ft: [0-9]+' "$log" | tail -n 1)"
  else
    echo "fuzz: $target FAILED; see $log"
    grep -aE -A 12 'different|instead of|ERROR|runtime error' "$log" | head -n 30
    failed=1
  fi
done
exit "$failed"
