// The list of puzzles in a page: what the player does to it, and what it shows.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "page/page_desktop.h"
#include "walks/puzzle_listing.h"

namespace bivouac {

class Message;

/// The members of a picture of a board: its size, its tiles, its clues.
std::string PictureJson(const Main& main);

class PuzzleList {
 public:
  explicit PuzzleList(const Main& main) : listing_(main), playing_(main.PuzzleNo) {}

  struct Choice {
    int Number;
    bool GoOn;  ///< With the kept game, instead of from the start.
  };
  /// Shows the puzzles and holds the caller until one is chosen or the list is closed.
  std::optional<Choice> Choose(PageDesktop& desktop);
  bool IsOpen() const { return open_; }

  /// Does what an event of the list asks for: a word, and what belongs to it.
  void Take(const std::string& what, const std::string& rest);
  /// Gives the elements that stand for the list, each with its name.
  void Draw(const std::function<void(const char* id, Message& message)>& draw);

 private:
  void Apply();
  void Press(const std::string& button);
  void MoveBy(int rows);
  void FindNeeds();
  int PlaceOfSelected() const;

  PuzzleListing listing_;
  const int& playing_;  ///< Its number is selected first.
  bool open_ = false;
  PuzzleListing::Filter filter_;
  int column_ = PuzzleListing::kNumber;
  bool descending_ = false;
  std::vector<int> rows_;  ///< Those shown, in their order.
  int selected_ = -1;      ///< A row, or none.
  std::optional<Choice> choice_;
};

}  // namespace bivouac
