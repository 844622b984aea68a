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

Installation::Installation() {
  std::filesystem::create_directory(folder / "program");
  std::filesystem::create_directory(folder / "local");
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    const std::string pack = BytesOf(BIVOUAC_SOURCE_DIR "/assets/packs/" + PackName(size));
    WriteBytes(InProgram(PackName(size)),
               pack.substr(0, std::size_t{kInstalledPuzzles} * RecordFile<PackRecord>::kBytes));
  }
  desktop.Program = folder / "program";
  desktop.LocalData.Path = folder / "local";
}

void Installation::AddPlayers(std::initializer_list<std::string> names) {
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

ProgramRun::ProgramRun(Installation& installation) : main(global, installation.desktop), form(main) {
  Form_Load(main, form);
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
  for (int cell = 0; cell < run.main.CellCount; ++cell) {
    if (run.main.Board[cell] == CELL_TREE) continue;
    const int end = run.main.Solution[cell] == CELL_TENT ? CELL_TENT : CELL_GRASS;
    while (run.main.Board[cell] != end) Grid_Click(run.main, cell);
  }
  if (!run.main.PuzzleOver) throw std::logic_error("the puzzle is not solved");
}

std::vector<std::string> PanelTexts(const Main& main) {
  std::vector<std::string> texts;
  for (const Panel& panel : main.StatusBar1) texts.push_back(panel.Text);
  return texts;
}

}  // namespace bivouac
