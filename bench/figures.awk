# Turns the benchmarks' comma-separated output into a table of figures and aims.

BEGIN {
  FS = ","
  micro["ns"] = 0.001; micro["us"] = 1; micro["ms"] = 1000; micro["s"] = 1000000
}

# Everything before the line with the names of the columns tells of the machine.
!names { names = ($1 == "name"); if (names) for (i = 1; i <= NF; i++) { gsub(/"/, "", $i); column[$i] = i }; next }

{
  gsub(/"/, "", $1)
  name = $1
  seen[name] = 1
  cpu[name] = $column["cpu_time"] * micro[$column["time_unit"]]
  real[name] = $column["real_time"] * micro[$column["time_unit"]]
  if ("proof" in column) proof[name] = $column["proof"] * 1e6
  if ("round" in column) round[name] = $column["round"] * 1e9
  if ("rating" in column) rating[name] = $column["rating"] * 1e6
  if ("puzzles_a_second" in column) speed[name] = $column["puzzles_a_second"]
}

function row(figure, measured, aim) { printf "%-58s %14s   %s\n", figure, measured, aim }
function has(name) { return name in seen }

END {
  row("figure", "measured", "aim")
  for (size = 6; size <= 18; size += 6)
    if (has("Proof/" size)) row("proof, a round at size " size, sprintf("%.1f ns", round["Proof/" size]), "some tens")
  if (has("Proof/18") && has("ProofPlain/18"))
    row("proof against its plain form at size 18", sprintf("%.0f times", proof["ProofPlain/18"] / proof["Proof/18"]), "at least 50 times")
  worst = 0
  for (size = 6; size <= 18; size++) if (has("ProofSatSolver/" size)) {
    ratio = proof["ProofSatSolver/" size] / proof["Proof/" size]
    if (!worst || ratio < worst) { worst = ratio; where = size }
  }
  if (worst) row("proof against CaDiCaL, at its best size for that (" where ")", sprintf("%.0f times", worst), "faster at every size")
  for (size = 6; size <= 18; size++)
    if (has("Rating/" size)) row("rating at size " size, sprintf("%.1f us", rating["Rating/" size]), size == 18 ? "below 150 us" : "")
  for (size = 6; size <= 18; size++)
    if (has("New/" size)) row("\"New\" at size " size, sprintf("%.3f ms", cpu["New/" size] / 1000), size == 18 ? "below 8 ms" : "")
  if (has("New/18") && has("NewWithoutYields/18"))
    row("yields in \"New\" at size 18, as a share of 8 ms", sprintf("%.1f %%", (cpu["New/18"] - cpu["NewWithoutYields/18"]) / 80), "at most 5 %")
  aims[6] = 30000; aims[12] = 8000; aims[18] = 400
  for (size = 6; size <= 18; size += 6) {
    one = "MakeWithJobs/size:" size "/jobs:1/real_time"; two = "MakeWithJobs/size:" size "/jobs:2/real_time"
    if (has(one)) row("bivouac-packs make, size " size ", one job", sprintf("%.0f a second", speed[one]), "")
    if (has(two)) row("bivouac-packs make, size " size ", two jobs", sprintf("%.0f a second", speed[two]), aims[size])
    if (has(one) && has(two)) row("  two jobs against one", sprintf("%.2f times", speed[two] / speed[one]), "")
  }
  # Whatever else is measured: by its name, without an aim.
  for (name in seen)
    if (name !~ /^(Proof|Rating|New|MakeWithJobs)/) rest[++others] = name
  for (i = 1; i <= others; i++)
    for (j = i + 1; j <= others; j++) if (rest[j] < rest[i]) { swap = rest[i]; rest[i] = rest[j]; rest[j] = swap }
  for (i = 1; i <= others; i++) row(rest[i], sprintf("%.2f us", cpu[rest[i]]), rest[i] ~ /^Hint.*18/ ? "below 200 us" : "")
}
