#!/usr/bin/env bash
# Plays the main scenario of the window's tests under Wayland, on a compositor without a screen.
#
#   tests/window/wayland.sh TEST-PROGRAM
set -euo pipefail
folder=$(mktemp -d)
weston=
trap '[ -z "$weston" ] || kill "$weston" 2>/dev/null || true; wait; rm -rf "$folder"' EXIT

XDG_RUNTIME_DIR=$folder weston --backend=headless-backend.so --no-config --idle-time=0 --width=1280 --height=1024 \
  --socket=screen >"$folder/weston.log" 2>&1 &
weston=$!
until [ -S "$folder/screen" ]; do
  kill -0 "$weston" || { cat "$folder/weston.log"; exit 1; }
  sleep 0.1
done
# The compositor has no keyboard, which Wayland's own input methods cannot do without.
export QT_IM_MODULE=none TMPDIR=$folder
export WAYLAND_DISPLAY=$folder/screen QT_QPA_PLATFORM=wayland BIVOUAC_TEST_WAYLAND=1
"$1" --gtest_filter='Window.BothPresses*:Window.MakesANew*' | tee "$folder/out"
grep -q 'PASSED  . 2 tests' "$folder/out"
