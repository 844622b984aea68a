#include "hints/hints.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

#include "game/clock.h"
#include "game/error.h"
#include "game/layout.h"
#include "support/picture.h"
#include "support/scripted_desktop.h"

namespace bivouac {
namespace {

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

/// A game in which the sounds have the ids of their numbers.
struct HintGame : Game {
  HintGame() : Game(desktop) {
    main.SoundOn = true;
    for (int i = 0; i < 12; ++i) main.SoundId[i] = i;
  }
  ScriptedDesktop desktop;
};

std::string SoundsOf(const ScriptedDesktop& desktop) {
  std::string text;
  for (const int sound : desktop.Played) {
    if (!text.empty()) text += ',';
    text += std::to_string(sound);
  }
  return text;
}

std::string OrDash(const std::string& text) {
  return text.empty() ? "-" : text;
}

struct WorkedResult {
  int Size;
  std::vector<std::string> RowClues;
  std::vector<std::string> ColClues;
  std::string Directions;
  std::string Board;
  std::string Outcome;
  std::string Seconds;
  std::string Played;
  std::string Marks;
  std::string Text;
};

void Lay(Main& main, const WorkedResult& line) {
  main.BoardSize = line.Size;
  SizeLayout(main);
  for (int i = 0; i < line.Size; ++i) {
    main.RowCnt[i].Caption = line.RowClues.at(static_cast<std::size_t>(i));
    main.ColCnt[i].Caption = line.ColClues.at(static_cast<std::size_t>(i));
  }
  for (int cell = 0; cell < main.CellCount; ++cell) {
    main.Board[cell] = line.Board.at(static_cast<std::size_t>(cell)) - '0';
    if (line.Directions != "-") main.TentDir[cell] = line.Directions.at(static_cast<std::size_t>(cell)) - '0';
  }
  main.BoardLive = true;
}

/// What the hint did, in the columns of the table from the outcome on.
std::string Play(HintGame& game, const WorkedResult& line) {
  Main& main = game.main;
  game.desktop.Answers = {BoxAnswer::No, BoxAnswer::Yes};
  try {
    if (line.Directions == "-") {
      HintBasic(main);
    } else {
      cmdHint_Click(main);
    }
  } catch (const RunTimeError& error) {
    return error.Number() == ErrorNumber::IndexOutsideArray ? "FAULT" : error.what();
  }
  const bool wrong = !game.desktop.Boxes.empty();
  const int shown = wrong ? 10 * (main.BlinkTop + 1) : 0;
  const bool find = main.BlinkTop != -1;
  EXPECT_EQ(main.BoardLive, !find);
  EXPECT_EQ(main.Timer2.Enabled, find);
  return std::string(wrong  ? "WRONG"
                     : find ? "FIND"
                            : "NONE") +
         '\t' + std::to_string(main.Elapsed - shown) + '\t' + OrDash(SoundsOf(game.desktop)) + '\t' +
         OrDash(Marks(main)) + '\t' + main.lblHint.Caption;
}

TEST(Hints, WorkedResults) {
  std::ifstream file(BIVOUAC_SOURCE_DIR "/tests/data/hints.tsv");
  int number = 0;
  for (std::string text; std::getline(file, text);) {
    ++number;
    const std::vector<std::string> columns = Split(text, '\t');
    ASSERT_EQ(columns.size(), 10u) << "line " << number;
    const WorkedResult line{std::stoi(columns[0]),
                            Split(columns[1], ','),
                            Split(columns[2], ','),
                            columns[3],
                            columns[4],
                            columns[5],
                            columns[6],
                            columns[7],
                            columns[8],
                            columns[9]};
    HintGame game;
    Lay(game.main, line);
    std::string expected = line.Outcome;
    if (expected != "FAULT")
      expected += '\t' + line.Seconds + '\t' + line.Played + '\t' + line.Marks + '\t' + line.Text;
    EXPECT_EQ(Play(game, line), expected) << "line " << number;
    EXPECT_EQ(BoardDigits(game.main), line.Board) << "line " << number;
  }
  EXPECT_EQ(number, 529);
}

}  // namespace
}  // namespace bivouac
