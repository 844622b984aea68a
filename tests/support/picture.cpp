#include "tests/support/picture.h"

#include <cctype>
#include <sstream>
#include <stdexcept>

#include "game/board.h"
#include "game/layout.h"
#include "game/play.h"

namespace bivouac {
namespace {

struct Picture {
  std::vector<std::string> Rows;
  std::vector<std::string> RowClues;
  std::vector<std::string> ColClues;
};

Picture Parse(std::string_view text) {
  Picture picture;
  std::istringstream lines{std::string(text)};
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string word;
    if (!(words >> word)) continue;
    if (std::isdigit(static_cast<unsigned char>(word[0]))) {
      do picture.ColClues.push_back(word);
      while (words >> word);
    } else {
      picture.Rows.push_back(word);
      if (words >> word) picture.RowClues.push_back(word);
    }
  }
  const std::size_t size = picture.Rows.size();
  for (const std::string& row : picture.Rows) {
    if (row.size() != size) throw std::logic_error("a picture that is not square: " + row);
  }
  return picture;
}

constexpr std::string_view kCodes = ".gtT";
constexpr std::string_view kDirections = "^>v<";

}  // namespace

void LayBoard(Main& main, std::string_view text) {
  const Picture picture = Parse(text);
  main.BoardSize = static_cast<int>(picture.Rows.size());
  SizeLayout(main);
  main.TreeCount = 0;
  std::vector<int> tentsInRow(static_cast<std::size_t>(main.BoardSize));
  std::vector<int> tentsInCol(static_cast<std::size_t>(main.BoardSize));
  for (int cell = 0; cell < main.CellCount; ++cell) {
    const char mark =
        picture
            .Rows[static_cast<std::size_t>(RowOf(main, cell))][static_cast<std::size_t>(ColOf(main, cell))];
    const std::size_t direction = kDirections.find(mark);
    const std::size_t code = kCodes.find(mark);
    if (direction == kDirections.npos && code == kCodes.npos)
      throw std::logic_error("a strange mark in a picture");
    main.Board[cell] = direction != kDirections.npos ? CELL_TREE : static_cast<int>(code);
    if (main.Board[cell] != CELL_TREE) continue;
    ++main.TreeCount;
    main.Solution[cell] = CELL_TREE;
    if (direction == kDirections.npos) continue;
    main.TentDir[cell] = static_cast<int>(direction) + 1;
    ForEachSide(main.BoardSize, cell, [&](int side, int towards) {
      if (towards != main.TentDir[cell]) return;
      main.Solution[side] = CELL_TENT;
      ++tentsInRow[static_cast<std::size_t>(RowOf(main, side))];
      ++tentsInCol[static_cast<std::size_t>(ColOf(main, side))];
    });
  }
  for (int i = 0; i < main.BoardSize; ++i) {
    const auto line = static_cast<std::size_t>(i);
    main.RowCnt[i].Caption =
        picture.RowClues.empty() ? std::to_string(tentsInRow[line]) : picture.RowClues.at(line);
    main.ColCnt[i].Caption =
        picture.ColClues.empty() ? std::to_string(tentsInCol[line]) : picture.ColClues.at(line);
  }
  for (int cell = 0; cell < main.CellCount; ++cell) SetPicture(main, cell, main.Board[cell]);
  BeginOpening(main);
  RefreshButtons(main);
}

std::string DrawBoard(const Main& main) {
  std::string text;
  for (int cell = 0; cell < main.CellCount; ++cell) {
    text += kCodes[static_cast<std::size_t>(main.Board[cell])];
    if (ColOf(main, cell) == main.BoardSize - 1) text += '\n';
  }
  return text;
}

std::string BoardDigits(const Main& main) {
  std::string digits;
  for (int cell = 0; cell < main.CellCount; ++cell) digits += std::to_string(main.Board[cell]);
  return digits;
}

std::string Tidy(std::string_view picture) {
  std::string text;
  for (const std::string& row : Parse(picture).Rows) text += row + '\n';
  return text;
}

std::string Marks(const Main& main) {
  std::string text;
  for (int i = 0; i <= main.BlinkTop; ++i) {
    if (!text.empty()) text += ',';
    text += std::to_string(main.BlinkCell[i]) + ':' + std::to_string(main.BlinkTile[i]);
  }
  return text;
}

}  // namespace bivouac
