#!/usr/bin/env bash
# Installs what is missing, builds talvex with AddressSanitizer and
# UndefinedBehaviorSanitizer, and runs every test (unit tests, the C header
# program, the export check, the fuzz corpus replays and a short fuzz run).
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/deps.sh

# Paths under the checkout are hashed relative to it, and the folder itself
# is left out of the hash of builds with debug information, so that every
# build hits the compiler cache from clones in other folders. (Objects taken
# from the cache then name the first clone's folder in their debug
# information; the code is the same.)
export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$(pwd)}
export CCACHE_NOHASHDIR=${CCACHE_NOHASHDIR:-1}

build=${TALVEX_TEST_BUILD_DIR:-build-test}
jobs=$(nproc 2>/dev/null || echo 2)
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Debug -DTALVEX_SANITIZE=ON -DTALVEX_BUILD_TESTS=ON
cmake --build "$build" -j "$jobs"

# The library and the program must also build with clang.
if command -v clang++ >/dev/null 2>&1 && [ "${TALVEX_SKIP_CLANG:-0}" != 1 ]; then
  clang_build=${TALVEX_CLANG_BUILD_DIR:-build-test-clang}
  CC=clang CXX=clang++ cmake -S . -B "$clang_build" -DCMAKE_BUILD_TYPE=Release -DTALVEX_BUILD_TESTS=OFF >/dev/null
  cmake --build "$clang_build" -j "$jobs"
fi

# A short libFuzzer run of every target (two minutes in all), beside the
# corpus replays below; the corpora are left as they are.
if command -v clang++ >/dev/null 2>&1 && [ "${TALVEX_SKIP_FUZZ:-0}" != 1 ]; then
  targets=$(ls fuzz/*.cpp | grep -vc ReplayMain)
  TALVEX_FUZZ_NO_MERGE=1 bash scripts/fuzz.sh $((120 / targets > 0 ? 120 / targets : 1))
fi

# Last, so that the test summary closes the output.
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
ctest --test-dir "$build" --no-tests=error --output-on-failure -j "$jobs"
