#!/usr/bin/env bash
# Runs the built bivouac-packs as a person would: exit statuses, lines on standard error, interrupts, a full disk.
#
#   tests/bivouac_packs_test.sh PROGRAM MAN_PAGE VERSION
set -uo pipefail
program=$1
page=$2
version=$3
data=$(dirname "$(realpath "$0")")/data
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

fail() {
  echo "FAILED: $*"
  exit 1
}

"$program" make --size 6 --count 2 --seed 9 six.bvq 2>err || fail "$(cat err)"
grep -q "^2 puzzles added to six.bvq" err || fail "$(cat err)"

# What is refused: status 2, and one line on standard error that holds the words.
while IFS='|' read -r words arguments; do
  eval "\"\$program\" $arguments" >out 2>err </dev/null
  [ $? -eq 2 ] && [ "$(wc -l <err)" -eq 1 ] && grep -qF -- "$words" err || fail "$arguments: $(cat err)"
done <"$data/refused.txt"

# Sixteen-bit numbers at a place of a file.
put() {
  local file=$1 at=$2
  shift 2
  for number in "$@"; do printf '%b' "\\x$(printf %x $((number & 255)))\\x$(printf %x $((number >> 8 & 255)))"; done |
    dd of="$file" bs=1 seek="$at" conv=notrunc status=none
}
# What `check` says of the first puzzle of size 6 after that.
hurt() {
  head -c 1376 BVPack06.bvq >hurt.bvq
  put hurt.bvq "$@"
  "$program" check hurt.bvq
}

# Pages and paper of a PDF, and what stands on the pages named.
pages() {
  pdfinfo "$1" | grep -E 'Title|Pages|Page size|Date'
  for page in "${@:2}"; do pdftotext -layout -f "$page" -l "$page" "$1" - | tr -s " " | grep .; done
}

# What the commands write: each line of the session that begins with a dollar, or, with an exclamation mark behind it,
# of the shell; and what comes of it.
cp "$data"/../../assets/packs/BVPack{06,08,12,18}.bvq "$data"/{rating/trial07,unexplained08,unexplained18}.bvq .
umask 022
export LSAN_OPTIONS=${LSAN_OPTIONS:+$LSAN_OPTIONS:}print_suppressions=0
grep '^\$ ' "$data/session.txt" | while IFS= read -r line; do
  echo "$line"
  case $line in
    '$ ! '*) eval "${line#\$ ! }" 2>&1 || echo "status $?" ;;
    *) eval "\"\$program\" ${line#\$ }" 2>&1 || echo "status $?" ;;
  esac
# Speed is the machine's; an attribute of pictures and letters joined to one are the library's.
done | sed 's/[0-9.e+]* a second,/100 a second,/; s/ version="1.1">/>/; s/ﬁ/fi/g; s/ﬃ/ffi/g; s/ﬂ/fl/g; s/ﬀ/ff/g' >session.txt
[ -z "${BIVOUAC_KEEP_LOOKS:-}" ] || cp session.txt "$data"
diff "$data/session.txt" session.txt || fail "the session went another way; is it better now?"

"$program" list six.bvq >/dev/full 2>err
[ $? -eq 2 ] || fail "a full output went unnoticed"

# An interrupt leaves whole records, and the same ones that an unhurried run makes.
"$program" make --size 18 --count 100000 --seed 3 cut_short.bvq 2>err &
maker=$!
for _ in {1..200}; do
  [ "$(stat -c %s cut_short.bvq 2>/dev/null || echo 0)" -gt 3000 ] && break
  sleep 0.05
done
kill -TERM "$maker"
wait "$maker"
[ $? -eq 130 ] || fail "status of an interrupted make: $(cat err)"
length=$(stat -c %s cut_short.bvq)
[ "$length" -gt 0 ] && [ $((length % 1376)) -eq 0 ] || fail "$length bytes after an interrupt"
"$program" make --size 18 --count $((length / 1376)) --seed 3 --jobs 1 whole.bvq 2>/dev/null
cmp -s cut_short.bvq whole.bvq || fail "an interrupt changed what was made"

# The manual page tells of every command and of every option.
for command in $("$program" --help | sed -nE '/^subcommands/I,$ s/^ +([a-z]+) .*/\1/p'); do
  for word in "^.B $command\$" $("$program" "$command" --help | grep -oE -- '--[a-z-]+' | sed 's/-/\\\\-/g'); do
    grep -qe "$word" "$page" || [[ $word == *help ]] || fail "the manual page does not tell of $command $word"
  done
done
[ "$("$program" --version)" = "bivouac-packs $version" ] || fail "not version $version: $("$program" --version)"
echo passed
