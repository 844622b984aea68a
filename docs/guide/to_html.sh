#!/bin/sh
# Turns a page of the guide into HTML.
#
#   to_html.sh CMARK PAGE.md PAGE.html
#
# Links between pages follow: stage1.md becomes stage1.html.
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
