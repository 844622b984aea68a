#include "deduction/lines.h"

#include "game/text.h"

namespace bivouac {

Runs CutRuns(Positions open) {
  constexpr Positions kEveryOther = 0x55555555u;
  Runs runs;
  while (open != 0) {
    const int start = std::countr_zero(open);
    const int length = std::countr_one(open >> start);
    const Positions run = ((1u << length) - 1u) << start;
    runs.Capacity += (length + 1) / 2;
    if (length % 2 != 0) {
      runs.Odd |= run & (kEveryOther << start);
    } else {
      runs.Even |= run;
    }
    open &= ~run;
  }
  return runs;
}

Clues::Clues(const FixedArray<std::int16_t, kMaxSize>& counts) {
  for (int line = 0; line < kMaxSize; ++line) clues_[line] = counts[line];
}

int Clues::Read(int line) {
  return clues_[line] = IntegerFromText((*labels_)[line].Caption);
}

void Lines::ReadBoard() {
  for (int line = 0; line < axis_.Size; ++line) {
    for (int position = 0; position < axis_.Size; ++position) {
      const int code = board_[axis_.At(line, position)];
      if (code >= CELL_OPEN && code <= CELL_TREE) Add(code, line, position);
    }
  }
}

}  // namespace bivouac
