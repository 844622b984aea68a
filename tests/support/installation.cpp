#include "tests/support/installation.h"

#include <array>
#include <filesystem>
#include <stdexcept>

#include "game/clock.h"
#include "game/moves.h"
#include "game/text.h"
#include "storage/navigation.h"
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

std::vector<std::string> Installation::TakeBoxes() {
  constexpr std::array<const char*, 5> kSymbols = {"", "|Information", "|Question", "|Warning", "|Error"};
  std::vector<std::string> texts;
  for (const MessageBox& box : desktop.Boxes) {
    texts.push_back(box.Title + "|" + box.Text + kSymbols.at(static_cast<std::size_t>(box.Symbol)));
  }
  desktop.Boxes.clear();
  return texts;
}

ProgramRun::ProgramRun(Installation& installation) : LoadedProgram(installation.desktop) {
  Form_Load(main, form);
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

void OpenPuzzle(ProgramRun& run, int number) {
  static_cast<ScriptedDesktop&>(run.main.desktop).Inputs = {std::to_string(number)};
  cmdOpen_Click(run.main);
}

void SolvePuzzle(ProgramRun& run, int number, int seconds) {
  auto& desktop = static_cast<ScriptedDesktop&>(run.main.desktop);
  desktop.Now = "12:00:00";
  OpenPuzzle(run, number);
  desktop.Now = "12:" + FormatClock(seconds);
  Timer3_Timer(run.main);
  ClickRightFields(run.main, [&](int cell) { Grid_Click(run.main, cell); });
  if (!run.main.PuzzleOver) throw std::logic_error("the puzzle is not solved");
}

std::vector<std::string> PanelTexts(const Main& main) {
  std::vector<std::string> texts;
  for (const Panel& panel : main.StatusBar1) texts.push_back(panel.Text);
  return texts;
}

}  // namespace bivouac
