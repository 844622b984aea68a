// The window of the game in a page: tells the page what each element shows and where, and says what changed
// to those who listen.
#pragma once

#include <map>
#include <string>

#include "events/board_keys.h"
#include "events/focus.h"
#include "events/places.h"
#include "game/spoken.h"
#include "page/page.h"
#include "page/puzzle_list.h"
#include "storage/players.h"

namespace bivouac {

/// The keys of a control here: those of the desktop, but for what browsers keep to themselves.
std::string_view KeysOfPage(const ControlRow& row);

class PageWindow {
 public:
  PageWindow(const Main& main, const FormNamen& form, PuzzleList& list)
      : main_(main), form_(form), list_(list) {}

  /// Compares what the elements show with what they showed last, and tells what changed.
  void Draw();
  /// Lays everything out for a page of that size, CSS pixels.
  void Resize(int width, int height);
  /// To be called after every event, when no box is open: says what changed.
  void SayWhatChanged();

  /// The focus has moved by itself. `byTab`: the player moved it. `control` is the name of a control.
  void TakeFocus(std::string_view control, bool byTab);
  /// Whether a key was used last, not the mouse: then a frame that the board gets with the focus shows.
  void UseKeys(bool used) { keyUsedLast_ = used; }
  int Frame() const { return frame_; }
  /// A field is clicked: the frame goes there, and hides.
  void ClickField(int cell);
  void MoveFrame(FrameKey key, bool control);
  /// Where no frame shows, the first key that clicks only shows it, so that nobody changes a field unseen.
  bool ShowsFrameFirst();
  /// The field in the frame was clicked, for what is said of it.
  void NoteClick() { clicked_ = true; }

 private:
  void DrawElement(const std::string& id, Message& message);
  void DrawControl(const ControlRow& row);
  void DrawClue(const char* name, int line, const Label& clue, bool isRow);
  void DrawStatusBar();
  void DrawBoard();
  void DrawShield();
  void DrawPlayers();
  bool MoveFocus(bool hintAppeared);
  void SendChanges(bool focusMoves);
  std::string WholeWindow() const;
  void AddPlace(Message& message, const PixelRect& at, int text) const;
  PixelRect PlaceOfClue(const Label& clue, int line, bool isRow) const;
  PixelRect PlaceOfCell(int cell) const;
  bool IsNarrow() const { return narrowSide_ > 0; }

  const Main& main_;
  const FormNamen& form_;
  PuzzleList& list_;
  Scale scale_;
  int width_ = 0;
  int height_ = 0;
  CellEdges edges_;
  int narrowSide_ = 0;  ///< Of a cell on a narrow page, where the board takes the width; else 0.

  std::map<std::string, std::string> drawn_;  ///< What was last told of an element.
  std::string changes_;                       ///< The elements of one draw, with commas between.
  FixedArray<int, kMaxCells> pictures_;
  Focus focus_;
  bool hintWaited_ = false;
  bool keyUsedLast_ = false;
  int frame_ = 0;
  bool frameShown_ = false;
  bool focusCameByItself_ = false;
  bool clicked_ = false;
  Told told_;
  std::string drawnWhole_;
};

}  // namespace bivouac
