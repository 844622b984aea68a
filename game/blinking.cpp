#include "game/blinking.h"

#include <cstdlib>

#include "game/board.h"

namespace bivouac {
namespace {

int PlainTile(int tile) {
  if (tile < 0) return CELL_OPEN;
  return tile < kHighlight ? tile : tile - kHighlight;
}

int PhaseTile(int tile) {
  if (tile < 0) return std::abs(tile);
  return tile < kHighlight ? CELL_OPEN : tile;
}

/// The four cells at a distance from the corners. Boards of fewer lines than positions reach hidden cells; a
/// flat index below 0 paints nothing.
void PaintGroup(Main& main, int position, int tile) {
  const int size = main.BoardSize;
  const int mirror = size - 1 - position;
  SetPicture(main, position * size + position, tile);
  SetPicture(main, mirror * size + position, tile);
  SetPicture(main, mirror * size + mirror, tile);
  SetPicture(main, position * size + mirror, tile);
}

}  // namespace

void AddBlink(Main& main, int cell, int tile) {
  ++main.BlinkTop;
  main.BlinkCell.RedimPreserve(main.BlinkTop);
  main.BlinkTile.RedimPreserve(main.BlinkTop);
  main.BlinkCell[main.BlinkTop] = cell;
  main.BlinkTile[main.BlinkTop] = tile;
}

void Timer2_Timer(Main& main) {
  for (int i = 0; i <= main.BlinkTop; ++i) {
    const int tile = main.BlinkTile[i];
    SetPicture(main, main.BlinkCell[i], main.BlinkPhase ? PhaseTile(tile) : PlainTile(tile));
  }
  main.BlinkPhase = !main.BlinkPhase;
}

void PutBackMarkedTiles(Main& main) {
  for (int i = 0; i <= main.BlinkTop; ++i) {
    SetPicture(main, main.BlinkCell[i], PlainTile(main.BlinkTile[i]));
  }
}

void Timer1_Timer(Main& main) {
  constexpr int kPositions = 9;
  constexpr int kColours = 3;
  if (main.GenFirstTick) {
    main.AnimationColour = 0;
    main.AnimationPosition = 0;
    PaintGroup(main, main.AnimationPosition, main.AnimationColour + 1);
    main.GenFirstTick = false;
    return;
  }
  const int old = main.AnimationPosition;
  main.AnimationPosition = (old + 1) % kPositions;
  if (main.AnimationPosition == 0) main.AnimationColour = (main.AnimationColour + 1) % kColours;
  PaintGroup(main, main.AnimationPosition, main.AnimationColour + 1);
  PaintGroup(main, old, CELL_OPEN);
}

}  // namespace bivouac
