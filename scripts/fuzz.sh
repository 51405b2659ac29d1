#!/usr/bin/env bash
# Builds the libFuzzer targets with clang and runs each for a bounded time.
# Usage: scripts/fuzz.sh [SECONDS_PER_TARGET] [TARGET...]
#   Every fuzz/<target>.cpp is a target. Hangs (10 s per input), memory over
#   2 GB and single allocations over 1 GB are findings like crashes. Small
#   inputs that add coverage are merged into fuzz/corpus/<target>/; findings
#   are copied to tests/data/crashers/<target>/, which CTest replays.
#   TALVEX_FUZZ_NO_MERGE=1 leaves the corpora alone (the CI run does);
#   TALVEX_FUZZ_JOBS sets the build parallelism.
set -uo pipefail
cd "$(dirname "$0")/.."

bash scripts/deps.sh

seconds=${1:-60}
shift || true
build=${TALVEX_FUZZ_BUILD_DIR:-build-fuzz}
jobs=${TALVEX_FUZZ_JOBS:-$(nproc 2>/dev/null || echo 2)}
CC=clang CXX=clang++ cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTALVEX_SANITIZE=ON \
  -DTALVEX_LIBFUZZER=ON -DTALVEX_BUILD_APPS=OFF >/dev/null || exit 1
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for f in fuzz/*.cpp; do
    name=$(basename "$f" .cpp)
    [ "$name" = ReplayMain ] || targets+=("$name")
  done
fi
build_targets=()
for name in "${targets[@]}"; do build_targets+=(--target "fuzz_$name"); done
nice cmake --build "$build" -j "$jobs" "${build_targets[@]}" || exit 1

export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:allocator_may_return_null=1}
findings=0
for name in "${targets[@]}"; do
  work="$build/fuzz-work/$name"
  artifacts="$build/fuzz-artifacts/$name"
  corpus="fuzz/corpus/$name"
  mkdir -p "$work" "$artifacts" "$corpus"
  options=(-timeout=10 -rss_limit_mb=2048 -malloc_limit_mb=1024 -print_final_stats=1
           -artifact_prefix="$artifacts/")
  [ -f "fuzz/dict/$name.dict" ] && options+=(-dict="fuzz/dict/$name.dict")
  echo "== fuzz $name for ${seconds}s"
  nice "$build/fuzz/fuzz_$name" "${options[@]}" -max_total_time="$seconds" "$work" "$corpus" \
    2>&1 | tee "$build/fuzz-work/$name.log" | grep -E "^(#[0-9]+ +(DONE|INITED)|stat::|==[0-9]+==ERROR|SUMMARY|Done)" || true
  # Every artifact (crash, leak, timeout, oom) becomes a replayed case.
  for artifact in "$artifacts"/*; do
    [ -f "$artifact" ] || continue
    mkdir -p "tests/data/crashers/$name"
    cp "$artifact" "tests/data/crashers/$name/$(basename "$artifact")"
    rm -f "$artifact"
    findings=$((findings + 1))
    echo "   finding: tests/data/crashers/$name/$(basename "$artifact")"
  done
  if [ "${TALVEX_FUZZ_NO_MERGE:-0}" != 1 ]; then
    # Only inputs that add coverage join the seeds, and only small ones
    # (TALVEX_FUZZ_SEED_MAX bytes, 512 by default) so that the committed
    # corpora stay small; the named seeds stay.
    before=$(ls "$corpus" | wc -l)
    ls "$corpus" | sort > "$build/fuzz-work/$name.seeds"
    nice "$build/fuzz/fuzz_$name" -merge=1 "${options[@]}" "$corpus" "$work" >/dev/null 2>&1 || true
    ls "$corpus" | sort | comm -13 "$build/fuzz-work/$name.seeds" - | while read -r added; do
      [ "$(stat -c %s "$corpus/$added")" -le "${TALVEX_FUZZ_SEED_MAX:-512}" ] || rm -f "$corpus/$added"
    done
    echo "   corpus: $before -> $(ls "$corpus" | wc -l) files, $(du -sk "$corpus" | cut -f1) KB"
  fi
done
echo "== $findings finding(s)"
[ "$findings" -eq 0 ]
