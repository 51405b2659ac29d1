#!/usr/bin/env bash
# Runs a test program with its memory capped at 4 GB, so that a reader which
# allocates what its input does not justify fails instead of swapping.
# AddressSanitizer reserves far more address space than that for its shadow,
# so a sanitized build caps through the sanitizer's own limits instead.
# Usage: run_limited.sh SANITIZED(0|1) PROGRAM [ARGS...]
set -eu
sanitized=$1
shift
if [ "$sanitized" = 1 ]; then
  export ASAN_OPTIONS="${ASAN_OPTIONS:+$ASAN_OPTIONS:}hard_rss_limit_mb=4096:max_allocation_size_mb=4096:allocator_may_return_null=0"
else
  ulimit -v 4194304
fi
exec "$@"
