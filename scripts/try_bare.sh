#!/usr/bin/env bash
# Tries the commands at the root where nothing is installed: in a new root of Debian with git alone, each of those named.
# Needs root, debootstrap, some gigabytes, and up to an hour.
#
#   scripts/try_bare.sh [RELEASE [COMMAND...]]     (bookworm, and ./play ./check ./package, unless told)
set -euo pipefail
cd "$(dirname "$0")/.."
release=${1:-bookworm}
shift || true
commands=("$@")
[ ${#commands[@]} -gt 0 ] || commands=(./play ./check ./package)

root=$(mktemp -d)
chmod 755 "$root" # as a root is: who is not root passes through it, too
leave() {
  for place in proc dev; do mountpoint --quiet "$root/$place" && umount --recursive "$root/$place"; done
  rm -rf --one-file-system "$root"
}
trap leave EXIT
debootstrap --variant=minbase --include=git,ca-certificates "$release" "$root" >/dev/null
for place in proc dev; do mount --rbind --make-rslave "/$place" "$root/$place"; done
git clone --quiet . "$root/bivouac"

within() {
  chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 bash -c "cd /bivouac && $1"
}
# The process of the game that runs in the root.
game() {
  local process
  for process in /proc/[0-9]*; do
    [ "$(readlink "$process/exe")" = "$root/bivouac/build/play/bin/bivouac" ] && echo "${process#/proc/}"
  done
}
# ./play ends with the game, which is ended once it has been up for some seconds.
play() {
  local player found
  within ./play &
  player=$!
  while kill -0 "$player" 2>/dev/null; do
    sleep 5
    found=$(game)
    [ -n "$found" ] || continue
    sleep 5
    kill "$found" || return 1
    wait "$player" || true
    echo "The game was up."
    return 0
  done
  return 1
}

failed=0
for command in "${commands[@]}"; do
  echo "== $command in a bare $release"
  if [ "$command" = ./play ]; then play; else within "$command"; fi || { echo "FAILED: $command"; failed=1; }
done
exit $failed
