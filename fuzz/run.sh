#!/usr/bin/env bash
# Fuzzes the records, the public interface and the framework subset.
#   fuzz/run.sh                       a bounded number of inputs for each target, as the tests do
#   fuzz/run.sh --minutes N [TARGET]  each target (or one) for N minutes; keeps what is new
# Inputs that end a target are left in build/fuzz/found, new ones of interest in build/fuzz/corpus.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

limit=(-runs=4000)
targets=(vector dataset package group sequence framework)
if [ "${1:-}" = --minutes ]; then
  limit=(-max_total_time=$((60 * $2)) -print_final_stats=1)
  [ $# -lt 3 ] || targets=("$3")
fi

mkdir -p build/fuzz/found
if ! { cmake --preset linux-fuzz && cmake --build --preset linux-fuzz -j "$(nproc)"; } \
    >build/fuzz/build.log 2>&1; then
  tail -n 40 build/fuzz/build.log
  exit 1
fi
bin=build/linux-fuzz/bin
"$bin/fuzz_seeds" build/fuzz/seeds

export ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1
failed=0
for target in "${targets[@]}"; do
  mkdir -p "build/fuzz/corpus/$target" "build/fuzz/seeds/$target"
  log=build/fuzz/$target.log
  # The fuzzer writes what is new into the first folder.
  corpus=("build/fuzz/corpus/$target" "fuzz/corpus/$target" "build/fuzz/seeds/$target")
  [ -d "${corpus[1]}" ] || corpus=("${corpus[0]}" "${corpus[2]}")
  if "$bin/fuzz_$target" "${limit[@]}" -seed=1 -max_len=4096 -timeout=20 -rss_limit_mb=2500 \
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
