#include "drawing/hint_picture.h"

#include "game/board.h"

namespace bivouac {

BoardPicture PositionPicture(const Main& main) {
  BoardPicture picture;
  picture.Size = main.BoardSize;
  for (int cell = 0; cell < main.CellCount; ++cell) picture.Fields.Add(main.Board[cell]);
  for (int line = 0; line < main.BoardSize; ++line) {
    picture.RowClues.Add(RowClue(main, line));
    picture.ColClues.Add(ColClue(main, line));
  }
  return picture;
}

BoardPicture HintPicture(const Main& main, const FoundHint& hint, const std::vector<FieldChange>& changes) {
  BoardPicture picture = PositionPicture(main);
  for (const FoundField& field : hint.Found.Fields) {
    // A wing may claim fields beyond the edge.
    if (field.Cell < 0 || field.Cell >= main.CellCount || IsDecided(field.Is)) continue;
    const bool option = field.Is == Role::MayBeTent;
    picture.Marks.push_back({field.Cell, option ? FieldMark::Kind::Option : FieldMark::Kind::Reason});
  }
  picture.Along = hint.Rule->Along;
  picture.FirstLine = hint.Found.FirstLine;
  picture.LastLine = hint.Found.LastLine;
  for (const FieldChange& change : changes) picture.Marks.push_back({change.Cell, FieldMark::Kind::Decided});
  return picture;
}

BoardPicture PassagePicture(Main& main, const Way& way, Passage passage) {
  for (std::size_t i = passage.First; i <= passage.Last; ++i) Play(main, way.Steps[i]);
  const bool alone = passage.First == passage.Last;
  BoardPicture picture = PositionPicture(main);
  std::vector<FieldMark> marks;
  bool sawOne = false;
  for (std::size_t i = passage.First; i <= passage.Last; ++i) {
    const FoundHint& hint = way.Steps[i].Hint;
    if (!alone && hint.Rule->Stage == 1) continue;
    picture = HintPicture(main, hint, {});
    // Lines of several would not tell whose they are.
    if (sawOne) picture.LastLine = picture.FirstLine - 1;
    sawOne = true;
    for (const FieldMark& mark : picture.Marks) {
      const bool isOver = mark.What == FieldMark::Kind::Option && main.Board[mark.Cell] != CELL_OPEN;
      if (!isOver) marks.push_back(mark);
    }
  }
  picture.Marks = marks;
  for (std::size_t i = passage.First; i <= passage.Last; ++i) {
    for (const FieldChange& change : way.Steps[i].Changes)
      picture.Marks.push_back({change.Cell, FieldMark::Kind::Decided, alone ? 0 : static_cast<int>(i) + 1});
  }
  return picture;
}

}  // namespace bivouac
