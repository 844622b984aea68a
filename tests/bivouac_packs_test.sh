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

# expect STATUS WORDS ARGUMENTS...: the status, and one line on standard error that holds the words.
expect() {
  local status=$1 words=$2
  shift 2
  "$program" "$@" >out 2>err
  local got=$?
  [ "$got" -eq "$status" ] || fail "status $got, not $status: $*: $(cat err)"
  [ "$(wc -l <err)" -eq 1 ] || fail "not one line: $*: $(cat err)"
  grep -qF -- "$words" err || fail "no '$words': $*: $(cat err)"
}

expect 0 "2 puzzles added to six.bvq" make --size 6 --count 2 --seed 9 six.bvq
expect 2 "a command is needed"
expect 2 "nonsense" nonsense
expect 2 "--size" make --count 1 six.bvq
expect 2 "--size" make --size 5 --count 1 six.bvq
expect 2 "--count" make --size 6 --count 0 six.bvq
expect 2 "--level" make --size 6 --count 1 --level 4-2 six.bvq
expect 2 "--level" make --size 6 --count 1 --level 6 six.bvq
expect 2 "folder" list .
expect 2 "two?lines: no such file" list $'two\nlines'
expect 2 "NUMBER" hint six.bvq
expect 2 "--tsv" hint -
expect 2 "standard input, line 1" hint --tsv - < <(echo nonsense)
expect 2 "--numbers" print six.bvq -o book.pdf --numbers 3-1
expect 2 "--width" print six.bvq -o book.pdf --width 300
expect 2 "--title" print six.bvq 1 -o one.svg --title Two
expect 2 "--board: no digits" hint six.bvq 1 --board ""
expect 2 "--board: 3 digits" print six.bvq 1 -o one.svg --board 012
expect 2 "no puzzle 3" explain six.bvq 3
expect 2 "--from: not the trees" explain six.bvq 1 --from 000000000000000000000000000000000000
expect 0 "0 puzzles added to six.bvq, 2 left out" merge six.bvq six.bvq

# What the commands write: each line of the session that begins with a dollar, and what comes of it.
cp "$data"/../../assets/packs/BVPack{08,12,18}.bvq "$data/rating/trial07.bvq" .
export LSAN_OPTIONS=${LSAN_OPTIONS:+$LSAN_OPTIONS:}print_suppressions=0
grep '^\$ ' "$data/session.txt" | while IFS= read -r line; do
  echo "$line"
  eval "\"\$program\" ${line#\$ }" 2>&1 || echo "status $?"
done | sed 's/[0-9.]* a second/100 a second/' >session.txt
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

# A disk that fills up: here, a limit on the length of files.
(
  ulimit -f 4 # KiB: two records and a bit
  trap '' XFSZ
  "$program" make --size 6 --count 10 --seed 1 full.bvq 2>err
  [ $? -eq 2 ] || fail "status on a full disk: $(cat err)"
) || exit 1
grep -q 'disk full: full.bvq; added before: 2$' err || fail "$(cat err)"
[ "$(stat -c %s full.bvq)" -eq 2752 ] || fail "a full disk left half a record, or none"

for command in make list show rate prove check hint sort merge print explain stats; do
  grep -q "^.B $command\$" "$page" || fail "the manual page does not tell of $command"
done
[ "$("$program" --version)" = "bivouac-packs $version" ] || fail "not version $version: $("$program" --version)"
echo passed
