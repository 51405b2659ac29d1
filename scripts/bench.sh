#!/usr/bin/env bash
# Builds the benchmarks in Release and runs them; extra arguments go to Google
# Benchmark (for example --benchmark_filter=Json).
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/deps.sh

build=${TALVEX_BENCH_BUILD_DIR:-build-bench}
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DTALVEX_BUILD_TESTS=OFF -DTALVEX_BUILD_BENCH=ON >/dev/null
cmake --build "$build" -j "$(nproc 2>/dev/null || echo 2)" --target talvex_bench
"$build/bench/talvex_bench" "$@"
