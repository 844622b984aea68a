#include "rating/sweep.h"

namespace bivouac {

void SweepTentNeighbours(Rater& rater) {
  const Lines& rows = rater.rows.lines;
  for (int row = 0; row < rater.size; ++row) {
    const Positions own = rows.Tents(row);
    const Positions beside = rows.Tents(row - 1) | rows.Tents(row + 1);
    const Positions around = beside | WithBefore(own | beside) | WithBehind(own | beside);
    rater.SetAll(rows, row, rows.Open(row) & around, CELL_GRASS);
  }
}

}  // namespace bivouac
