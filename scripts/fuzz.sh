#!/usr/bin/env bash
# Builds the libFuzzer targets with clang and runs each for a bounded time.
# Usage: scripts/fuzz.sh [SECONDS_PER_TARGET] [TARGET...]
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/deps.sh

seconds=${1:-60}
shift || true
build=${TALVEX_FUZZ_BUILD_DIR:-build-fuzz}
CC=clang CXX=clang++ cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTALVEX_SANITIZE=ON \
  -DTALVEX_LIBFUZZER=ON -DTALVEX_BUILD_APPS=OFF >/dev/null
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for f in fuzz/*.cpp; do
    name=$(basename "$f" .cpp)
    [ "$name" = ReplayMain ] || targets+=("$name")
  done
fi
for name in "${targets[@]}"; do
  cmake --build "$build" -j "$(nproc 2>/dev/null || echo 2)" --target "fuzz_$name"
  work="$build/fuzz-work/$name"
  mkdir -p "$work"
  echo "== fuzz $name for ${seconds}s"
  "$build/fuzz/fuzz_$name" -max_total_time="$seconds" -print_final_stats=1 "$work" "fuzz/corpus/$name"
done
