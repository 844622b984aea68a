#include "storage/status_panels.h"

#include "game/controls.h"
#include "game/text.h"
#include "storage/players.h"

namespace bivouac {
namespace {

std::string MinutesAndSeconds(int minutes, int seconds) {
  return TwoDigits(minutes) + ":" + TwoDigits(seconds);
}

/// What a panel shows at first: where no time is known, it says so in the same words.
std::string FirstText(std::size_t panel) {
  return std::string(PanelTable()[panel - 1].Text);
}

}  // namespace

void ShowSize(Main& main) {
  const std::string size = std::to_string(main.BoardSize);
  PanelOf(main, 1).Text = "Size: " + size + "x" + size;
}

void ShowLevel(Main& main) {
  PanelOf(main, 2).Text = "Level: " + std::to_string(main.Level);
}

void ShowPuzzleNumber(Main& main) {
  PanelOf(main, 3).Text = "Puzzle #: " + std::to_string(main.PuzzleNo);
}

void ShowNoPuzzleNumber(Main& main) {
  PanelOf(main, 3).Text = FirstText(3);
}

void ShowUnsavedPuzzle(Main& main) {
  PanelOf(main, 3).Text = "Puzzle #: NEW";
  PanelOf(main, 5).Text = "Best Time: NOT AVAILABLE";
}

void ShowTotal(Main& main) {
  PanelOf(main, 4).Text = "Total Puzzles: " + std::to_string(main.PuzzleCount[main.BoardSize - kMinSize]);
}

void ShowBestTime(Main& main) {
  const PackRecord& puzzle = main.global.PuzzleRec;
  PanelOf(main, 5).Text = "Best Time: " + MinutesAndSeconds(puzzle.BestMinutes, puzzle.BestSeconds) + " by " +
                          NameOf(main.global, puzzle.BestPlayer);
}

void ShowNoBestTime(Main& main) {
  PanelOf(main, 5).Text = FirstText(5);
}

void ShowYourTime(Main& main) {
  const PersonalRecord& own = main.global.PersonalRec;
  PanelOf(main, 6).Text = "Your Time: " + MinutesAndSeconds(own.PersonalMinutes, own.PersonalSeconds);
}

std::string NoYourTime() {
  return FirstText(6);
}

void ShowNoYourTime(Main& main) {
  PanelOf(main, 6).Text = NoYourTime();
}

}  // namespace bivouac
