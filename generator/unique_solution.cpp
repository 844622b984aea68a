#include "generator/unique_solution.h"

#include <algorithm>
#include <cstdlib>

#include "game/board.h"
#include "game/sides.h"
#include "generator/bit_rows.h"

namespace bivouac {
namespace {

constexpr RowBits kEvenColumns = 0x55555555;
constexpr RowBits kAllColumns = 0xFFFFFFFF;

/// As many of the cells as can hold tents without touching, counted from the lowest of each run on.
RowBits Packed(RowBits cells) {
  const RowBits starts = cells & ~(cells << 1);
  const RowBits runsFromEven = cells & ~(cells + (starts & kEvenColumns));
  return (runsFromEven & kEvenColumns) | (cells & ~runsFromEven & ~kEvenColumns);
}

/// The number of the cells. Plain steps, which the compiler turns into steps over four rows at once.
int CountOf(RowBits cells) {
  cells -= cells >> 1 & 0x55555555;
  cells = (cells & 0x33333333) + (cells >> 2 & 0x33333333);
  cells = (cells + (cells >> 4)) & 0x0F0F0F0F;
  cells += cells >> 8;
  return static_cast<int>((cells + (cells >> 16)) & 31);
}

/// The cells that are in every fullest packing: every second one of each run of odd length.
RowBits InEveryPacking(RowBits cells) {
  RowBits sure = 0;
  for (RowBits left = cells; left != 0;) {
    const RowBits run = left & ~(left + LowestOf(left));
    const RowBits packed = Packed(run);
    const RowBits last = run & ~(run >> 1);
    if ((packed & last) != 0) sure |= packed;
    left ^= run;
  }
  return sure;
}

/// The first neighbour that is among the cells; with bit 0 if there is none.
BitCell OnlySide(const BitRows& cells, BitCell cell) {
  for (const BitCell side : NeighboursOf(cell)) {
    if ((cells[side.Row] & side.Bit) != 0) return side;
  }
  return {cell.Row, 0};
}

/// For each cell of a row, which of the rows' bits lie beside it.
Sides SidesOf(const BitRows& rows, int row) {
  return {rows[row - 1], rows[row] >> 1, rows[row + 1], rows[row] << 1};
}

/// How far the search has come: some trees have their tents, and some cells are closed to the trees that are
/// left. The first tree takes no part in it.
struct Position {
  BitRows Open;
  BitRows Trees;  ///< Those that are left.
  BitRows Tents;
  int RowLeft[kMaxSize + 2] = {};  ///< Clues less tents.
  RowBits ColLeft[4] = {};         ///< The same for columns, a number a bit: word k holds bit k of each.

  RowBits OpenColumns() const { return ColLeft[0] | ColLeft[1] | ColLeft[2] | ColLeft[3]; }
};

class Search {
 public:
  explicit Search(Main& main);
  bool Unique();

 private:
  void ReadClues();
  void ReadTrees();
  void PrepareBoard();

  void Explore(Position position);
  BitCell TreeToBranchOn(const Position& position) const;
  void CountWays(const Position& position);

  // What follows from a position. All of it holds for every way that the position leaves; false if there is
  // none.
  bool Settle(Position& position);
  bool PitchWhereOneSideIsLeft(Position& position);
  bool HoldRowsAgainstClues(Position& position);
  bool CrossBetweenRows(Position& position);
  bool UseTightRow(Position& position, int row);
  bool UseTightPair(Position& position, int upper);
  bool GiveToOnlyTrees(Position& position, int row, RowBits tents);
  bool Pitch(Position& position, BitCell tree, BitCell tent);
  void Close(Position& position, int row, RowBits cells);

