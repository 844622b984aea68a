// A program installed in a folder, with packs of three puzzles for every size, and a user's folder.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "game/game_state.h"
#include "storage/players.h"
#include "tests/support/files.h"
#include "tests/support/scripted_desktop.h"

namespace bivouac {

inline constexpr int kInstalledPuzzles = 3;

/// Writes the packs of three puzzles, from this one on of those that come with the program, counted from 0.
void WriteShortPacks(const std::string& folder, int first = 0);

/// What stays from run to run: the folders and the desktop with its settings.
struct Installation {
  /// `first` as above.
  explicit Installation(int first = 0);

  /// Path of a file in the program's folder or among the user's data.
  std::string InProgram(const std::string& name) const { return folder / ("program/" + name); }
  std::string InData(const std::string& name) const { return folder / ("local/Bvc/" + name); }
  /// The settings of players of these names, the last of whom is playing. At most nine.
  void AddPlayers(const std::vector<std::string>& names);
  TempFolder folder;
  ScriptedDesktop desktop;
};

/// A program that has not started yet.
struct LoadedProgram {
  explicit LoadedProgram(Desktop& desktop) : main(global, desktop), form(main) {}

  Global global;
  Main main;
  FormNamen form;
};

/// One run of the program, started.
struct ProgramRun : LoadedProgram {
  explicit ProgramRun(Desktop& desktop);
  explicit ProgramRun(Installation& installation) : ProgramRun(installation.desktop) {}
};

/// A desktop with folders that others have made, size 6 and two players.
struct FolderDesktop : ScriptedDesktop {
  static constexpr int kSize = 6;
  static constexpr int kPlayers = 2;
  FolderDesktop(const std::string& program, const std::string& local);
};

/// What a field is clicked to for the puzzle to be solved: a tent, or grass.
int RightCode(const Main& main, int cell);
/// Clicks field after field to what is right, until the puzzle is over; a field whose click changes nothing
/// stays.
void ClickRightFields(const Main& main, const std::function<void(int cell)>& click);

}  // namespace bivouac
