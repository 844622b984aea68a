#!/usr/bin/env bash
# Checks the guide as it was built: its HTML by tidy, and that every link and picture leads somewhere.
#
#   scripts/check_guide.sh FOLDER
set -euo pipefail
cd "$1"
failed=0
for page in *.html; do
  tidy -quiet -errors "$page" || failed=1
  while read -r target; do
    case $target in http*) continue ;; esac
    file=${target%%#*}
    file=${file:-$page}
    if [ ! -f "$file" ]; then
      echo "$page: nothing is at $target"
      failed=1
    elif [[ $target == *#* ]] && ! grep -q "id=\"${target#*#}\"" "$file"; then
      echo "$page: $file has no place ${target#*#}"
      failed=1
    fi
  done < <(grep -oE '(href|src)="[^"]*"' "$page" | sed -E 's/^[a-z]+="(.*)"$/\1/')
  if grep -q '<img[^>]*alt=""' "$page"; then
    echo "$page: a picture without words"
    failed=1
  fi
done
exit $failed
