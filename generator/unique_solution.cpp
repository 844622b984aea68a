#include "generator/unique_solution.h"

#include <array>
#include <bit>
#include <cstdint>
#include <vector>

#include "game/board.h"

namespace bivouac {
namespace {

/// A row of the board, one bit a column. Column 0 is bit 1, so that there is a bit for the column beside each
/// edge, and it is never set.
using RowBits = std::uint32_t;

/// Steps in row and column by tent direction.
constexpr std::array<int, 5> kRowStep = {0, -1, 0, 1, 0};
constexpr std::array<int, 5> kColStep = {0, 0, 1, 0, -1};

/// A tree of the search. Row and Col count from 1.
struct Tree {
  int Cell = 0;
  int Row = 1;
  int Col = 1;
  int Choice = 0;                       ///< Direction tried at present; 0 for none yet.
  std::array<RowBits, 3> OpenAround{};  ///< The rows around its tent as they were before the tent.
};

/// The search with one cursor over the trees, from the last to the first.
///
/// By its rules every round builds a scratch board from nothing: the board, on it the cell of the old choice
/// of the tree at the cursor as open, then the tents of all later trees and grass around them. Only two
/// things are ever asked of the scratch board. Is a cell of another direction open? It is if the board has it
/// open and no later tent stands on it or touches it; the old choice has no part in that. How many tents has
/// a line? As many as later trees have theirs in it. Both follow the cursor with a few changes a step, so
/// nothing is rebuilt; Solution is written when somebody can look at it.
class Search {
 public:
  explicit Search(Main& main) : main_(main), size_(main.BoardSize) {}

  long Run(bool& result);

 private:
  void PrepareBoard();
  void ListTree(int cell);
  void Yield();
  void TakeUpBoardAndClues();
  void WriteScratch();
  void CountTentsOnScratch();
  bool Holds();
  void Advance();
  void GoBack();
  void PlaceTent(Tree& tree);
  void RemoveTent(const Tree& tree);

  int TreeCount() const { return static_cast<int>(trees_.size()); }
  Tree& TreeAt(int index) { return trees_[static_cast<std::size_t>(index)]; }
  int TentCell(const Tree& tree, int choice) const;

  // Lines count from 1 here, as the rows and columns of trees do.
  static constexpr int kLines = kMaxSize + 3;
  using Lines = std::array<int, kLines>;
  static std::size_t At(int line) { return static_cast<std::size_t>(line); }

