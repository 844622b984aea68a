#include <cstdlib>
#include <utility>

#include "deduction/finds.h"

namespace bivouac {
namespace {

void AddAll(Find& find, const Lines& lines, int line, Positions positions, Role role) {
  ForEachIn(positions, [&](int position) { find.Add(lines.CellAt(line, position), role); });
}

/// The trees of a line that have an open field in the line beside it.
Positions TreesWithFieldIn(const Lines& lines, int treeLine, int tentLine, BeyondLastLine beyond) {
  const Positions trees = lines.Trees(treeLine);
  if (tentLine < lines.Size()) return trees & lines.Open(tentLine);
  if (beyond == BeyondLastLine::IsAnError && trees != 0) ThrowIndexOutsideArray();
  Positions found = 0;
  ForEachIn(trees, [&](int position) {
    if (lines.Board()[lines.CellAt(tentLine, position)] == CELL_OPEN) found |= 1u << position;
  });
  return found;
}

}  // namespace

bool FindComplete(Lines& lines, Find& find) {
  for (int line = 0; line < lines.Size(); ++line) {
    const Positions open = lines.Open(line);
    if (lines.Need(line) != lines.TentCount(line) || open == 0) continue;
    find.SetLines(line, line);
    AddAll(find, lines, line, open, Role::Grass);
    return true;
  }
  return false;
}

bool FindRuns(Lines& lines, Find& find) {
  for (int line = 0; line < lines.Size(); ++line) {
    const int missing = lines.Need(line) - lines.TentCount(line);
    if (missing <= 0) continue;
    const Runs& runs = lines.RunsOf(line);
    if (runs.Capacity != missing) continue;
    if (runs.Odd != 0) {
      find.Case = RunsFull;
      find.SetLines(line, line);
      AddAll(find, lines, line, runs.Odd, Role::Tent);
      return true;
    }
    const Positions before = runs.Even & lines.Open(line - 1);
    const Positions after = runs.Even & lines.Open(line + 1);
    if ((before | after) == 0) continue;
    find.Case = RunsBlock;
    find.SetLines(line, line);
    ForEachIn(before | after, [&](int position) {
      if (Has(before, position)) find.Add(lines.CellAt(line - 1, position), Role::Grass);
      if (Has(after, position)) find.Add(lines.CellAt(line + 1, position), Role::Grass);
    });
    AddAll(find, lines, line, runs.Even, Role::MayBeTent);
    return true;
  }
  return false;
}

bool FindClaimed(Lines& lines, Find& find) {
  for (int line = 0; line < lines.Size(); ++line) {
    const Positions open = lines.Open(line);
    const Positions across = lines.OpenOrTents(line - 1) | lines.OpenOrTents(line + 1);
    const Positions claimants = lines.Trees(line) & WithBefore(open) & WithAfter(open) & ~across;
    const int missing = lines.Need(line) - lines.TentCount(line);
    if (claimants == 0 || missing != std::popcount(claimants)) continue;
    const Positions unclaimed = open & ~(WithBefore(claimants) | WithAfter(claimants));
    if (unclaimed == 0) continue;
    find.SetLines(line, line);
    AddAll(find, lines, line, claimants, Role::Tree);
    AddAll(find, lines, line, unclaimed, Role::Grass);
    return true;
  }
  return false;
}

bool FindSpareRun(Lines& lines, Find& find) {
  for (int line = 0; line < lines.Size(); ++line) {
    const int missing = lines.Caption(line) - lines.TentCount(line);
    if (missing <= 0) continue;
    const Runs& runs = lines.RunsOf(line);
    if (runs.Capacity != missing + 1) continue;
    ForEachIn(WithBefore(runs.Odd) & WithAfter(runs.Odd), [&](int gap) {
      for (const int beside : {line - 1, line + 1}) {
        if (!Has(lines.Open(beside), gap)) continue;
        find.Add(lines.CellAt(beside, gap), Role::Grass);
        find.Add(lines.CellAt(line, gap - 1), Role::MayBeTent);
        find.Add(lines.CellAt(line, gap + 1), Role::MayBeTent);
      }
    });
    if (find.Fields.IsEmpty()) continue;
    find.SetLines(line, line);
    return true;
  }
  return false;
}

bool FindTreeSupply(Lines& lines, BeyondLastLine beyond, Find& find) {
  const auto treesIn = [&](int line) {
    if (line == lines.Size()) ThrowIndexOutsideArray();
    return lines.TreeCount(line);
  };
  int surplus = 0;
  for (int line = 0; line < lines.Size(); ++line) {
    surplus += treesIn(line) - lines.Need(line);
    int treeLine = line;
    int tentLine = line + 1;
    if (surplus < 0) std::swap(treeLine, tentLine);
    if (surplus == 0 || treesIn(treeLine) != std::abs(surplus)) continue;
    const Positions trees = TreesWithFieldIn(lines, treeLine, tentLine, beyond);
    if (trees == 0) continue;
    find.Case = surplus < 0 ? SupplyBefore : SupplyAfter;
    find.SetLines(0, line);
    ForEachIn(trees, [&](int position) {
      find.Add(lines.CellAt(treeLine, position), Role::Tree);
      find.Add(lines.CellAt(tentLine, position), Role::Tent);
    });
    return true;
  }
  return false;
}

}  // namespace bivouac
