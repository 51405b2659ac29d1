#!/usr/bin/env bash
# The Python package's tests against a fresh venv install of ./python:
#   run.sh SOURCE_DIR LIBRARY WORK_DIR PAYLOAD_READER GENERATED_DIR
# Run once with numpy (when installed) and once with numpy hidden. Exits 77
# (reported as skipped) when the interpreter cannot make a venv.
set -euo pipefail
source_dir=$1 library=$2 work=$3 reader=$4 generated=$5

python=/usr/bin/python3
[ -x "$python" ] || python=$(command -v python3 || true)
if [ -z "$python" ] || ! "$python" -c "import setuptools, wheel, venv, ensurepip" 2>/dev/null \
  || ! "$python" -m pip --version >/dev/null 2>&1; then
  echo "SKIPPED: python3-venv, python3-pip or python3-setuptools is not installed (scripts/deps.sh installs them)"
  exit 77
fi

rm -rf "$work"
mkdir -p "$work"
# pip comes from the system site packages: no copy of it in the venv.
"$python" -m venv --system-site-packages --without-pip "$work/venv"
# pip builds in the directory it is given: a copy keeps the source tree clean.
mkdir "$work/package"
cp -r "$source_dir/python/pyproject.toml" "$source_dir/python/setup.py" "$source_dir/python/README.md" \
  "$source_dir/python/talvex" "$work/package/"
rm -rf "$work/package/talvex/__pycache__" "$work/package/talvex/_flat.py" "$work/package/talvex/libtalvex.so"
TALVEX_SOURCE_DIR=$source_dir TALVEX_LIBRARY=$library \
  "$work/venv/bin/python" -m pip install -q --no-build-isolation --no-deps "$work/package" \
  > "$work/pip.log" 2>&1 || { cat "$work/pip.log"; exit 1; }

# A library built with the sanitizers needs their runtime loaded first (and
# the C++ runtime with it, for exceptions), since python itself is not built
# with them. Leak detection stays on: the library must not leak under Python.
if readelf -d "$library" 2>/dev/null | grep -q 'libasan'; then
  export LD_PRELOAD="$(gcc -print-file-name=libasan.so) $(gcc -print-file-name=libstdc++.so)"
  # Short allocation stacks, so that the suppressions of the interpreter's own
  # allocations never cover one made inside the library.
  export ASAN_OPTIONS=detect_leaks=1:malloc_context_size=4:allocator_may_return_null=1
  export LSAN_OPTIONS="suppressions=$source_dir/tests/python/lsan.supp:print_suppressions=0"
fi

export TALVEX_SOURCE_DIR=$source_dir TALVEX_PAYLOAD_READER=$reader TALVEX_GENERATED_DIR=$generated
export TALVEX_WORK_DIR=$work
cd "$work"
tests=$source_dir/tests/python
if "$work/venv/bin/python" -c "import numpy" 2>/dev/null; then
  echo "== with numpy"
  "$work/venv/bin/python" -m unittest discover -s "$tests" -p 'test_*.py'
  export TALVEX_SECOND_PASS=1
fi
echo "== without numpy"
"$work/venv/bin/python" -c "
import sys, unittest
sys.modules['numpy'] = None  # import numpy now raises ImportError
sys.argv = ['unittest', 'discover', '-s', sys.argv[1], '-p', 'test_*.py']
unittest.main(module=None)
" "$tests"
