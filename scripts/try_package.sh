#!/usr/bin/env bash
# Starts the game and the pack maker of an unpacked package on the display at hand, and plays one click: packs, pictures
# and sounds must be there.
#
#   scripts/try_package.sh FOLDER
set -euo pipefail
games=$(realpath "$1")/usr/games
shared=$(realpath "$1")/usr/share/games/bivouac
home=$(mktemp -d)
processes=()
trap 'kill "${processes[@]}" 2>/dev/null || true; wait; rm -rf "$home"' EXIT

fail() {
  echo "FAILED: $*" >&2
  exit 1
}
# Waits up to 20 seconds until a command succeeds.
await() {
  local try
  for ((try = 0; try < 200; ++try)); do
    "$@" >/dev/null 2>&1 && return 0
    sleep 0.1
  done
  fail "waited in vain: $*"
}
# colours X Y WIDTH HEIGHT: how many colours a part of the window shows.
colours() {
  import -silent -window "$window" png:- | convert - -crop "$3x$4+$1+$2" +repage -unique-colors -format %w info:
}

# Folders of their own, sounds on, and what is heard goes to a file.
export XDG_CONFIG_HOME=$home/config XDG_DATA_HOME=$home/data XDG_RUNTIME_DIR=$home QT_QPA_PLATFORM=xcb
export ALSOFT_DRIVERS=wave ALSOFT_CONF=$home/alsoft.conf
mkdir -p "$home/config/Bivouac"
printf '[Options]\nSize=6\nSounds=True\n' >"$home/config/Bivouac/Bivouac.conf"
printf '[wave]\nfile = %s\n' "$home/heard.wav" >"$ALSOFT_CONF"

openbox >/dev/null 2>&1 &
processes+=($!)
await xdotool get_desktop
cd /
"$games/bivouac" 2>"$home/messages" &
processes+=($!)
game=$!
await xdotool search --onlyvisible --name '^Bivouac - Free Play'
window=$(xdotool search --onlyvisible --name '^Bivouac - Free Play')
echo "The window is up: $(xdotool getwindowname "$window")"

for pack in "$shared"/BVPack*.bvq; do
  cmp "$pack" "$home/data/Bvc/$(basename "$pack")" || fail "a pack did not reach the player's folder"
done
[ "$(ls "$home"/data/Bvc/*.bvq | wc -l)" -eq 13 ] || fail "not thirteen packs"
echo "Thirteen packs reached the player's folder."

# "Open...", and the first puzzle.
empty=$(colours 16 48 400 400)
xdotool mousemove --window "$window" 500 180 click 1
await xdotool search --onlyvisible --name '^Select Puzzle'
xdotool type 1
xdotool key Return
opened() { [ "$(colours 16 48 400 400)" -gt $((empty + 10)) ]; }
await opened
echo "The board shows pictures: $(colours 16 48 400 400) colours, $empty before."

heard() { [ "$(od -An -v -tx1 -j 44 "$home/heard.wav" | tr -d ' 0\n' | head -c 1000 | wc -c)" -eq 1000 ]; }
await heard
echo "A sound was heard."

xdotool key --clearmodifiers alt+F4
await test ! -d "/proc/$game"
wait "$game" || fail "the game ended with status $?: $(cat "$home/messages")"
[ ! -s "$home/messages" ] || fail "the game wrote: $(cat "$home/messages")"

"$games/bivouac-packs" --version
"$games/bivouac-packs" make --size 6 --count 1 --seed 1 "$home/made.bvq" 2>/dev/null
"$games/bivouac-packs" show "$home/made.bvq" 1 >/dev/null
"$games/bivouac-packs" check "$home/made.bvq" "$shared"/BVPack06.bvq
"$games/bivouac-packs" print "$home/made.bvq" -o "$home/book.pdf"
echo "The pack maker made a pack without faults, and a book of it."
