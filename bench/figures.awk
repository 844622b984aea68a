# Turns the benchmarks' JSON, one value a line, into a table of figures and aims.

BEGIN {
  FS = "\": "
  micro["ns"] = 0.001; micro["us"] = 1; micro["ms"] = 1000; micro["s"] = 1000000
}

{
  key = $1; sub(/^ *"/, "", key)
  text = $2; gsub(/[",]/, "", text)
}
key == "name" { name = text; seen[name] = 1; next }
name != "" && key != "" { value[name, key] = text }

function row(figure, measured, aim) { printf "%-58s %14s   %s\n", figure, measured, aim }
function has(name) { return name in seen }
function microseconds(name) { return value[name, "cpu_time"] * micro[value[name, "time_unit"]] }

END {
  row("figure", "measured", "aim")
  for (size = 6; size <= 18; size += 6)
    if (has("Proof/" size))
      row("a round of the proof at size " size, sprintf("%.1f ns", value["Proof/" size, "round"] * 1e9), "some tens")
  if (has("Proof/18") && has("ProofPlain/18"))
    row("proof against its plain form at size 18",
        sprintf("%.0f times", value["ProofPlain/18", "proof"] / value["Proof/18", "proof"]), "at least 50 times")
  for (size = 6; size <= 18; size++) {
    if (!has("ProofSatSolver/" size) || !has("Proof/" size)) continue
    ratio = value["ProofSatSolver/" size, "proof"] / value["Proof/" size, "proof"]
    if (!smallest || ratio < smallest) { smallest = ratio; where = size }
  }
  if (smallest)
    row("proof against CaDiCaL where it is closest, size " where, sprintf("%.0f times", smallest), "faster at every size")
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

  # Whatever else is measured, by its name.
  for (name in seen)
    if (name !~ /^(Proof|ProofPlain|ProofSatSolver|Rating|RatingPlain|New|NewWithoutYields|MakeWithJobs)\//) rest[++others] = name
  for (i = 1; i <= others; i++)
    for (j = i + 1; j <= others; j++)
      if (rest[j] < rest[i]) { swap = rest[i]; rest[i] = rest[j]; rest[j] = swap }
  for (i = 1; i <= others; i++)
    row(rest[i], sprintf("%.2f us", microseconds(rest[i])), rest[i] ~ /Hint.*\/18$/ ? "below 200 us" : "")
}
