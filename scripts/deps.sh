#!/usr/bin/env bash
# Installs the Debian packages talvex needs to build, test, benchmark and fuzz.
# Idempotent: apt-get runs only when something is missing.
set -euo pipefail

packages=(
  build-essential cmake pkg-config python3
  python3-venv python3-pip python3-setuptools python3-wheel  # the Python package and its test
  python3-pytest python3-numpy  # optional for the Python package: its tests run with and without numpy
  libzip-dev zlib1g-dev libpng-dev libjpeg62-turbo-dev libargs-dev
  googletest libgtest-dev libbenchmark-dev
  rapidjson-dev   # benchmarks only: the reference the JSON layer is measured against
  libsimdjson-dev # benchmarks only: the ceiling the JSON layer is compared with; the library never links it
  libassimp-dev   # benchmarks only: the OBJ reader loadObj is measured against
  libtinygltf-dev # benchmarks only: the glTF reader the .glb load is measured against
  ccache          # optional speed-up, used when present
  clang libclang-rt-14-dev  # libFuzzer targets and the clang build check
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "deps.sh: installing ${missing[*]}"
sudo=""
if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get -o DPkg::Lock::Timeout=300 update -qq
$sudo apt-get -o DPkg::Lock::Timeout=300 install -y -qq --no-install-recommends "${missing[@]}"
