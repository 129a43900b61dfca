# build [TARGET...]: the optimised build that is measured; everything, or only the targets. The log
# is shown where something went wrong. For bench/run and bench/compare, in the project's folder.
build() {
  local log=build/linux-bench.log
  scripts/install-deps.sh
  mkdir -p build
  if ! { cmake --preset linux-bench &&
         cmake --build --preset linux-bench ${1:+--target "$@"}; } >"$log" 2>&1; then
    tail -n 40 "$log" >&2
    echo "bench: the build failed" >&2
    return 1
  fi
}
