#!/usr/bin/env bash
# Installs what is missing, builds talvex in Release and runs the main job of
# the talvex program on the bundled example avatar.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/deps.sh

build=${TALVEX_DEMO_BUILD_DIR:-build-release}
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DTALVEX_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" -j "$(nproc 2>/dev/null || echo 2)" >/dev/null
talvex="$build/apps/talvex"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

echo "== talvex (modes)"
"$talvex" || true

echo
echo "== talvex info examples/avatar.arf.json"
"$talvex" info examples/avatar.arf.json

echo
echo "== talvex convert: main JSON file -> archive -> main JSON file"
"$talvex" convert examples/avatar.arf.json "$work/avatar.arfz"
"$talvex" list "$work/avatar.arfz"
"$talvex" info "$work/avatar.arfz"
"$talvex" convert "$work/avatar.arfz" "$work/again/avatar.arf.json"
"$talvex" list "$work/again"

echo
echo "== talvex make-example: an avatar with dense and sparse payloads in each storage mode"
"$talvex" make-example "$work/example/avatar.arf.json"
"$talvex" list "$work/example"
"$talvex" info --values "$work/example/avatar.arf.json"
"$talvex" make-example "$work/example.arfz"
"$talvex" list "$work/example.arfz"
"$talvex" info --values "$work/example.arfz"
"$talvex" make-example memory:
echo "-- carried across: main JSON file (with a shared raw data file) -> archive -> main JSON file"
"$talvex" convert "$work/example/avatar.arf.json" "$work/converted.arfz"
"$talvex" info --values "$work/converted.arfz"
"$talvex" convert "$work/converted.arfz" "$work/converted/avatar.arf.json"
"$talvex" list "$work/converted"
"$talvex" info --values "$work/converted/avatar.arf.json"

echo
echo "== talvex format examples/avatar.arf.json (read into the document tree, written back)"
"$talvex" format examples/avatar.arf.json

echo
echo "== talvex skeleton examples/avatar.arf.json (node tree, matrices, joints; rest pose drawn as SVG)"
"$talvex" skeleton examples/avatar.arf.json --svg "$work/avatar.svg"
head -c 400 "$work/avatar.svg"; echo " ..."

echo
echo "== talvex stream-make examples/face.stream.txt, then stream-dump"
"$talvex" stream-make examples/face.stream.txt "$work/face.stream"
"$talvex" stream-dump "$work/face.stream"

echo
echo "== talvex animate: the example avatar's skeleton driven by a stream made with stream-make"
"$talvex" stream-make examples/body.stream.txt "$work/body.stream"
"$talvex" animate examples/avatar.arf.json "$work/body.stream" --describe
"$talvex" animate examples/avatar.arf.json "$work/body.stream" --plot "$work/body.svg" > "$work/animate.txt"
head -12 "$work/animate.txt"
"$talvex" animate examples/avatar.arf.json "$work/body.stream" --json > "$work/animate.jsonl"
tail -1 "$work/animate.jsonl"
head -c 300 "$work/body.svg"; echo " ..."
echo "-- the face stream finds no face framework in this avatar; its joint unit drives the skeleton"
"$talvex" animate examples/avatar.arf.json "$work/face.stream"

echo
echo "== Python: the talvex package in a fresh venv, printing the example avatar's skeleton"
if /usr/bin/python3 -c "import setuptools, wheel, venv" 2>/dev/null && /usr/bin/python3 -m pip --version >/dev/null 2>&1; then
  /usr/bin/python3 -m venv --system-site-packages --without-pip "$work/venv"
  mkdir "$work/python"
  cp -r python/pyproject.toml python/setup.py python/README.md python/talvex "$work/python/"
  TALVEX_SOURCE_DIR=$PWD TALVEX_LIBRARY="$PWD/$build/libtalvex.so" \
    "$work/venv/bin/python" -m pip install -q --no-build-isolation --no-deps "$work/python" >/dev/null
  "$work/venv/bin/python" examples/python/print_skeleton.py examples/avatar.arf.json
  "$work/venv/bin/python" examples/python/print_stream.py "$work/face.stream"
  "$work/venv/bin/python" examples/python/animate.py examples/avatar.arf.json "$work/body.stream" | tail -4
else
  echo "(skipped: python3-venv, python3-pip or python3-setuptools missing)"
fi
