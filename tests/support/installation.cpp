#include "tests/support/installation.h"

#include <filesystem>

#include "game/text.h"
#include "storage/pack_files.h"
#include "storage/record_file.h"
#include "storage/start_up.h"

namespace bivouac {

void WriteShortPacks(const std::string& folder, int first) {
  constexpr std::size_t kBytes = RecordFile<PackRecord>::kBytes;
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    WriteBytes(
        folder + "/" + PackName(size),
        ShippedPack(size).substr(static_cast<std::size_t>(first) * kBytes, kInstalledPuzzles * kBytes));
  }
}

Installation::Installation(int first) {
  std::filesystem::create_directory(folder / "program");
  std::filesystem::create_directory(folder / "local");
  WriteShortPacks(folder / "program", first);
  desktop.Program = folder / "program";
  desktop.LocalData.Path = folder / "local";
}

void Installation::AddPlayers(const std::vector<std::string>& names) {
  int player = 0;
  for (const std::string& name : names) {
    desktop.Settings[{"Players", "Player" + TwoDigits(++player)}] = FixedName(name);
  }
  desktop.Settings[{"Players", "Count"}] = std::to_string(player);
  desktop.Settings[{"Players", "Last_Player"}] = std::to_string(player);
}

ProgramRun::ProgramRun(Desktop& desktop) : LoadedProgram(desktop) {
  Form_Load(main, form);
}

FolderDesktop::FolderDesktop(const std::string& program, const std::string& local) {
  Program = program;
  LocalData.Path = local;
  Settings = {{{"Options", "Size"}, std::to_string(kSize)}, {{"Players", "Count"}, std::to_string(kPlayers)}};
}

int RightCode(const Main& main, int cell) {
  return main.Solution[cell] == CELL_TENT ? CELL_TENT : CELL_GRASS;
}

void ClickRightFields(const Main& main, const std::function<void(int cell)>& click) {
  for (int cell = 0; cell < main.CellCount; ++cell) {
    if (main.Board[cell] == CELL_TREE) continue;
    for (int before = -1; !main.PuzzleOver && main.Board[cell] != RightCode(main, cell);) {
      if (main.StepCount == before) break;
      before = main.StepCount;
      click(cell);
    }
  }
}

}  // namespace bivouac
