#!/bin/sh
# Turns a page of the guide into HTML.
#
#   to_html.sh CMARK PAGE.md PAGE.html
#
# Links between pages follow: stage1.md becomes stage1.html. For each hint of the page at/NAME.html leads to its place: not
# every program that opens a file takes a place behind its name.
set -eu
title=$(sed -n 's/^# //p' "$2" | head -n 1)
{
  cat <<HEAD
<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>$title</title>
<link rel="stylesheet" href="style.css">
</head>
<body>
HEAD
  "$1" --unsafe "$2" | sed -E 's/href="([a-z0-9]+)\.md/href="\1.html/g'
  echo "</body>"
  echo "</html>"
} >"$3.new"
mv "$3.new" "$3"
places=$(dirname "$3")/at
mkdir -p "$places"
grep -oE '<a id="[A-Za-z]+-[0-9]"' "$3" | sed -E 's/.*"(.*)"/\1/' | while read -r place; do
  page=$(basename "$3")
  [ "$page" != index.html ] || continue
  cat >"$places/$place.html" <<LEAD
<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta http-equiv="refresh" content="0; url=../$page#$place">
<title>$title</title>
</head>
<body><p><a href="../$page#$place">$title</a></p></body>
</html>
LEAD
done
