# Turns the benchmarks' JSON, one value a line, into a table of figures and aims.

BEGIN {
  FS = "\": "
  micro["ns"] = 0.001; micro["us"] = 1; micro["ms"] = 1000; micro["s"] = 1000000
}

{
  key = $1; sub(/^ *"/, "", key)
  text = $2; gsub(/[",]/, "", text)
}
key == "name" { name = text; sub(/\/iterations:.*/, "", name); seen[name] = 1; next }
name != "" && key != "" { value[name, key] = text }

function row(figure, measured, aim) { printf "%-58s %14s   %s\n", figure, measured, aim }
function has(name) { return name in seen }
function microseconds(name) { return value[name, "cpu_time"] * micro[value[name, "time_unit"]] }

END {
  row("figure", "measured", "aim")
  for (size = 6; size <= 18; size += 4)
    if (has("Proof/" size)) {
      row("a proof at size " size, sprintf("%.2f us", value["Proof/" size, "proof"] * 1e6), "")
      row("a proof at size " size ", slowest of 10,000", sprintf("%.1f us", value["Proof/" size, "slowest"] * 1e6), "")
    }
  for (size = 6; size <= 18; size++)
    if (has("Rating/" size))
      row("a rating at size " size, sprintf("%.1f us", value["Rating/" size, "rating"] * 1e6),
          size == 18 ? "below 150 us" : "")
  for (size = 6; size <= 18; size++)
    if (has("New/" size))
      row("\"New\" at size " size, sprintf("%.3f ms", microseconds("New/" size) / 1000), size == 18 ? "below 8 ms" : "")
  if (has("New/18") && has("NewWithoutYields/18"))
    row("yields in \"New\" at size 18, as a share of 8 ms",
        sprintf("%.1f %%", (microseconds("New/18") - microseconds("NewWithoutYields/18")) / 80), "at most 5 %")
  aim[6] = 30000; aim[12] = 8000; aim[18] = 400
  for (size = 6; size <= 18; size += 6) {
    one = value["MakeWithJobs/size:" size "/jobs:1/real_time", "puzzles_a_second"]
    two = value["MakeWithJobs/size:" size "/jobs:2/real_time", "puzzles_a_second"]
    if (!one || !two) continue
    row("bivouac-packs make, size " size ", one job", sprintf("%.0f a second", one), "")
    row("bivouac-packs make, size " size ", two jobs", sprintf("%.0f a second", two), "above " aim[size])
    row("bivouac-packs make, size " size ", two jobs against one", sprintf("%.2f times", two / one), "")
  }

  for (size = 6; size <= 18; size += 6)
    if (has("BM_HintOnAFullBoard/" size))
      row("a hint in vain at size " size ", every tent placed",
          sprintf("%.1f us", microseconds("BM_HintOnAFullBoard/" size)), size == 18 ? "below 200 us" : "")

  if (has("WholeProcess/game") && has("WholeProcess/empty")) {
    game = value["WholeProcess/game", "first_pixel"]; empty = value["WholeProcess/empty", "first_pixel"]
    row("first pixel, from outside", sprintf("%.1f ms", game), "")
    row("first pixel against an empty window", sprintf("%.2f times", game / empty), "at most 1.3 times")
    game = value["WholeProcess/game", "memory"]; empty = value["WholeProcess/empty", "memory"]
    row("memory", sprintf("%.1f MB", game / 1024), "")
    row("memory against an empty window", sprintf("%.2f times", game / empty), "at most 1.25 times")
  }
  if (has("Window/Click")) {
    row("a click at size 18, event to painted, median", sprintf("%.0f us", value["Window/Click", "median"]), "below 2000 us")
    row("cells painted a click", sprintf("%.2f", value["Window/Click", "cells"]), "those that changed")
  }
  if (has("Window/DrawUnchanged"))
    row("a draw with nothing changed", sprintf("%.1f us", microseconds("Window/DrawUnchanged")), "")
  if (has("Window/Yield")) row("a yield", sprintf("%.1f ns", microseconds("Window/Yield") * 1000), "")
  for (name in seen)
    if (name ~ /^Window\/Idle/) {
      state = name ~ /InPlay/ ? "in play" : "without a game"
      row("repaints a second while idle " state, sprintf("%.1f", value[name, "paints"]), state == "in play" ? "the clock" : "none")
      row("timers a second while idle " state, sprintf("%.1f", value[name, "ticks"]), state == "in play" ? "4, the clock" : "none")
      row("share of a core while idle " state, sprintf("%.2f %%", value[name, "cpu"] * 100), "")
    }

  # Whatever else is measured, by its name.
  for (name in seen)
    if (name !~ /^(Proof|Rating|New|NewWithoutYields|MakeWithJobs|BM_HintOnAFullBoard|WholeProcess|Window)\//) rest[++others] = name
  for (i = 1; i <= others; i++)
    for (j = i + 1; j <= others; j++)
      if (rest[j] < rest[i]) { swap = rest[i]; rest[i] = rest[j]; rest[j] = swap }
  for (i = 1; i <= others; i++)
    row(rest[i], sprintf("%.2f us", microseconds(rest[i])), rest[i] ~ /Hint.*\/18$/ ? "below 200 us" : "")
}
