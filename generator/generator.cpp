#include "generator/generator.h"

#include <charconv>
#include <string>
#include <utility>

#include "game/board.h"
#include "game/play.h"
#include "game/text.h"
#include "generator/random.h"
#include "generator/unique_solution.h"
#include "rating/rating.h"
#include "storage/saving.h"

namespace bivouac {
namespace {

constexpr int kSwaps = 5000;  // Of a shuffle, for every size.
constexpr int kNotRated = -1;

void AddOne(Label& label) {
  label.Caption = std::to_string(IntegerFromText(label.Caption) + 1);
}

void ClearRecord(Main& main) {
  main.global.PuzzleRec = PackRecord{};
  main.global.PuzzleRec.LevelSize = LevelSizeOf(0, main.BoardSize);
}

void ClearBoard(Main& main, Array<int>& shuffleOrder) {
  for (int cell = 0; cell < main.CellCount; ++cell) {
    main.Board[cell] = CELL_OPEN;
    main.TentDir[cell] = 0;
    SetPicture(main, cell, CELL_OPEN);
    shuffleOrder[cell] = cell;
  }
  for (int i = 0; i < main.BoardSize; ++i) {
    main.RowCnt[i].Visible = false;
    main.ColCnt[i].Visible = false;
    main.RowCnt[i].Caption = std::to_string(0);
    main.ColCnt[i].Caption = std::to_string(0);
  }
}

void Shuffle(Array<int>& order, int count, Random& random) {
  // Most of the time of a small puzzle goes here, and most of that into checking indexes that cannot go
  // wrong.
  FixedArray<int, kMaxCells> cells;
  for (int i = 0; i < count; ++i) cells[i] = order[i];
  int* const unchecked = &cells[0];
  for (int swap = 0; swap < kSwaps; ++swap) {
    const auto [a, b] = random.BelowTwice(count);
    std::swap(unchecked[a], unchecked[b]);
  }
  for (int i = 0; i < count; ++i) order[i] = cells[i];
}

/// Makes the cell a tree if it can have its tent in the direction.
void TryTree(Main& main, int cell, int direction) {
  int tent = -1;
  ForEachSide(main.BoardSize, cell, [&](int side, int towards) {
    if (towards == direction && main.Board[side] == CELL_OPEN) tent = side;
  });
  if (tent == -1) return;
  main.Board[cell] = CELL_TREE;
  main.TentDir[cell] = direction;
  main.Board[tent] = CELL_TENT;
  FillAroundTent(main, tent, FillTarget::Board);
  AddOne(main.RowCnt[RowOf(main, tent)]);
  AddOne(main.ColCnt[ColOf(main, tent)]);
  ++main.TreeCount;
}

void PlacementPass(Main& main, const Array<int>& shuffleOrder, Random& random) {
  for (int index = 0; index < main.CellCount; ++index) {
    main.desktop.Yield();
    const int cell = shuffleOrder[index];
    if (main.Board[cell] >= CELL_TENT) continue;
    TryTree(main, cell, random.Below(4) + 1);
  }
}

/// True if no cell can become a tree with a tent beside it.
bool IsSaturated(const Main& main) {
  for (int cell = 0; cell < main.CellCount; ++cell) {
    if (main.Board[cell] >= CELL_TENT) continue;
    bool room = false;
    ForEachSide(main.BoardSize, cell, [&](int side, int) { room = room || main.Board[side] == CELL_OPEN; });
    if (room) return false;
  }
  return true;
}

/// Directions of trees of rejected layouts stay in the record where the new layout has no tree.
void CopyLayoutToRecord(Main& main) {
  PackRecord& record = main.global.PuzzleRec;
  for (int cell = 0; cell < main.CellCount; ++cell) {
    if (main.Board[cell] == CELL_TREE) record.TentDirs[cell] = static_cast<std::int16_t>(main.TentDir[cell]);
    record.Layout[cell] = static_cast<std::int16_t>(main.Board[cell]);
  }
  for (int i = 0; i < main.BoardSize; ++i) {
    record.RowCounts[i] = static_cast<std::int16_t>(RowClue(main, i));
    record.ColCounts[i] = static_cast<std::int16_t>(ColClue(main, i));
  }
}

/// At most seven significant digits, whatever the language of the system.
std::string DifficultyText(float difficulty) {
  char text[32];
  const auto end = std::to_chars(text, text + sizeof text, difficulty, std::chars_format::general, 7).ptr;
  return {text, end};
}

void ShowWaiting(Main& main) {
  BeginOpening(main);
  for (int cell = 0; cell < main.CellCount; ++cell) SetPicture(main, cell, CELL_OPEN);
  main.GenFirstTick = true;
  main.Timer1.Enabled = true;
  main.LabelStap.Caption = std::to_string(main.StepCount);
}

void Report(Main& main) {
  int level = 0;
  RatePuzzle(main, level);
  main.desktop.Show(MessageBox{.Title = "Generate report",
                               .Text = "The new generated puzzle has level " + std::to_string(level) +
                                       " with difficulty " + DifficultyText(main.Difficulty),
                               .Symbol = BoxSymbol::Information});
}

}  // namespace

void DrawLayout(Main& main, Array<int>& shuffleOrder) {
  ClearBoard(main, shuffleOrder);
  Random random(main.desktop.RandomSeed());
  Shuffle(shuffleOrder, main.CellCount, random);
  main.TreeCount = 0;
  do PlacementPass(main, shuffleOrder, random);
  while (!IsSaturated(main));
}

void MakePuzzle(Main& main) {
  PackRecord& record = main.global.PuzzleRec;
  Array<int> shuffleOrder;
  shuffleOrder.Redim(main.CellCount - 1);
  do {
    ClearRecord(main);
    bool unique = false;
    while (!unique) {
      DrawLayout(main, shuffleOrder);
      CopyLayoutToRecord(main);
      CheckUniqueSolution(main, unique);
    }
    RatePuzzle(main, main.Level);
  } while (main.Level == kNotRated);
  record.LevelSize = LevelSizeOf(main.Level, main.BoardSize);
  for (int cell = 0; cell < main.CellCount; ++cell) main.Board[cell] = record.Layout[cell];
}

void cmdGenerate_Click(Main& main) {
  ShowWaiting(main);
  MakePuzzle(main);
  Save_New(main);
  main.global.PersonalPos = 0;
  main.Timer1.Enabled = false;
  Report(main);
  for (int i = 0; i < main.BoardSize; ++i) {
    main.RowCnt[i].Visible = true;
    main.ColCnt[i].Visible = true;
  }
  StartPuzzle(main);
}

}  // namespace bivouac
