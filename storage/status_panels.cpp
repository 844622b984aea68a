#include "storage/status_panels.h"

#include "game/text.h"
#include "storage/players.h"

namespace bivouac {
namespace {

std::string MinutesAndSeconds(int minutes, int seconds) {
  return TwoDigits(minutes) + ":" + TwoDigits(seconds);
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

void ShowTotal(Main& main) {
  PanelOf(main, 4).Text = "Total Puzzles: " + std::to_string(main.PuzzleCount[main.BoardSize - kMinSize]);
}

void ShowBestTime(Main& main) {
  const PackRecord& puzzle = main.global.PuzzleRec;
  PanelOf(main, 5).Text = "Best Time: " + MinutesAndSeconds(puzzle.BestMinutes, puzzle.BestSeconds) + " by " +
                          NameOf(main.global, puzzle.BestPlayer);
}

void ShowNoBestTime(Main& main) {
  PanelOf(main, 5).Text = kNoBestTime;
}

void ShowYourTime(Main& main) {
  const PersonalRecord& own = main.global.PersonalRec;
  PanelOf(main, 6).Text = "Your Time: " + MinutesAndSeconds(own.PersonalMinutes, own.PersonalSeconds);
}

void ShowNoYourTime(Main& main) {
  PanelOf(main, 6).Text = kNoYourTime;
}

}  // namespace bivouac