  Main& main_;
  int size_;
  std::vector<Tree> trees_;
  int cursor_ = 0;
  std::array<RowBits, kLines> open_{};  // Cells open to the trees up to the cursor.
  Lines rowLeft_{};                     // Clue less tents. Row N + 1 and N + 2 hold 0 and pass every test.
  Lines colLeft_{};
  int overfull_ = 0;           // Lines with more tents than their clue.
  bool tentsOnBoard_ = false;  // Clicks have put tents on Board.
  int scratchCursor_ = -1;     // The cursor of the last round that built the scratch board; -1 before it.
  int scratchOldChoice_ = 0;   // Choice of the tree there, before it was advanced.
};

/// Events run at every round by the rules. A desktop runs them every few milliseconds only, and this many
/// rounds take less than a tenth of a millisecond, so nobody can tell; a call at each would cost more than
/// the round.
constexpr long kRoundsBetweenYields = 8192;

void Search::ListTree(int cell) {
  if (TreeCount() >= main_.TreeCount) ThrowIndexOutsideArray();
  trees_.push_back(Tree{.Cell = cell, .Row = RowOf(main_, cell) + 1, .Col = ColOf(main_, cell) + 1});
}

/// Leaves on Board what a solver knows: trees, and grass where no tree is near or the clue is 0.
void Search::PrepareBoard() {
  for (int cell = 0; cell < main_.CellCount; ++cell) {
    if (main_.Board[cell] == CELL_TREE) {
      ListTree(cell);
    } else {
      main_.Board[cell] = TouchesTree(main_, cell) ? CELL_OPEN : CELL_GRASS;
    }
  }
  if (main_.TreeCount < 0) ThrowIndexOutsideArray();
  // A count that is too high leaves entries that nobody filled: trees on cell 0.
  trees_.resize(static_cast<std::size_t>(main_.TreeCount));

  const auto grass = [&](int first, int step) {
    for (int i = 0; i < size_; ++i) {
      int& code = main_.Board[first + i * step];
      if (code == CELL_OPEN) code = CELL_GRASS;
    }
  };
  for (int row = 0; row < size_; ++row) {
    if (RowClue(main_, row) <= 0) grass(row * size_, 1);
  }
  for (int col = 0; col < size_; ++col) {
    if (ColClue(main_, col) <= 0) grass(col, size_);
  }
  for (int cell = 0; cell < main_.CellCount; ++cell) main_.Solution[cell] = main_.Board[cell];
}

long Search::Run(bool& result) {
  PrepareBoard();
  bool found = false;
  cursor_ = TreeCount() - 1;
  long rounds = 0;
  for (;;) {
    if (rounds % kRoundsBetweenYields == 0) Yield();
    ++rounds;
    if (cursor_ == -1) {
      if (found) {
        result = false;
        break;
      }
      found = true;
      GoBack();
    }
    if (cursor_ == TreeCount()) {
      result = true;
      break;
    }
    scratchCursor_ = cursor_;
    scratchOldChoice_ = TreeAt(cursor_).Choice;
    if (Holds()) {
      Advance();
    } else {
      GoBack();
    }
  }
  WriteScratch();
  return rounds;
}

void Search::Yield() {
  WriteScratch();
  main_.desktop.Yield();
  TakeUpBoardAndClues();
}

/// Clicks may have changed the board while events ran.
void Search::TakeUpBoardAndClues() {
  if (main_.BoardSize != size_) ThrowIndexOutsideArray();
  overfull_ = 0;
  tentsOnBoard_ = false;
  for (int row = 0; row < size_; ++row) {
    RowBits bits = 0;
    for (int col = 0; col < size_; ++col) {
      const int code = main_.Board[row * size_ + col];
      if (code == CELL_OPEN) bits |= RowBits{2} << col;
      tentsOnBoard_ = tentsOnBoard_ || code == CELL_TENT;
    }
    open_[At(row + 1)] = bits;
  }
  for (int i = 0; i < size_; ++i) {
    rowLeft_[At(i + 1)] = RowClue(main_, i);
    colLeft_[At(i + 1)] = ColClue(main_, i);
    overfull_ += (rowLeft_[At(i + 1)] < 0) + (colLeft_[At(i + 1)] < 0);
  }
  for (int k = TreeCount() - 1; k > cursor_; --k) PlaceTent(TreeAt(k));
}

int Search::TentCell(const Tree& tree, int choice) const {
  return tree.Cell + kRowStep[At(choice)] * size_ + kColStep[At(choice)];
}

/// Writes to Solution what the last round built there.
void Search::WriteScratch() {
  if (scratchCursor_ == -1) return;
  for (int cell = 0; cell < main_.CellCount; ++cell) main_.Solution[cell] = main_.Board[cell];
  if (scratchOldChoice_ != 0) {
    main_.Solution[TentCell(TreeAt(scratchCursor_), scratchOldChoice_)] = CELL_OPEN;
  }
  const int first = cursor_ < scratchCursor_ ? scratchCursor_ : scratchCursor_ + 1;
  for (int k = TreeCount() - 1; k >= first; --k) {
    const int tent = TentCell(TreeAt(k), TreeAt(k).Choice);
    main_.Solution[tent] = CELL_TENT;
    FillAroundTent(main_, tent, FillTarget::Solution);
  }
}

void Search::CountTentsOnScratch() {
  overfull_ = 0;
  for (int i = 0; i < size_; ++i) {
    int& row = rowLeft_[At(i + 1)] = RowClue(main_, i);
    int& col = colLeft_[At(i + 1)] = ColClue(main_, i);
    for (int j = 0; j < size_; ++j) {
      row -= main_.Solution[i * size_ + j] == CELL_TENT;
      col -= main_.Solution[j * size_ + i] == CELL_TENT;
    }
    overfull_ += (row < 0) + (col < 0);
  }
}

/// Tests the tents of all trees behind the cursor. The second row below the tree at the cursor is out of
/// reach for the trees that are left, so it must be complete; no line may have too many. The first tree's
/// tent is never tested.
bool Search::Holds() {
  if (tentsOnBoard_) {
    WriteScratch();
    CountTentsOnScratch();
  }
  return overfull_ == 0 && rowLeft_[At(TreeAt(cursor_).Row + 2)] == 0;
}

/// Gives the tree at the cursor its tent in the next direction that is open, or goes back.
void Search::Advance() {
  Tree& tree = TreeAt(cursor_);
  const RowBits here = open_[At(tree.Row)];
  RowBits usable = (open_[At(tree.Row - 1)] >> tree.Col & 1) << NORTH | (here >> (tree.Col + 1) & 1) << EAST |
                   (open_[At(tree.Row + 1)] >> tree.Col & 1) << SOUTH | (here >> (tree.Col - 1) & 1) << WEST;
  usable &= ~RowBits{0} << (tree.Choice + 1);
  if (usable == 0) {
    tree.Choice = 0;
    GoBack();
    return;
  }
  tree.Choice = std::countr_zero(usable);
  PlaceTent(tree);
  --cursor_;
}

void Search::GoBack() {
  ++cursor_;
  if (cursor_ < TreeCount()) RemoveTent(TreeAt(cursor_));
}

void Search::PlaceTent(Tree& tree) {
  const int row = tree.Row + kRowStep[At(tree.Choice)];
  const int col = tree.Col + kColStep[At(tree.Choice)];
  RowBits* const rows = &open_[At(row - 1)];
  tree.OpenAround = {rows[0], rows[1], rows[2]};
  const RowBits away = ~(RowBits{7} << (col - 1));
  rows[0] &= away;
  rows[1] &= away;
  rows[2] &= away;
  overfull_ += (rowLeft_[At(row)]-- == 0) + (colLeft_[At(col)]-- == 0);
}

/// Requires: no tent was placed after it, but those that have been removed.
void Search::RemoveTent(const Tree& tree) {
  const int row = tree.Row + kRowStep[At(tree.Choice)];
  const int col = tree.Col + kColStep[At(tree.Choice)];
  RowBits* const rows = &open_[At(row - 1)];
  rows[0] = tree.OpenAround[0];
  rows[1] = tree.OpenAround[1];
  rows[2] = tree.OpenAround[2];
  overfull_ -= (++rowLeft_[At(row)] == 0) + (++colLeft_[At(col)] == 0);
}

}  // namespace

long CheckUniqueSolution(Main& main, bool& result) {
  return Search(main).Run(result);
}

}  // namespace bivouac
