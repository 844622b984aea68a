#include "generator/layout_drawing.h"

#include <cstdint>
#include <string>
#include <utility>

#include "game/board.h"
#include "generator/bit_rows.h"
#include "generator/random.h"

namespace bivouac {
namespace {

constexpr int kSwaps = 5000;  // Of a shuffle, for every size.
static_assert(kSwaps % 2 == 0, "a random number feeds two");

/// A cell as one number: its row and its column, which count from 1.
using CellNumber = std::uint16_t;
constexpr CellNumber NumberOf(int row, int col) {
  return static_cast<CellNumber>(row << 5 | col);
}
constexpr int RowOfNumber(int number) {
  return number >> 5;
}
constexpr int ColOfNumber(int number) {
  return number & 31;
}
/// From a cell to its neighbour in the north, east, south, west.
constexpr int kSteps[] = {-NumberOf(1, 0), NumberOf(0, 1), NumberOf(1, 0), -NumberOf(0, 1)};

/// Directions as places in kSteps. One random number feeds 32 of them.
class Directions {
 public:
  explicit Directions(Random& random) : random_(random) {}
  int Next() {
    if (left_-- == 0) {
      bits_ = random_.Next();
      left_ = 31;
    } else {
      bits_ >>= 2;
    }
    return static_cast<int>(bits_ & 3);
  }

 private:
  Random& random_;
  std::uint64_t bits_ = 0;
  int left_ = 0;
};

class Drawing {
 public:
  explicit Drawing(Main& main);
  void Shuffle();
  void PlacementPass();
  bool Full() const { return visits_ == 0; }
  void WriteBoard();

 private:
  void Place(int cell, int direction);

  Main& main_;
  int size_;
  Random random_;
  Directions directions_{random_};
  CellNumber order_[kMaxCells] = {};
  int visits_ = 0;  // Cells at the head of the order that a pass has to visit.
  BitRows open_, trees_, tents_;
  int tentsInRow_[kMaxSize + 2] = {};
  int tentsInCol_[kMaxSize + 2] = {};
};

Drawing::Drawing(Main& main) : main_(main), size_(main.BoardSize), random_(main.desktop.RandomSeed()) {
  for (int row = 1; row <= size_; ++row) {
    for (int col = 1; col <= size_; ++col) {
      order_[visits_++] = NumberOf(row, col);
      open_[row] |= RowBits{1} << col;
    }
  }
}

void Drawing::Shuffle() {
  for (int swap = 0; swap < kSwaps; swap += 2) {
    const std::uint64_t word = random_.Next();
    for (const std::uint64_t bits32 : {word >> 32, word & 0xFFFFFFFF}) {
      const auto [a, b] = Random::TwoBelow(visits_, bits32);
      std::swap(order_[a], order_[b]);
    }
  }
}

/// Visits the cells in their order. A cell that is taken, or that has no open cell beside it, will never
/// become a tree, so that no pass visits it again.
void Drawing::PlacementPass() {
  int kept = 0;
  for (int i = 0; i < visits_; ++i) {
    const CellNumber cell = order_[i];
    const int row = RowOfNumber(cell);
    const int col = ColOfNumber(cell);
    if (((trees_[row] | tents_[row]) >> col & 1) != 0) continue;
    const RowBits room = (open_[row - 1] >> col & 1) | (open_[row] >> (col + 1) & 1) << 1 |
                         (open_[row + 1] >> col & 1) << 2 | (open_[row] >> (col - 1) & 1) << 3;
    if (room == 0) continue;
    const int direction = directions_.Next();
    if ((room >> direction & 1) != 0) {
      Place(cell, direction);
    } else {
      order_[kept++] = cell;
    }
  }
  visits_ = kept;
}

void Drawing::Place(int cell, int direction) {
  const int row = RowOfNumber(cell);
  const int col = ColOfNumber(cell);
  trees_[row] |= RowBits{1} << col;
  open_[row] &= ~trees_[row];
  main_.TentDir[(row - 1) * size_ + col - 1] = direction + 1;
  ++main_.TreeCount;

  const int tentRow = RowOfNumber(cell + kSteps[direction]);
  const int tentCol = ColOfNumber(cell + kSteps[direction]);
  const RowBits tent = RowBits{1} << tentCol;
  tents_[tentRow] |= tent;
  for (int near = tentRow - 1; near <= tentRow + 1; ++near) open_[near] &= ~Widened(tent);
  ++tentsInRow_[tentRow];
  ++tentsInCol_[tentCol];
}

void Drawing::WriteBoard() {
  for (int row = 1; row <= size_; ++row) {
    for (int col = 1; col <= size_; ++col) {
      const auto has = [&](const BitRows& cells) { return (cells[row] >> col & 1) != 0; };
      main_.Board[(row - 1) * size_ + col - 1] = has(trees_)   ? CELL_TREE
                                                 : has(tents_) ? CELL_TENT
                                                 : has(open_)  ? CELL_OPEN
                                                               : CELL_GRASS;
    }
  }
  for (int i = 0; i < size_; ++i) {
    main_.RowCnt[i].Caption = std::to_string(tentsInRow_[i + 1]);
    main_.ColCnt[i].Caption = std::to_string(tentsInCol_[i + 1]);
  }
}

void Clear(Main& main) {
  for (int cell = 0; cell < main.CellCount; ++cell) {
    main.TentDir[cell] = 0;
    SetPicture(main, cell, CELL_OPEN);
  }
  for (int i = 0; i < main.BoardSize; ++i) {
    for (Label* const label : {&main.RowCnt[i], &main.ColCnt[i]}) {
      label->Visible = false;
      label->Caption = std::to_string(0);
    }
  }
  main.TreeCount = 0;
}

}  // namespace

void DrawLayout(Main& main) {
  Clear(main);
  Drawing drawing(main);
  drawing.Shuffle();
  do {
    main.desktop.Yield();
    drawing.PlacementPass();
  } while (!drawing.Full());
  drawing.WriteBoard();
}

}  // namespace bivouac