  Main& main_;
  int size_;
  BitRows trees_;            // All of them.
  BitRows open_;             // As Board is prepared.
  BitRows exact_;            // All columns of the rows that must hold their clues exactly.
  BitCell firstTree_{1, 0};  // Bit 0 if there is none.
  bool clueBelowZero_ = false;
  Position start_;
  bool changed_ = false;
  long positions_ = 0;
  int ways_ = 0;  // Found so far.
};

/// A desktop runs events every few milliseconds only, and this many positions take about a tenth of one.
constexpr long kPositionsBetweenYields = 512;

Search::Search(Main& main) : main_(main), size_(main.BoardSize) {
  ReadClues();
  ReadTrees();
  PrepareBoard();
}

void Search::ReadClues() {
  for (int i = 1; i <= size_; ++i) {
    const int rowClue = start_.RowLeft[i] = RowClue(main_, i - 1);
    const int colClue = ColClue(main_, i - 1);
    clueBelowZero_ = clueBelowZero_ || rowClue < 0 || colClue < 0;
    // No column can hold more than nine, so a clue of fifteen stands for all that are larger.
    for (int k = 0; k < 4; ++k) {
      start_.ColLeft[k] |= static_cast<RowBits>(std::clamp(colClue, 0, 15) >> k & 1) << i;
    }
  }
}

void Search::ReadTrees() {
  int trees = 0;
  for (int row = 1; row <= size_; ++row) {
    for (int col = 1; col <= size_; ++col) {
      if (main_.Board[(row - 1) * size_ + col - 1] != CELL_TREE) continue;
      const BitCell tree{row, RowBits{1} << col};
      trees_[row] |= tree.Bit;
      if (trees++ == 0) firstTree_ = tree;
    }
    if (row >= 3 && trees_[row - 2] != 0) exact_[row] = kAllColumns;
  }
  if (trees != main_.TreeCount) ThrowIndexOutsideArray();
  start_.Trees = trees_;
  start_.Trees[firstTree_.Row] &= ~firstTree_.Bit;
}

void Search::PrepareBoard() {
  for (int row = 1; row <= size_; ++row) {
    if (start_.RowLeft[row] > 0) {
      open_[row] = start_.OpenColumns() & SidesOf(trees_, row).Any() & ~trees_[row];
    }
    for (int col = 1; col <= size_; ++col) {
      int& code = main_.Board[(row - 1) * size_ + col - 1];
      if (code != CELL_TREE) code = (open_[row] >> col & 1) != 0 ? CELL_OPEN : CELL_GRASS;
    }
  }
  start_.Open = open_;
}

bool Search::Unique() {
  main_.desktop.Yield();
  if (firstTree_.Bit != 0 && !clueBelowZero_) Explore(start_);
  return ways_ < 2;
}

void Search::Explore(Position position) {
  if (++positions_ % kPositionsBetweenYields == 0) main_.desktop.Yield();
  if (!Settle(position)) return;
  const BitCell tree = TreeToBranchOn(position);
  if (tree.Bit == 0) {
    CountWays(position);
    return;
  }
  for (const BitCell tent : NeighboursOf(tree)) {
    Position next = position;
    if (Pitch(next, tree, tent)) Explore(next);
    if (ways_ >= 2) return;
  }
}

/// A tree with two sides left, any tree if each has more, bit 0 if none is left. The lowest rows come first:
/// about them most is known.
BitCell Search::TreeToBranchOn(const Position& position) const {
  BitCell any{1, 0};
  for (int row = size_; row >= 1; --row) {
    const RowBits trees = position.Trees[row];
    if (trees == 0) continue;
    const RowBits withTwo = trees & ~SidesOf(position.Open, row).MoreThanTwo();
    if (withTwo != 0) return {row, LowestOf(withTwo)};
    if (any.Bit == 0) any = {row, LowestOf(trees)};
  }
  return any;
}

/// All trees but the first have their tents: one way for each side that the first can have.
void Search::CountWays(const Position& position) {
  for (int row = 1; row <= size_; ++row) {
    if (exact_[row] != 0 && position.RowLeft[row] != 0) return;
  }
  for (const BitCell side : NeighboursOf(firstTree_)) {
    RowBits touched = Widened(position.Tents[side.Row]);
    if (side.Row > 1) touched |= Widened(position.Tents[side.Row - 1]);
    if (side.Row < size_) touched |= Widened(position.Tents[side.Row + 1]);
    if ((open_[side.Row] & side.Bit & ~touched) != 0) ++ways_;
  }
}

bool Search::Settle(Position& position) {
  do {
    changed_ = false;
    if (!PitchWhereOneSideIsLeft(position)) return false;
    if (!changed_ && !CrossBetweenRows(position)) return false;
    if (!changed_ && !HoldRowsAgainstClues(position)) return false;
  } while (changed_);
  return true;
}

/// Closes what lies in a full column or beside no tree that is left, and looks for trees with one side left.
/// Full rows were closed when they became full.
bool Search::PitchWhereOneSideIsLeft(Position& position) {
  const RowBits openCols = position.OpenColumns();
  for (int row = 1; row <= size_; ++row) position.Open[row] &= openCols & SidesOf(position.Trees, row).Any();
  RowBits none = 0;
  RowBits anyOne = 0;
  BitRows one;
  for (int row = 1; row <= size_; ++row) {
    const Sides sides = SidesOf(position.Open, row);
    none |= position.Trees[row] & ~sides.Any();
    one[row] = position.Trees[row] & ~sides.AtLeastTwo();
    anyOne |= one[row];
  }
  if (none != 0) return false;
  if (anyOne == 0) return true;
  changed_ = true;
  for (int row = 1; row <= size_; ++row) {
    for (RowBits trees = one[row]; trees != 0; trees &= trees - 1) {
      const BitCell tree{row, LowestOf(trees)};
      if (!Pitch(position, tree, OnlySide(position.Open, tree))) return false;
    }
  }
  return true;
}

/// A row has room for as many tents as fit into its open cells without touching. Two neighbouring rows
/// together have room for as many as fit into their columns, since they hold at most one tent in any two
/// neighbouring columns.
bool Search::HoldRowsAgainstClues(Position& position) {
  RowBits tooTight = 0;
  int room[kMaxSize + 2] = {};
  int roomOfPair[kMaxSize + 2] = {};
  for (int row = 1; row <= size_; ++row) {
    room[row] = CountOf(Packed(position.Open[row])) - position.RowLeft[row];
    roomOfPair[row] = CountOf(Packed(position.Open[row] | position.Open[row + 1])) - position.RowLeft[row] -
                      position.RowLeft[row + 1];
    tooTight |= exact_[row] & static_cast<RowBits>(room[row]);
    tooTight |= exact_[row] & exact_[row + 1] & static_cast<RowBits>(roomOfPair[row]);
  }
  if (tooTight >> 31 != 0) return false;
  for (int row = 3; row <= size_; ++row) {
    if (exact_[row] == 0) continue;
    if (room[row] == 0 && !UseTightRow(position, row)) return false;
    if (exact_[row + 1] != 0 && roomOfPair[row] == 0 && !UseTightPair(position, row)) return false;
  }
  return true;
}

/// Where all rows below a line between two rows hold their clues exactly, so many tents of trees below it
/// must stand above it, less tents of trees above it that stand below.
bool Search::CrossBetweenRows(Position& position) {
  int upwards = 0;
  for (int row = size_; row >= 3 && exact_[row] != 0; --row) {
    upwards += CountOf(position.Trees[row]) - position.RowLeft[row];
    if (upwards == 0) continue;
    const int from = upwards > 0 ? row : row - 1;
    const int to = upwards > 0 ? row - 1 : row;
    const RowBits crossing = position.Trees[from] & position.Open[to];
    const int needed = std::abs(upwards);
    if (CountOf(Packed(crossing)) < needed) return false;
    if (CountOf(crossing) > needed) continue;
    for (RowBits left = crossing; left != 0; left &= left - 1) {
      if (!Pitch(position, {from, LowestOf(left)}, {to, LowestOf(left)})) return false;
    }
    changed_ = true;
    upwards = 0;
  }
  return true;
}

/// A row without a tent to spare. However it is packed, a tent stands above, below or beside each of its
/// cells.
bool Search::UseTightRow(Position& position, int row) {
  const RowBits sure = InEveryPacking(position.Open[row]);
  const RowBits touched = position.Open[row] | Widened(sure);
  Close(position, row - 1, touched);
  Close(position, row, Widened(sure) & ~sure);
  Close(position, row + 1, touched);
  return GiveToOnlyTrees(position, row, sure);
}

/// Two rows without a tent to spare. A sure column holds a tent in one of them.
bool Search::UseTightPair(Position& position, int upper) {
  const int lower = upper + 1;
  const RowBits sure = InEveryPacking(position.Open[upper] | position.Open[lower]);
  const RowBits sureAbove = sure & ~position.Open[lower];
  const RowBits sureBelow = sure & ~position.Open[upper];
  Close(position, upper - 1, Widened(sureAbove));
  Close(position, upper, Widened(sure) & ~sure);
  Close(position, lower, Widened(sure) & ~sure);
  Close(position, lower + 1, Widened(sureBelow));
  return GiveToOnlyTrees(position, upper, sureAbove) && GiveToOnlyTrees(position, lower, sureBelow);
}

/// Of tents that must stand, gives those to their tree that have but one beside them.
bool Search::GiveToOnlyTrees(Position& position, int row, RowBits tents) {
  for (RowBits left = tents & ~SidesOf(position.Trees, row).AtLeastTwo(); left != 0; left &= left - 1) {
    const BitCell tent{row, LowestOf(left)};
    changed_ = true;
    if (!Pitch(position, OnlySide(position.Trees, tent), tent)) return false;
  }
  return true;
}

bool Search::Pitch(Position& position, BitCell tree, BitCell tent) {
  if ((position.Trees[tree.Row] & tree.Bit) == 0 || (position.Open[tent.Row] & tent.Bit) == 0) return false;
  position.Trees[tree.Row] &= ~tree.Bit;
  position.Tents[tent.Row] |= tent.Bit;
  for (int row = tent.Row - 1; row <= tent.Row + 1; ++row) position.Open[row] &= ~Widened(tent.Bit);
  if (--position.RowLeft[tent.Row] == 0) position.Open[tent.Row] = 0;
  RowBits borrow = tent.Bit;
  for (RowBits& word : position.ColLeft) {
    word ^= borrow;
    borrow &= word;
  }
  return borrow == 0;
}

void Search::Close(Position& position, int row, RowBits cells) {
  if ((position.Open[row] & cells) == 0) return;
  position.Open[row] &= ~cells;
  changed_ = true;
}

}  // namespace

void CheckUniqueSolution(Main& main, bool& result) {
  result = Search(main).Unique();
}

}  // namespace bivouac
