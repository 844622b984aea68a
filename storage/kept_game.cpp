#include "storage/kept_game.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "game/clock.h"
#include "game/puzzle_line.h"
#include "game/text.h"
#include "storage/pack_files.h"
#include "storage/platform_files.h"
#include "storage/record_file.h"
#include "storage/replacement.h"
#include "storage/saving.h"

namespace bivouac {
namespace {

constexpr int kMostClock = 999'999;  // Seconds: prices may lead a paused clock beyond a day.
constexpr int kMostSteps = 32767;
constexpr std::uintmax_t kLongest = 300'000;  // Bytes; more than the longest log needs.

constexpr std::pair<char, TextColour> kColourCodes[] = {
    {'0', TextColour::WindowText}, {'1', TextColour::Green}, {'2', TextColour::Red}};

std::string FirstOfName(int size) {
  return "Kept" + TwoDigits(size) + "-";
}
std::string LastOfName(int player) {
  return std::string("-").append(TwoDigits(player)).append(".txt");
}

std::string KeptGamePath(const Main& main, int number) {
  return main.global.DataDir + FirstOfName(main.BoardSize) + std::to_string(number) +
         LastOfName(main.global.CurrentPlayer);
}

std::string ColoursText(const FixedArray<Label, kMaxSize>& labels, int size) {
  std::string text;
  for (int line = 0; line < size; ++line) {
    for (const auto& [code, colour] : kColourCodes) {
      if (labels[line].ForeColor == colour) text += code;
    }
  }
  return text;
}

std::string TextOf(const Main& main) {
  std::ostringstream text;
  text << "puzzle " << PuzzleLineOf(main.global.PuzzleRec) << "\nclock "
       << std::clamp(main.Elapsed, 0, kMostClock) << "\nstate " << (main.Paused ? "paused" : "playing")
       << "\nsteps " << main.StepCount << "\nlog";
  for (int step = 1; step <= main.MoveLogTop; ++step) text << ' ' << main.MoveLog[step];
  text << "\nrows " << ColoursText(main.RowCnt, main.BoardSize) << "\ncolumns "
       << ColoursText(main.ColCnt, main.BoardSize) << '\n';
  return text.str();
}

[[noreturn]] void TellDamage(const std::string& what) {
  throw InputError("The kept game is damaged: " + what + ".");
}

/// The rest of the next line, which begins with that word.
std::string TakeLine(std::istream& lines, const std::string& word) {
  std::string line;
  if (!std::getline(lines, line) || !(line + ' ').starts_with(word + ' '))
    TellDamage("there is no line \"" + word + "\"");
  return line.size() > word.size() ? line.substr(word.size() + 1) : std::string();
}

int NumberIn(std::string_view text, int highest, const char* what) {
  int number = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < 0 || number > highest)
    TellDamage(std::string(what) + " is not 0 to " + std::to_string(highest));
  return number;
}

std::vector<int> LogOf(const std::string& text, const PackRecord& puzzle) {
  const int size = SizeOf(puzzle.LevelSize);
  std::vector<int> log;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    log.push_back(NumberIn(word, size * size - 1, "a cell of the log"));
    if (puzzle.Layout[log.back()] == CELL_TREE) TellDamage("a cell of the log is a tree");
    if (log.size() > static_cast<std::size_t>(kMostSteps)) TellDamage("the log is too long");
  }
  return log;
}

std::vector<TextColour> ColoursOf(const std::string& text, int size) {
  std::vector<TextColour> colours;
  for (const char sign : text) {
    for (const auto& [code, colour] : kColourCodes) {
      if (sign == code) colours.push_back(colour);
    }
  }
  if (text.size() != static_cast<std::size_t>(size) || colours.size() != text.size())
    TellDamage("the colours of the clues are not " + std::to_string(size) + " digits from 0 to 2");
  return colours;
}

