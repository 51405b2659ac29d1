#!/usr/bin/env bash
# `talvex info --values` on a document whose payload is a symbolic link out of
# its folder: the target's values never show, while the same payload inside
# the folder does.
# Usage: app_uri.sh TALVEX_PROGRAM
set -u
app=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/doc"
# A dense float tensor of one value, 4244.5.
printf '\x01\x00\x00\x00\x01\x00\x00\x00\x06\x14\x00\x00\x00\xa4\x84\x45' > "$work/sentinel.bin"
cp "$work/sentinel.bin" "$work/doc/inside.bin"
ln -s ../sentinel.bin "$work/doc/link.bin"
item() {
  printf '{"data": [{"type": "application/mpeg.arf.dense", "uri": "%s", "name": "t", "id": 1}]}' "$1"
}
item inside.bin > "$work/doc/in.arf"
item link.bin > "$work/doc/out.arf"
inside=$("$app" info --values "$work/doc/in.arf" 2>&1)
outside=$("$app" info --values "$work/doc/out.arf" 2>&1)
case "$inside" in *4244.5*) ;; *) echo "the payload inside the folder did not show: $inside"; exit 1 ;; esac
case "$outside" in *4244.5*) echo "a payload outside the folder was read: $outside"; exit 1 ;; esac
echo ok
