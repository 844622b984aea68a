#include "deduction/runs.h"

namespace bivouac {

LineRuns CutRuns(Positions open) {
  constexpr Positions kEveryOther = 0x55555555u;
  LineRuns runs;
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

}  // namespace bivouac