KeptGame GameOf(std::istream& lines) {
  KeptGame game;
  const std::string puzzle = TakeLine(lines, "puzzle");
  try {
    game.Puzzle = ReadPuzzleLine(puzzle);
  } catch (const InputError& error) {
    TellDamage(error.what());
  }
  const int size = SizeOf(game.Puzzle.LevelSize);
  game.Clock = NumberIn(TakeLine(lines, "clock"), kMostClock, "the clock");
  const std::string state = TakeLine(lines, "state");
  game.Paused = state == "paused";
  if (!game.Paused && state != "playing") TellDamage("the state is neither \"playing\" nor \"paused\"");
  const int steps = NumberIn(TakeLine(lines, "steps"), kMostSteps, "the number of steps");
  game.Log = LogOf(TakeLine(lines, "log"), game.Puzzle);
  game.Steps = steps;
  if (static_cast<std::size_t>(steps) > game.Log.size()) TellDamage("there are more steps than the log has");
  game.RowColours = ColoursOf(TakeLine(lines, "rows"), size);
  game.ColColours = ColoursOf(TakeLine(lines, "columns"), size);
  return game;
}

KeptGame GameIn(const std::string& path) {
  std::error_code error;
  const std::uintmax_t length = std::filesystem::file_size(path, error);
  if (error) TellDamage("the file cannot be read");
  if (length > kLongest) TellDamage("the file is too long");
  std::ifstream file(path, std::ios::binary);
  if (!file) TellDamage("the file cannot be read");
  return GameOf(file);
}

void Refuse(Main& main, const std::string& text) {
  main.desktop.Show(MessageBox{.Title = "Keep Game", .Text = text, .Symbol = BoxSymbol::Warning});
}

}  // namespace

std::optional<std::string> KeepGame(Main& main) {
  if (!main.Paused) Timer3_Timer(main);  // The clock as it is now.
  const std::string text = TextOf(main);
  const std::string packPath = PackPath(main.global, main.BoardSize);
  bool stands = false;
  const bool done = IgnoringFileErrors([&] {
    if (!FileExists(packPath)) return;
    RecordFile<PackRecord> pack(packPath, Access::Write);
    const Turn turn(pack);
    PackRecord present;
    if (main.PuzzleNo <= pack.Counts().Whole) pack.Read(main.PuzzleNo, present);
    stands = IsSamePuzzle(present, main.global.PuzzleRec);
    if (!stands) return;
    Replacement file(KeptGamePath(main, main.PuzzleNo));
    file.Append({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    file.Sync();
    file.TakePlace();
  });
  if (!done) {
    ShowFileError(main, "Error writing the kept game to file!");
    return {};
  }
  if (!stands) {
    Refuse(main, "This puzzle does not stand in the pack, so its game cannot be kept.");
    return {};
  }
  std::istringstream lines(text);
  return "Game " + KeptText(GameOf(lines)) + ". F2 leads back to it.";
}

std::map<int, std::optional<KeptGame>> FindKeptGames(const Main& main) {
  std::map<int, std::optional<KeptGame>> games;
  const std::string first = FirstOfName(main.BoardSize);
  const std::string last = LastOfName(main.global.CurrentPlayer);
  std::error_code error;
  for (std::filesystem::directory_iterator entry(main.global.DataDir, error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (name.size() <= first.size() + last.size() || !name.starts_with(first) || !name.ends_with(last))
      continue;
    const std::string_view digits =
        std::string_view(name).substr(first.size(), name.size() - first.size() - last.size());
    int number = 0;
    const auto [stop, bad] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (bad != std::errc() || stop != digits.data() + digits.size() || number < 1) continue;
    try {
      games[number] = GameIn(entry->path().string());
    } catch (const InputError&) {
      games[number] = std::nullopt;
    }
  }
  return games;
}

std::string KeptText(const KeptGame& game) {
  return "kept at " + FormatClock(game.Clock) + " with " + Counted(game.Steps, "step");
}

KeptGame ReadKeptGame(const Main& main, int number) {
  KeptGame game = GameIn(KeptGamePath(main, number));
  PackRecord present;
  IgnoringFileErrors(
      [&] { RecordFile<PackRecord>(PackPath(main.global, main.BoardSize)).Read(number, present); });
  if (!IsSamePuzzle(present, game.Puzzle))
    throw InputError("The pack has another puzzle under the number " + std::to_string(number) +
                     " by now: the kept game cannot go on.");
  game.Puzzle = present;
  return game;
}

void DropKeptGame(const Main& main) {
  const std::string path = KeptGamePath(main, main.PuzzleNo);
  IgnoringFileErrors([&] {
    if (FileExists(path)) DeleteWholeFile(path);
  });
}

}  // namespace bivouac
