#include "tests/support/plain_rater.h"

#include <array>
#include <cstdlib>

#include "deduction/axis.h"
#include "game/board.h"

namespace bivouac {
namespace {

struct PlainRater {
  Main& main;
  Array<int>& board;
  int n;
  int cells;
  std::array<int, kMaxSize> rowNeed{};
  std::array<int, kMaxSize> colNeed{};

  int Need(Axis axis, int line) const {
    return (axis.direction == Direction::Rows ? rowNeed : colNeed)[static_cast<std::size_t>(line)];
  }
  Axis Rows() const { return {Direction::Rows, n}; }
  Axis Columns() const { return {Direction::Columns, n}; }
  int Row(int cell) const { return cell / n; }
  int Col(int cell) const { return cell % n; }
  bool IsOpen(int cell) const { return board[cell] == CELL_OPEN; }
  bool IsTent(int cell) const { return board[cell] == CELL_TENT; }
  bool IsTree(int cell) const { return board[cell] == CELL_TREE; }

  bool GrassIfOpen(int cell) {
    if (!IsOpen(cell)) return false;
    board[cell] = CELL_GRASS;
    return true;
  }

  int CountSides(int cell, int code) const {
    int count = 0;
    ForEachSide(main, cell, [&](int side, int) { count += board[side] == code; });
    return count;
  }
};

void SweepTentNeighbours(PlainRater& rater) {
  for (int i = 0; i < rater.cells; ++i) {
    if (!rater.IsTent(i)) continue;
    AnyAround(rater.main, i, [&](int cell) {
      rater.GrassIfOpen(cell);
      return false;
    });
  }
}

// Tier 1.

bool PassLoneOption(PlainRater& rater) {
  for (int i = 0; i < rater.cells; ++i) {
    if (!rater.IsTree(i)) continue;
    int open = 0;
    int tents = 0;
    int last = -1;
    ForEachSide(rater.main, i, [&](int side, int) {
      if (rater.IsOpen(side)) {
        ++open;
        last = side;
      }
      if (rater.IsTent(side)) ++tents;
    });
    if (open == 1 && tents == 0) {
      rater.board[last] = CELL_TENT;
      rater.main.BlinkTop = 0;
      SweepTentNeighbours(rater);
      return true;
    }
  }
  return false;
}

bool PassServedNeighbour(PlainRater& rater) {
  for (int i = 0; i < rater.cells; ++i) {
    if (!rater.IsTree(i)) continue;
    int open = 0;
    int tents = 0;
    int lastOpen = -1;
    int lastTent = -1;
    ForEachSide(rater.main, i, [&](int side, int) {
      if (rater.IsOpen(side)) {
        ++open;
        lastOpen = side;
      }
      if (rater.IsTent(side)) {
        ++tents;
        lastTent = side;
      }
    });
    if (open != 1 || tents != 1) continue;
    if (rater.CountSides(lastTent, CELL_TREE) != 1) continue;
    if (rater.CountSides(lastOpen, CELL_TREE) != 1) continue;
    rater.board[lastOpen] = CELL_GRASS;
    return true;
  }
  return false;
}

bool PassComplete(PlainRater& rater, Axis axis) {
  for (int line = 0; line < rater.n; ++line) {
    const Positions open = PositionsOf(rater.board, axis, line, CELL_OPEN);
    if (open == 0 || TentsIn(rater.board, axis, line) != rater.Need(axis, line)) continue;
    for (int p = 0; p < rater.n; ++p) {
      if (Has(open, p)) rater.board[axis.At(line, p)] = CELL_GRASS;
    }
    return true;
  }
  return false;
}

struct Marks {
  std::array<bool, kMaxSize> odd{};
  std::array<bool, kMaxSize> even{};
  int capacity = 0;
};

Marks WalkRuns(const PlainRater& rater, Axis axis, int line) {
  Marks marks;
  int run = 0;
  const auto close = [&](int position) {
    if (run % 2 == 1) {
      for (int p = position - 1; p >= position - run; p -= 2) marks.odd[static_cast<std::size_t>(p)] = true;
    } else {
      for (int p = position - 1; p >= position - run; --p) marks.even[static_cast<std::size_t>(p)] = true;
    }
    marks.capacity += (run + 1) / 2;
    run = 0;
  };
  for (int p = 0; p < rater.n; ++p) {
    if (rater.IsOpen(axis.At(line, p))) {
      ++run;
    } else {
      close(p);
    }
  }
  if (run > 0) close(rater.n);
  return marks;
}

bool PassRuns(PlainRater& rater, Axis axis) {
  for (int line = 0; line < rater.n; ++line) {
    const int placed = TentsIn(rater.board, axis, line);
    if (rater.Need(axis, line) <= placed) continue;
    const Marks marks = WalkRuns(rater, axis, line);
    if (marks.capacity != rater.Need(axis, line) - placed) continue;
    bool found = false;
    for (int p = 0; p < rater.n; ++p) {
      if (!marks.odd[static_cast<std::size_t>(p)]) continue;
      rater.board[axis.At(line, p)] = CELL_TENT;
      found = true;
    }
    if (found) {
      SweepTentNeighbours(rater);
      return true;
    }
    for (int p = 0; p < rater.n; ++p) {
      if (!marks.even[static_cast<std::size_t>(p)]) continue;
      if (line > 0 && rater.GrassIfOpen(axis.At(line - 1, p))) found = true;
      if (line < rater.n - 1 && rater.GrassIfOpen(axis.At(line + 1, p))) found = true;
    }
    if (found) return true;
  }
  return false;
}

// Tier 2.

bool PassCornerField(PlainRater& rater) {
  const int n = rater.n;
  for (int i = 0; i < rater.cells; ++i) {
    if (!rater.IsTree(i)) continue;
    int open = 0;
    int tents = 0;
    int d1 = 0;
    int d2 = 0;
    ForEachSide(rater.main, i, [&](int side, int direction) {
      if (rater.IsOpen(side)) {
        ++open;
        if (open == 1) d1 = direction;
        if (open == 2) d2 = direction;
      }
      if (rater.IsTent(side)) ++tents;
    });
    if (open != 2 || tents != 0 || d2 - d1 == 2) continue;
    int field = 0;
    if (d1 == NORTH && d2 == EAST) field = i - n + 1;
    if (d1 == NORTH && d2 == WEST) field = i - n - 1;
    if (d1 == EAST && d2 == SOUTH) field = i + n + 1;
    if (d1 == SOUTH && d2 == WEST) field = i + n - 1;
    if (rater.GrassIfOpen(field)) return true;
  }
  return false;
}

bool PassPinched(PlainRater& rater, Axis axis) {
  const int n = rater.n;
  const auto openOrTent = [&](int line, int p) {
    return rater.IsOpen(axis.At(line, p)) || rater.IsTent(axis.At(line, p));
  };
  const auto tent = [&](int line, int p) { return rater.IsTent(axis.At(line, p)); };
  for (int line = 0; line < n; ++line) {
    for (int p = 1; p <= n - 2; ++p) {
      if (!rater.IsOpen(axis.At(line, p))) continue;
      bool pinched = true;
      if (!rater.IsTree(axis.At(line, p - 1))) pinched = false;
      if (p > 1 && openOrTent(line, p - 2)) pinched = false;
      if (line > 0 && tent(line - 1, p - 1)) pinched = false;
      if (line < n - 1 && tent(line + 1, p - 1)) pinched = false;
      if (!rater.IsTree(axis.At(line, p + 1))) pinched = false;
      if (p < n - 2 && openOrTent(line, p + 2)) pinched = false;
      if (line > 0 && tent(line - 1, p + 1)) pinched = false;
      if (line < n - 1 && tent(line + 1, p + 1)) pinched = false;
      if (pinched) {
        rater.board[axis.At(line, p)] = CELL_GRASS;
        return true;
      }
    }
  }
  return false;
}

bool PassClaimed(PlainRater& rater, Axis axis) {
  const int n = rater.n;
  for (int line = 0; line < n; ++line) {
    const int need = rater.Need(axis, line);
    int placed = 0;
    int claimed = 0;
    std::array<bool, kMaxSize> mark{};
    for (int p = 0; p < n; ++p) mark[static_cast<std::size_t>(p)] = rater.IsOpen(axis.At(line, p));
    for (int p = 0; p < n; ++p) {
      const int cell = axis.At(line, p);
      if (rater.IsTent(cell)) {
        ++placed;
      } else if (p > 0 && p < n - 1 && rater.IsTree(cell)) {
        if (!rater.IsOpen(axis.At(line, p - 1)) || !rater.IsOpen(axis.At(line, p + 1))) continue;
        const auto option = [&](int other) { return rater.IsOpen(other) || rater.IsTent(other); };
        if (line > 0 && option(axis.At(line - 1, p))) continue;
        if (line < n - 1 && option(axis.At(line + 1, p))) continue;
        ++claimed;
        mark[static_cast<std::size_t>(p - 1)] = false;
        mark[static_cast<std::size_t>(p + 1)] = false;
      }
    }
    if (!(placed < need && need == placed + claimed)) continue;
    bool found = false;
    for (int p = 0; p < n; ++p) {
      if (!mark[static_cast<std::size_t>(p)]) continue;
      rater.board[axis.At(line, p)] = CELL_GRASS;
      found = true;
    }
    if (found) return true;
  }
  return false;
}

// Tier 3.

bool PassPinchedCorner(PlainRater& rater) {
  const int n = rater.n;
  for (int r = 1; r <= n - 2; ++r) {
    for (int c = 1; c <= n - 2; ++c) {
      const int x = r * n + c;
      if (!rater.IsOpen(x)) continue;
      struct Arm {
        int step;
        bool farExists;
      };
      const std::array<Arm, 4> arms{{{-n, r > 1}, {1, c < n - 2}, {n, r < n - 2}, {-1, c > 1}}};
      for (std::size_t i = 0; i < 4; ++i) {
        const auto shut = [&](const Arm& arm) {
          if (!rater.IsTree(x + arm.step)) return false;
          if (!arm.farExists) return true;
          return !rater.IsOpen(x + 2 * arm.step) && !rater.IsTent(x + 2 * arm.step);
        };
        if (shut(arms[i]) && shut(arms[(i + 1) % 4])) {
          rater.board[x] = CELL_GRASS;
          return true;
        }
      }
    }
  }
  return false;
}

struct Options {
  int count = 0;
  bool n = false;
  bool e = false;
  bool s = false;
  bool w = false;
};

Options OptionsOf(const PlainRater& rater, int tree) {
  Options options;
  ForEachSide(rater.main, tree, [&](int side, int direction) {
    if (!rater.IsOpen(side)) return;
    ++options.count;
    if (direction == NORTH) options.n = true;
    if (direction == EAST) options.e = true;
    if (direction == SOUTH) options.s = true;
    if (direction == WEST) options.w = true;
  });
  return options;
}

bool SharedInLine(PlainRater& rater, int x, int t1, const Options& o1, int t2, const Options& o2) {
  const int n = rater.n;
  const auto tent = [&](int cell) {
    rater.board[cell] = CELL_TENT;
    SweepTentNeighbours(rater);
    return true;
  };
  if (rater.Row(t1) == rater.Row(t2)) {
    if (o1.w == o2.e) return false;
    if (o1.w) {
      if (o1.count == 3) return rater.GrassIfOpen(o1.n ? t1 - n - 1 : t1 + n - 1);
      return tent(x - 2);
    }
    if (o2.count == 3) return rater.GrassIfOpen(o2.n ? t2 - n + 1 : t2 + n + 1);
    return tent(x + 2);
  }
  if (o1.n == o2.s) return false;
  if (o1.n) {
    if (o1.count == 3) return rater.GrassIfOpen(o1.e ? t1 - n + 1 : t1 - n - 1);
    return tent(x - 2 * n);
  }
  if (o2.count == 3) return rater.GrassIfOpen(o2.e ? t2 + n + 1 : t2 + n - 1);
  return tent(x + 2 * n);
}

bool SharedDiagonal(PlainRater& rater, int x, int t1, const Options& o1, int t2, const Options& o2) {
  const int n = rater.n;
  const bool downRight = std::abs(t1 - t2) > n;
  const bool otherOpen = downRight ? o1.e && o1.s : o1.w && o1.s;
  if (!otherOpen) {
    if (o1.count + o2.count != 4) return false;
    bool near1 = false;
    bool near2 = false;
    int nearCell1 = 0;
    int nearCell2 = 0;
    const auto set1 = [&](bool near, int cell) {
      near1 = near;
      nearCell1 = cell;
    };
    const auto set2 = [&](bool near, int cell) {
      near2 = near;
      nearCell2 = cell;
    };
    if (downRight && t1 + 1 == x) {
      set1(o1.n, o1.n ? t1 - n : t1 - 1);
      set2(o2.e, o2.e ? t2 + 1 : t2 + n);
    } else if (downRight) {
      set1(o1.w, o1.w ? t1 - 1 : t1 - n);
      set2(o2.s, o2.s ? t2 + n : t2 + 1);
    } else if (t1 - 1 == x) {
      set1(o1.n, o1.n ? t1 - n : t1 + 1);
      set2(o2.w, o2.w ? t2 - 1 : t2 + n);
    } else {
      set1(o1.e, o1.e ? t1 + 1 : t1 - n);
      set2(o2.s, o2.s ? t2 + n : t2 - 1);
    }
    if (!near1 && !near2) return false;
    if (near1 && near2) {
      rater.board[nearCell1] = CELL_TENT;
      rater.board[nearCell2] = CELL_TENT;
    } else if (near1) {
      rater.board[nearCell2] = CELL_TENT;
    } else {
      rater.board[nearCell1] = CELL_TENT;
    }
    SweepTentNeighbours(rater);
    return true;
  }

  const auto grass = [&](int a, int b, int c) {
    bool found = rater.GrassIfOpen(a);
    if (rater.GrassIfOpen(b)) found = true;
    if (rater.GrassIfOpen(c)) found = true;
    return found;
  };
  const auto grassPair = [&](int a, int b) {
    bool found = rater.GrassIfOpen(a);
    if (rater.GrassIfOpen(b)) found = true;
    return found;
  };
  const auto tents = [&](int a, int b) {
    rater.board[a] = CELL_TENT;
    rater.board[b] = CELL_TENT;
    SweepTentNeighbours(rater);
    return true;
  };
  if (o1.count == 4) {
    return downRight ? grass(t1 - n - 1, t1 - n + 1, t1 + n - 1) : grass(t1 - n - 1, t1 - n + 1, t1 + n + 1);
  }
  if (o2.count == 4) {
    return downRight ? grass(t2 - n + 1, t2 + n - 1, t2 + n + 1) : grass(t1 - n - 1, t1 + n - 1, t1 + n + 1);
  }
  if (o1.count == 3 && o2.count == 3) {
    if (downRight) return o1.n ? grassPair(t1 - n + 1, t2 + n - 1) : grassPair(t1 + n - 1, t2 - n + 1);
    return o1.n ? grassPair(t1 - n - 1, t2 + n + 1) : grassPair(t1 + n + 1, t2 - n - 1);
  }
  if (o1.count == 3) return o1.n ? tents(t1 - n, t1 + n) : tents(t1 - 1, t1 + 1);
  return (downRight ? o2.e : o2.w) ? tents(t2 - 1, t2 + 1) : tents(t2 - n, t2 + n);
}

bool PassSharedField(PlainRater& rater) {
  const int n = rater.n;
  for (int x = 0; x < rater.cells; ++x) {
    if (!rater.IsOpen(x)) continue;
    std::array<int, 4> trees{};
    std::size_t count = 0;
    if (rater.Row(x) > 0 && rater.IsTree(x - n)) trees[count++] = x - n;
    if (rater.Col(x) > 0 && rater.IsTree(x - 1)) trees[count++] = x - 1;
    if (rater.Col(x) < n - 1 && rater.IsTree(x + 1)) trees[count++] = x + 1;
    if (rater.Row(x) < n - 1 && rater.IsTree(x + n)) trees[count++] = x + n;
    if (count != 2) continue;
    const int t1 = trees[0];
    const int t2 = trees[1];
    if (rater.CountSides(t1, CELL_TENT) > 0 || rater.CountSides(t2, CELL_TENT) > 0) continue;
    const Options o1 = OptionsOf(rater, t1);
    const Options o2 = OptionsOf(rater, t2);
    const bool sameRow = rater.Row(t1) == rater.Row(t2);
    const bool sameCol = rater.Col(t1) == rater.Col(t2);
    bool found = false;
    if (o1.count != 4 && o2.count != 4 && (sameRow || sameCol)) {
      found = SharedInLine(rater, x, t1, o1, t2, o2);
    } else if (o1.count + o2.count < 7 && !sameRow && !sameCol) {
      found = SharedDiagonal(rater, x, t1, o1, t2, o2);
    }
    if (found) return true;
  }
  return false;
}

bool PassLastTent(PlainRater& rater, Axis axis) {
  const int n = rater.n;
  const auto tent = [&](int line, int p) { return rater.IsTent(axis.At(line, p)); };
  for (int line = 0; line < n; ++line) {
    if (rater.Need(axis, line) != TentsIn(rater.board, axis, line) + 1) continue;
    for (int p = 1; p <= n - 2; ++p) {
      if (!rater.IsOpen(axis.At(line, p))) continue;
      if (!rater.IsTree(axis.At(line, p - 1)) || !rater.IsTree(axis.At(line, p + 1))) continue;
      if (p > 1 && tent(line, p - 2)) continue;
      if (p < n - 2 && tent(line, p + 2)) continue;
      if (line > 0 && (tent(line - 1, p - 1) || tent(line - 1, p + 1))) continue;
      if (line < n - 1 && (tent(line + 1, p - 1) || tent(line + 1, p + 1))) continue;
      rater.board[axis.At(line, p)] = CELL_GRASS;
      return true;
    }
  }
  return false;
}

// Tier 4.

bool PassSpareRun(PlainRater& rater, Axis axis) {
  const int n = rater.n;
  for (int line = 0; line < n; ++line) {
    const int placed = TentsIn(rater.board, axis, line);
    const int need =
        axis.direction == Direction::Rows ? RowClue(rater.main, line) : ColClue(rater.main, line);
    if (need <= placed) continue;
    const Marks marks = WalkRuns(rater, axis, line);
    if (marks.capacity != need - placed + 1) continue;
    bool found = false;
    for (int p = 0; p <= n - 3; ++p) {
      if (!marks.odd[static_cast<std::size_t>(p)] || !marks.odd[static_cast<std::size_t>(p + 2)]) continue;
      if (line > 0 && rater.GrassIfOpen(axis.At(line - 1, p + 1))) found = true;
      if (line < n - 1 && rater.GrassIfOpen(axis.At(line + 1, p + 1))) found = true;
    }
    if (found) return true;
  }
  return false;
}

bool PassCluster(PlainRater& rater) {
  const int n = rater.n;
  Main& main = rater.main;
  std::vector<int> clusterOf(static_cast<std::size_t>(rater.cells), -1);
  const auto of = [&](int cell) -> int& { return clusterOf[static_cast<std::size_t>(cell)]; };
  main.BlinkTop = -1;
  int clusters = 0;
  for (int i = 0; i < rater.cells; ++i) {
    if ((!rater.IsTree(i) && !rater.IsTent(i)) || of(i) != -1) continue;
    const int id = ++clusters;
    of(i) = id;
    int tents = rater.IsTent(i) ? 1 : 0;
    int trees = rater.IsTree(i) ? 1 : 0;
    for (bool changed = true; changed;) {
      changed = false;
      for (int j = 0; j < rater.cells; ++j) {
        if ((!rater.IsTree(j) && !rater.IsTent(j)) || of(j) != -1) continue;
        ForEachSide(main, j, [&](int side, int) {
          if (of(side) != id) return;
          if (rater.IsTree(side) && rater.IsTent(j)) {
            of(j) = id;
            ++tents;
            changed = true;
          }
          if (rater.IsTent(side) && rater.IsTree(j)) {
            of(j) = id;
            ++trees;
            changed = true;
          }
        });
      }
    }
    if (trees < tents) continue;
    std::vector<int> candidates;
    for (int x = 0; x < rater.cells; ++x) {
      if (!rater.IsOpen(x)) continue;
      if (trees == tents) {
        bool outside = false;
        ForEachSide(main, x, [&](int side, int) {
          if (rater.IsTree(side) && of(side) != id) outside = true;
        });
        if (outside) continue;
      }
      const auto inLine = [&](int step) {
        return of(x + step) == id && rater.IsTree(x + step) && of(x + 2 * step) == id &&
               rater.IsTent(x + 2 * step);
      };
      const auto take = [&] {
        of(x) = id;
        candidates.push_back(x);
      };
      if (rater.Row(x) > 1 && inLine(-n)) take();
      if (rater.Col(x) < n - 2 && inLine(1) && of(x) == -1) take();
      if (rater.Row(x) < n - 2 && inLine(n) && of(x) == -1) take();
      if (rater.Col(x) > 1 && inLine(-1) && of(x) == -1) take();
    }
    if (trees > tents && static_cast<int>(candidates.size()) == trees - tents) {
      for (const int cell : candidates) rater.board[cell] = CELL_TENT;
      SweepTentNeighbours(rater);
      return true;
    }
    if (trees == tents && !candidates.empty()) {
      for (const int cell : candidates) rater.board[cell] = CELL_GRASS;
      return true;
    }
  }
  return false;
}

bool PassTwin(PlainRater& rater, Axis axis) {
  const int n = rater.n;
  int state = 0;
  for (int line = 1; line <= n - 2; ++line) {
    const auto twin = [&](int p) {
      return rater.IsTree(axis.At(line, p)) && rater.IsOpen(axis.At(line - 1, p)) &&
             rater.IsOpen(axis.At(line + 1, p));
    };
    for (int p = 0; p < n; ++p) {
      const bool grass = rater.board[axis.At(line, p)] == CELL_GRASS;
      if (p == 0) {
        state = grass ? 1 : twin(p) ? 2 : 0;
      } else if (p == n - 1) {
        if (state == 2) {
          state = twin(p) ? 5 : 0;
        } else if (state == 3 && grass) {
          state = 4;
        }
      } else if (state == 0) {
        state = grass ? 1 : 0;
      } else if (state == 1) {
        state = twin(p) ? 2 : grass ? 1 : 0;
      } else if (state == 2) {
        state = twin(p) ? 3 : grass ? 1 : 0;
      } else if (state == 3) {
        state = grass ? 4 : 0;
      }
      if (state < 4) continue;

      const int t1 = p + state - 6;
      const int t2 = p + state - 5;
      bool found = false;
      const auto grassStep = [&](int otherLine, int q) {
        if (rater.GrassIfOpen(axis.At(otherLine, q))) found = true;
      };
      if (line < n - 2) {
        grassStep(line + 2, t1);
        grassStep(line + 2, t2);
      }
      if (line > 1) {
        grassStep(line - 2, t1);
        grassStep(line - 2, t2);
      }
      if (found) return true;

      const int left = p + state - 7;
      const int right = p + state - 4;
      int a = 0;
      int b = 0;
      int firstA = -1;
      int firstB = -1;
      const auto count = [&](int& group, int& first, int otherLine, int q) {
        const int cell = axis.At(otherLine, q);
        if (!rater.IsOpen(cell)) return;
        if (group++ == 0) first = cell;
      };
      if (left != -1) {
        if (line > 1) count(a, firstA, line - 2, left);
        count(a, firstA, line - 1, left);
        count(b, firstB, line + 1, left);
        if (line < n - 2) count(b, firstB, line + 2, left);
      }
      if (right != n) {
        count(a, firstA, line + 1, right);
        if (line < n - 2) count(a, firstA, line + 2, right);
        if (line > 1) count(b, firstB, line - 2, right);
        count(b, firstB, line - 1, right);
      }
      if (a == 0 && b == 1) {
        rater.board[firstB] = CELL_TENT;
        found = true;
      } else if (a == 0) {
        rater.board[axis.At(line - 1, t1)] = CELL_TENT;
        rater.board[axis.At(line + 1, t2)] = CELL_TENT;
        found = true;
      } else if (a == 1 && b == 0) {
        rater.board[firstA] = CELL_TENT;
        found = true;
      } else if (b == 0) {
        rater.board[axis.At(line + 1, t1)] = CELL_TENT;
        rater.board[axis.At(line - 1, t2)] = CELL_TENT;
        found = true;
      }
      if (found) {
        SweepTentNeighbours(rater);
        return true;
      }
      state = 1;
    }
  }
  return false;
}

/// Three trees in an L: M in the corner, A and B found in the order north, west, east, south of it.
struct PlainWing {
  int m, a, b, formation, openA, openB;
};

bool FindPlainWing(const PlainRater& rater, int m, PlainWing& wing) {
  const int n = rater.n;
  int a = -1;
  int b = -1;
  int trees = 0;
  int tents = 0;
  for (const int side : {m - n, m - 1, m + 1, m + n}) {
    if (rater.IsTent(side)) ++tents;
    if (!rater.IsTree(side)) continue;
    ++trees;
    if (trees == 1) a = side;
    if (trees == 2) b = side;
  }
  if (trees == 2 && (b - a == 2 || b - a == 2 * n)) trees = 3;
  if (trees != 2 || tents != 0) return false;
  int firstTentOfA = -1;
  int treesBeside = 0;
  const auto survey = [&](int tree, int& open, int& firstTent) {
    const auto look = [&](int cell) {
      if (rater.IsOpen(cell)) ++open;
      if (rater.IsTree(cell)) ++treesBeside;
      if (rater.IsTent(cell) && firstTent == -1) firstTent = cell;
    };
    if (rater.Row(tree) > 0) look(tree - n);
    if (rater.Col(tree) > firstTentOfA) look(tree - 1);
    if (rater.Col(tree) < n - 1) look(tree + 1);
    if (rater.Row(tree) < n - 1) look(tree + n);
  };
  int openA = 0;
  int openB = 0;
  int firstTentOfB = -1;
  survey(a, openA, firstTentOfA);
  survey(b, openB, firstTentOfB);
  if (treesBeside != 2 || openA < 2 || openB < 2 || firstTentOfA != -1 || firstTentOfB != -1) return false;
  const int formation = a == m - n ? (b < m ? 1 : 2) : a < m ? 3 : 4;
  wing = {m, a, b, formation, openA, openB};
  return true;
}

/// What a rule of the corner kind tests: a tree T with two sides X and Y left.
struct PlainCorner {
  bool count;
  int t;
  int x;
  int y;
  bool full;
  bool takeX;  // When the full test fails.
};

PlainCorner CornerOf(const PlainRater& rater, const PlainWing& w, int rule) {
  const int n = rater.n;
  const int f = w.formation;
  int t = 0;
  if (rule == 1) t = f == 1 || f == 4 ? w.a - n + 1 : w.a - n - 1;
  if (rule == 2) t = f == 1 ? w.m + n + 1 : f == 2 ? w.m + n - 1 : f == 3 ? w.m - n + 1 : w.m - n - 1;
  if (rule == 3) t = f == 1 || f == 4 ? w.b + n - 1 : w.b + n + 1;
  if (rule == 5) t = f == 1 ? w.b - n - 1 : f == 2 ? w.b - n + 1 : f == 3 ? w.b + n - 1 : w.b + n + 1;
  if (rule == 6) t = f == 1 ? w.a - n - 1 : f == 2 ? w.a - n + 1 : f == 3 ? w.a + n - 1 : w.a + n + 1;
  const int row = t >= 0 ? t / n : -1;
  const int col = t >= 0 ? t % n : -1;
  const bool above = row > 0;
  const bool below = row < n - 1;
  const bool before = col > 0;
  const bool behind = col < n - 1;
  const int north = t - n;
  const int south = t + n;
  const int west = t - 1;
  const int east = t + 1;
  const bool a3 = w.openA == 3;
  const bool b3 = w.openB == 3;
  switch (rule * 10 + f) {
    case 11:
    case 14:
      return {a3, t, north, east, above && behind, above};
    case 12:
    case 13:
      return {a3, t, north, west, above && before, above};
    case 21:
      return {true, t, south, east, below && behind, below};
    case 22:
      return {true, t, south, west, below && before, below};
    case 23:
      return {true, t, north, east, above && behind, above};
    case 24:
      return {true, t, north, west, above && before, below};
    case 31:
    case 34:
      return {b3, t, south, west, below && before, below};
    case 32:
      return {b3, t, south, east, below && behind, below};
    case 33:
      return {b3, t, south, east, below && before, below};
    case 51:
      return {b3, t, north, west, before, true};
    case 52:
      return {b3, t, north, east, behind, true};
    case 53:
      return {b3, t, south, west, before, true};
    case 54:
      return {b3, t, south, east, behind, true};
    case 61:
      return {a3, t, north, west, above, false};
    case 62:
      return {a3, t, north, east, above, false};
    case 63:
      return {a3, t, south, west, above, false};
    default:
      return {a3, t, south, east, below, false};
  }
}

bool ApplyCorner(PlainRater& rater, const PlainWing& w, int rule) {
  const PlainCorner corner = CornerOf(rater, w, rule);
  const bool tree = rater.IsTree(corner.t);
  if (!corner.count || !tree) return false;
  if (corner.full) {
    const int k = corner.x + corner.y - corner.t;
    if (!rater.IsOpen(corner.x) || !rater.IsOpen(corner.y) || !rater.IsOpen(k)) return false;
    rater.board[k] = CELL_GRASS;
    return true;
  }
  const int field = corner.takeX ? corner.x : corner.y;
  if (!rater.IsOpen(field)) return false;
  rater.board[field] = CELL_TENT;
  return true;
}

bool ApplyTwoTrees(PlainRater& rater, const PlainWing& w) {
  const int n = rater.n;
  const auto apply = [&](int t1, int tent1, int t2, int tent2) {
    const bool tree1 = rater.IsTree(t1);
    const bool tree2 = rater.IsTree(t2);
    if (w.openA + w.openB != 6 || !tree1 || !tree2) return false;
    rater.board[tent1] = CELL_TENT;
    rater.board[tent2] = CELL_TENT;
    return true;
  };
  const int a = w.a;
  const int b = w.b;
  if (w.formation == 1) return apply(a - n - 1, a - 2 * n - 1, b - n - 1, b - n - 2);
  if (w.formation == 2) return apply(a - n + 1, a - 2 * n + 1, b - n + 1, b - n + 2);
  if (w.formation == 3) return apply(a + n - 1, a + n - 2, b + n - 1, b + 2 * n - 1);
  return apply(a + n + 1, a + n + 2, b + n + 1, b + 2 * n + 1);
}

bool ApplyOwnFields(PlainRater& rater, const PlainWing& w) {
  const int n = rater.n;
  const int row = rater.Row(w.m);
  const int col = rater.Col(w.m);
  const auto isOpen = [&](int cell) { return rater.IsOpen(cell); };
  const auto pair = [&](bool guard, int first, int second) {
    if (!guard) return false;
    const bool found = rater.GrassIfOpen(first);
    return rater.GrassIfOpen(second) || found;
  };
  const auto pairOfA = [&] {
    if (w.formation == 1) return pair(col < n - 2, w.a + 2, w.m + 2);
    if (w.formation == 2) return pair(col > 1, w.a - 2, w.m - 2);
    return pair(row > 1, w.a - 2 * n, w.m - 2 * n);
  };
  const auto pairOfB = [&] {
    if (w.formation <= 2) return pair(row < n - 2, w.b + 2 * n, w.m + 2 * n);
    if (w.formation == 3) return pair(col < n - 2, w.b + 2, w.m + 2);
    return pair(col > 1, w.b - 2, w.m - 2);
  };
  const bool aUpright = w.formation <= 2;
  const int besideA = aUpright ? 1 : n;
  const int besideB = aUpright ? n : 1;
  if (w.openA + w.openB == 4) {
    const int third = aUpright ? w.b + n : w.formation == 3 ? w.b + 1 : w.b - 1;
    const int tent = w.formation == 1 ? w.a - 1 : w.formation == 2 ? w.a + 1 : w.a + n;
    if (!isOpen(w.a - besideA) || !isOpen(w.a + besideA) || !isOpen(third)) return false;
    rater.board[tent] = CELL_TENT;
    pairOfA();
    pairOfB();
    return true;
  }
  if (w.openA == 2 && w.openB == 3) {
    return isOpen(w.a - besideA) && isOpen(w.a + besideA) && pairOfA();
  }
  if (w.openA == 3 && w.openB == 2) {
    return isOpen(w.b - besideB) && isOpen(w.b + besideB) && pairOfB();
  }
  return false;
}

bool PassWing(PlainRater& rater) {
  const int n = rater.n;
  for (int r = 1; r <= n - 2; ++r) {
    for (int c = 1; c <= n - 2; ++c) {
      const int m = r * n + c;
      PlainWing w{};
      if (!rater.IsTree(m) || !FindPlainWing(rater, m, w)) continue;
      const bool found = ApplyCorner(rater, w, 1) || ApplyCorner(rater, w, 2) || ApplyCorner(rater, w, 3) ||
                         ApplyTwoTrees(rater, w) || ApplyCorner(rater, w, 5) || ApplyCorner(rater, w, 6) ||
                         ApplyOwnFields(rater, w);
      if (!found) continue;
      SweepTentNeighbours(rater);
      return true;
    }
  }
  return false;
}

// Tier 5.

bool PassTreeSupply(PlainRater& rater, Axis axis) {
  const int n = rater.n;
  Array<int> trees;
  trees.Redim(n - 1);
  for (int line = 0; line < n; ++line) {
    for (int p = 0; p < n; ++p) trees[line] += rater.IsTree(axis.At(line, p));
  }
  int balance = 0;
  bool found = false;
  for (int line = 0; line < n; ++line) {
    balance += trees[line] - rater.Need(axis, line);
    const auto placeBeside = [&](int treeLine, int tentLine) {
      for (int p = 0; p < n; ++p) {
        if (!rater.IsTree(axis.At(treeLine, p))) continue;
        if (tentLine >= n) ThrowIndexOutsideArray();
        if (!rater.IsOpen(axis.At(tentLine, p))) continue;
        rater.board[axis.At(tentLine, p)] = CELL_TENT;
        found = true;
      }
    };
    if (balance < 0 && trees[line + 1] == -balance) placeBeside(line + 1, line);
    if (balance > 0 && trees[line] == balance) placeBeside(line, line + 1);
    if (found) {
      SweepTentNeighbours(rater);
      return true;
    }
  }
  return false;
}

template <bool (*Pass)(PlainRater&, Axis)>
bool OnRows(PlainRater& rater) {
  return Pass(rater, rater.Rows());
}
template <bool (*Pass)(PlainRater&, Axis)>
bool OnColumns(PlainRater& rater) {
  return Pass(rater, rater.Columns());
}

struct PlainPass {
  int Tier;
  bool (*Run)(PlainRater&);
};

// In the order of PassTable.
constexpr std::array<PlainPass, 23> kPasses{{
    {1, PassLoneOption},          {1, PassServedNeighbour},       {1, OnRows<PassComplete>},
    {1, OnColumns<PassComplete>}, {1, OnRows<PassRuns>},          {1, OnColumns<PassRuns>},
    {2, PassCornerField},         {2, OnRows<PassPinched>},       {2, OnColumns<PassPinched>},
    {2, OnRows<PassClaimed>},     {2, OnColumns<PassClaimed>},    {3, PassPinchedCorner},
    {3, PassSharedField},         {3, OnRows<PassLastTent>},      {3, OnColumns<PassLastTent>},
    {4, OnRows<PassSpareRun>},    {4, OnColumns<PassSpareRun>},   {4, PassCluster},
    {4, OnRows<PassTwin>},        {4, OnColumns<PassTwin>},       {4, PassWing},
    {5, OnRows<PassTreeSupply>},  {5, OnColumns<PassTreeSupply>},
}};

constexpr double kNothingFound = 2.0;

void CopyNeeds(PlainRater& rater) {
  const PackRecord& record = rater.main.global.PuzzleRec;
  for (int i = 0; i < rater.n; ++i) {
    rater.rowNeed[static_cast<std::size_t>(i)] = record.RowCounts[i];
    rater.colNeed[static_cast<std::size_t>(i)] = record.ColCounts[i];
  }
}

void SetUp(PlainRater& rater) {
  const PackRecord& record = rater.main.global.PuzzleRec;
  for (int i = 0; i < rater.cells; ++i) {
    rater.board[i] = record.Layout[i] == CELL_TREE ? CELL_TREE : CELL_OPEN;
  }
  CopyNeeds(rater);
  for (int i = 0; i < rater.cells; ++i) {
    if (rater.IsOpen(i) && rater.CountSides(i, CELL_TREE) == 0) rater.board[i] = CELL_GRASS;
  }
}

bool IsSolved(const PlainRater& rater) {
  for (int i = 0; i < rater.cells; ++i) {
    if (rater.board[i] != rater.main.global.PuzzleRec.Layout[i]) return false;
  }
  return true;
}

int Rate(Main& main, RatingTrace& trace) {
  PlainRater rater{main, main.Board, main.BoardSize, main.CellCount};
  main.Difficulty = 0;
  const float stepWeight = static_cast<float>(1.0 / (2 * main.BoardSize));
  SetUp(rater);
  int topTier = 1;
  while (true) {
    int foundBy = -1;
    for (int i = 0; i < static_cast<int>(kPasses.size()); ++i) {
      trace.FaultyPass = i;
      if (!kPasses[static_cast<std::size_t>(i)].Run(rater)) continue;
      foundBy = i;
      break;
    }
    trace.FaultyPass = -1;
    double price = kNothingFound;
    if (foundBy >= 0) {
      const int tier = kPasses[static_cast<std::size_t>(foundBy)].Tier;
      price = static_cast<double>(stepWeight) * tier;
      if (topTier < tier) topTier = tier;
      trace.Passes.push_back(foundBy);
    }
    main.Difficulty = static_cast<float>(static_cast<double>(main.Difficulty) + price);
    if (IsSolved(rater)) return topTier;
    if (foundBy < 0) return -1;
  }
}

}  // namespace

void RatePlainly(Main& main, int& result, RatingTrace& trace) {
  trace = {};
  try {
    result = Rate(main, trace);
  } catch (const RunTimeError&) {
    result = -1;
  }
}

bool RunPlainPass(Main& main, int pass) {
  PlainRater rater{main, main.Board, main.BoardSize, main.CellCount};
  CopyNeeds(rater);
  return kPasses[static_cast<std::size_t>(pass)].Run(rater);
}

}  // namespace bivouac
