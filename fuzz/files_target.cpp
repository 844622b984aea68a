// Every file and text that the programs read: bytes become a pack, a player's file, settings, positions on
// standard input, or answers to boxes. Nothing may come of them but the errors that are named here.
#include <filesystem>
#include <sstream>
#include <string>

#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "game/layout.h"
#include "packs/pack_access.h"
#include "storage/best_times.h"
#include "storage/navigation.h"
#include "storage/pack_files.h"
#include "storage/record_file.h"
#include "tests/support/installation.h"
#include "tools/command_line.h"

namespace bivouac {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBytes = RecordFile<PackRecord>::kBytes;
constexpr int kLargestProved = 8;  // Larger boards of nonsense may take the proof for ever.

Installation& ThePlace() {
  static Installation place;
  return place;
}

/// The packs as installed, no player's file, two players, and size 6. Boxes are answered by bytes; by nothing
/// at last: one that finds no number in the text comes back.
void Refresh(Bytes& bytes) {
  Installation& place = ThePlace();
  fs::remove_all(place.InData(""));
  fs::create_directories(place.InData(""));
  for (int size = kMinSize; size <= kMaxSize; ++size)
    fs::copy_file(place.InProgram(PackName(size)), place.InData(PackName(size)));
  place.desktop.Settings.clear();
  place.AddPlayers({"Ann", "Ben"});
  place.desktop.Settings[{"Options", "Size"}] = std::to_string(kMinSize);
  place.desktop.AnswerBox = [](const MessageBox&) { return BoxAnswer::Ok; };
  place.desktop.AnswerInput = [&](const InputBox&) {
    return bytes.AtEnd() ? std::string() : bytes.Text(bytes.Below(12));
  };
}

/// Runs a step. File errors and indexes that a damaged file leads to may end it.
template <class Step>
void Allowing(Step step) {
  CountEvent();
  try {
    step();
  } catch (const InputError&) {
  } catch (const RunTimeError& error) {
    const bool named = error.IsFileError() || error.Number() == ErrorNumber::IndexOutsideArray ||
                       error.Number() == ErrorNumber::Overflow;
    if (!named) Fault(error.what());
  }
}

/// A pack of real records, hurt in some places, sometimes cut, sometimes nothing but bytes.
std::string StrangePack(Bytes& bytes, int size) {
  if (bytes.Once(8)) return bytes.Text(4 * static_cast<int>(kBytes));
  std::string pack = BytesOf(ThePlace().InProgram(PackName(size)));
  for (int hurts = bytes.Below(40); hurts > 0; --hurts) {
    // Half of them where clues, level, size and times stand.
    const int field = bytes.Once(2) ? 1296 / 2 + bytes.Below(40) : bytes.Below(1376 / 2);
    const std::size_t at =
        static_cast<std::size_t>(bytes.Below(3)) * kBytes + 2 * static_cast<std::size_t>(field);
    pack[at] = static_cast<char>(bytes.Once(2) ? bytes.Below(8) : bytes.Next());
    if (bytes.Once(8)) pack[at + 1] = static_cast<char>(bytes.Next());
  }
  if (bytes.Once(6)) pack.resize(static_cast<std::size_t>(bytes.Below(static_cast<int>(pack.size()))));
  return pack;
}

void PlayGameOn(Bytes& bytes, int size) {
  Allowing([&] {
    ProgramRun run(ThePlace());
    Main& main = run.main;
    run.global.CurrentPlayer = bytes.Below(3);
    main.BoardSize = size;
    SizeLayout(main);
    for (int turn = 0; turn < 4; ++turn) {
      cmdOpen_Click(main);
      if (bytes.Once(2) && main.PuzzleNo < main.PuzzleCount[size - kMinSize]) cmdNext_Click(main);
      main.Elapsed = bytes.Below(60000);
      if (run.global.CurrentPlayer > 0 && main.PuzzleNo > 0) RecordTimes(main);
      if (bytes.Once(6)) cmdResetTime_Click(main);
    }
  });
}

void UsePack(Bytes& bytes) {
  const int size = bytes.Once(2) ? kMinSize + bytes.Below(3) : kMinSize + bytes.Below(kSizes);
  const std::string path = ThePlace().InData(PackName(size));
  WriteBytes(path, StrangePack(bytes, size));
  std::istringstream in;
  std::ostringstream out, err;
  Terminal terminal{.In = in, .Out = out, .Err = err};
  const auto run = [&](const std::vector<std::string>& arguments) {
    Allowing([&] { RunCommand(arguments, terminal); });
  };
  run({"list", path});
  run({"rate", "--steps", path});
  for (const char* number : {"1", "2", "3"}) {
    run({"show", "--solution", path, number});
    std::string board;
    for (int cell = bytes.Below(2) * size * size; cell > 0; --cell)
      board += static_cast<char>('0' + bytes.Below(4));
    board.empty() ? run({"hint", path, number}) : run({"hint", path, number, "--board", board});
  }
  if (size <= kLargestProved) {
    run({"prove", "--tsv", path});
    run({"check", path});
  }
  PlayGameOn(bytes, size);
  run({"rate", "--write", path});
  run({"sort", path});
  const std::string other = ThePlace().folder / "other";
  fs::remove(other);
  run({"merge", other, path});
}

void UsePlayersFile(Bytes& bytes) {
  const int size = kMinSize + bytes.Below(3);
  WriteBytes(ThePlace().InData("PLBest01.bvq"), bytes.Text(8 * bytes.Below(20) + bytes.Below(8)));
  PlayGameOn(bytes, size);
}

void UseSettings(Bytes& bytes) {
  ThePlace().AddPlayers({"Ann", "Ben", "Cem", "Dan", "Eva", "Fay", "Gil", "Hal", "Ida"});
  ThePlace().desktop.Settings[{"Options", "Sounds"}] = "True";
  for (auto& [name, value] : ThePlace().desktop.Settings) {
    if (bytes.Once(3)) continue;
    // Each player has a file that the start opens: thousands of them only take long.
    const int limit = name.second == "Count" ? 300 : 40000;
    value = bytes.Once(2) ? std::to_string(bytes.Below(limit) - 100) : bytes.Text(bytes.Below(20));
  }
  CountEvent();
  try {
    ProgramRun run(ThePlace());
  } catch (const RunTimeError& error) {
    if (std::string(error.what()).find("Change it in /settings") == std::string::npos) Fault(error.what());
  }
}

void UseStandardInput(Bytes& bytes) {
  std::string lines;
  for (int count = 1 + bytes.Below(3); count > 0; --count) {
    // A line in the right form, but for what the bytes change.
    const int size = bytes.Once(8) ? bytes.Below(30) : kMinSize + bytes.Below(kSizes);
    lines += std::to_string(size);
    for (int clues = 0; clues < 2; ++clues) {
      for (int i = 0; i < size; ++i) {
        lines += i == 0 ? '\t' : ',';
        lines += std::to_string(bytes.Below(5));
      }
    }
    for (int board = 0; board < 2; ++board) {
      lines += '\t';
      for (int cell = 0; cell < size * size; ++cell) lines += static_cast<char>('0' + bytes.Below(4));
    }
    if (bytes.Once(4))
      lines.insert(static_cast<std::size_t>(bytes.Below(static_cast<int>(lines.size()))), bytes.Text(6));
    lines += '\n';
  }
  std::istringstream in(bytes.Once(8) ? bytes.Text(2000) : lines);
  std::ostringstream out, err;
  Terminal terminal{.In = in, .Out = out, .Err = err};
  Allowing([&] { RunCommand({"hint", "-", "--tsv"}, terminal); });
}

void UseAnswers(Bytes& bytes) {
  ProgramRun run(ThePlace());
  Main& main = run.main;
  while (!bytes.AtEnd()) {
    const int size = main.BoardSize;
    if (bytes.Once(2)) {
      CountEvent();
      cmdOpen_Click(main);
      if (main.PuzzleNo > 3) Fault("a puzzle that there is not");
    } else {
      Allowing([&] { cmdOptions_Click(main); });
      if (main.BoardSize < kMinSize || main.BoardSize > 20) Fault("a size that the box does not let through");
      // 19 and 20 end the program.
      if (main.BoardSize > kMaxSize) main.BoardSize = size;
    }
  }
}

}  // namespace
}  // namespace bivouac

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace bivouac;
  Bytes bytes(data, size);
  Refresh(bytes);
  switch (bytes.Below(6)) {
    case 0:
    case 1:
      UsePack(bytes);
      break;
    case 2:
      UsePlayersFile(bytes);
      break;
    case 3:
      UseSettings(bytes);
      break;
    case 4:
      UseStandardInput(bytes);
      break;
    default:
      UseAnswers(bytes);
  }
  return 0;
}
