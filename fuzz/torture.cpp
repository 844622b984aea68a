// Kills, halts, starves and races the programs on packs and players' files, and looks after each round
// whether anything was lost. See fuzz/torture.
//
//   torture PACK_MAKER [ROUNDS [SEED]]
#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "fuzz/headless_game.h"
#include "generator/random.h"
#include "packs/alike.h"
#include "packs/puzzle_maker.h"
#include "storage/best_times.h"
#include "storage/navigation.h"
#include "storage/pack_files.h"
#include "storage/record_file.h"
#include "storage/saving.h"

namespace bivouac {
namespace {

namespace fs = std::filesystem;

constexpr int kSize = GameDesktop::kSize;
constexpr int kPlayers = GameDesktop::kPlayers;
constexpr uid_t kNobody = 65534;
constexpr std::uintmax_t kBytes = RecordFile<PackRecord>::kBytes;

/// What tells one puzzle from another: trees, tents and clues. Levels and best times may change.
std::string IdentityOf(const PackRecord& record) {
  std::string text;
  for (const auto* cells : {&record.TentDirs, &record.Layout}) {
    for (const std::int16_t cell : *cells) text += static_cast<char>('0' + cell);
  }
  for (const auto* clues : {&record.RowCounts, &record.ColCounts}) {
    for (const std::int16_t clue : *clues) text += static_cast<char>('0' + clue);
  }
  return text + static_cast<char>(SizeOf(record.LevelSize));
}

std::string BytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void WriteBytes(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

std::vector<PackRecord> MakePool(std::uint64_t seed, std::size_t count) {
  std::vector<PackRecord> pool;
  MakePuzzles({.Size = kSize, .Seed = seed, .Jobs = 1}, false, [&](const PackRecord& puzzle) {
    pool.push_back(puzzle);
    return pool.size() < count;
  });
  return pool;
}

void WritePack(const std::string& path, const std::vector<PackRecord>& records) {
  RecordFile<PackRecord> pack(path);
  long number = 0;
  for (const PackRecord& record : records) pack.Write(++number, record);
}

/// What a program says that it has done. It goes through a pipe, so that it outlives a kill.
struct Report {
  enum What { Saved, Timed } Did;
  int Number;  ///< Of the puzzle: in the pool for Saved, in the pack for Timed.
  int Player;
  int Seconds;
};

struct Program {
  pid_t Id = 0;
  std::string Name{};
  std::vector<PackRecord> Makes{};  ///< Puzzles of make and merge, in their order.
  bool Merges = false;
  bool Killed = false;
  int Status = 0;
  std::string Words{};  ///< From its standard error.
};

struct Totals {
  long Rounds = 0, Programs = 0, Kills = 0, Races = 0, Reports = 0, Halves = 0, Losses = 0;
};

class Torture {
 public:
  Torture(std::string packMaker, std::uint64_t seed)
      : packMaker_(std::move(packMaker)), seed_(seed), pool_(MakePool(1, 900)) {
    std::string name = (fs::temp_directory_path() / "bivouac-torture-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    top_ = name;
    fs::permissions(top_, fs::perms(0755));
    fs::create_directory(top_ / "program");
    for (int size = kMinSize; size <= kMaxSize; ++size) {
      std::vector<PackRecord> records(3);
      for (PackRecord& record : records) record.LevelSize = LevelSizeOf(1, size);
      WritePack((top_ / "program" / PackName(size)).string(), records);
    }
  }
  Torture(const Torture&) = delete;
  Torture& operator=(const Torture&) = delete;
  ~Torture() { fs::remove_all(top_); }

  void Round(long round);
  const Totals& Sums() const { return totals_; }

 private:
  enum class Scene { Makers, Rewriters, Games, FirstStarts, ReadOnly, FolderInPlace };

  int Below(int limit) { return random_.Below(limit); }
  bool Once(int inSoMany) { return Below(inSoMany) == 0; }
  std::string Pack() const { return (data_ / PackName(kSize)).string(); }

  void SetUp();
  template <class Body>
  void Fork(Program program, Body body);
  void RunTool(const std::string& name, std::vector<std::string> arguments,
               std::vector<PackRecord> makes = {});
  void RunMake();
  void RunMerge();
  void RunGame(int number);
  void KillSomeAndWait();
  void ReadReports();
  void Verify();
  void Lose(const std::string& what);

  std::string packMaker_;
  std::uint64_t seed_;
  Random random_{0};
  std::vector<PackRecord> pool_;
  fs::path top_, folder_, data_;

  // Of the round.
  Scene scene_ = Scene::Makers;
  long round_ = 0;
  std::vector<PackRecord> before_;
  std::vector<Program> programs_;
  std::vector<Report> reports_;
  std::array<int, 2> pipe_{};
  bool killed_ = false;
  bool timesAreKept_ = false;
  Totals totals_;
};

void Torture::Lose(const std::string& what) {
  ++totals_.Losses;
  std::string programs;
  for (const Program& program : programs_)
    programs += " " + program.Name + (program.Killed ? "(killed)" : "");
  std::printf("round %ld, seed %llu: %s [%s ]\n", round_, static_cast<unsigned long long>(seed_),
              what.c_str(), programs.c_str());
  std::fflush(stdout);
}

void Torture::SetUp() {
  scene_ = static_cast<Scene>(std::min(Below(14) / 3, 5));
  programs_.clear();
  reports_.clear();
  killed_ = timesAreKept_ = false;
  constexpr std::array<const char*, 3> kNames = {"plain", "with blanks", "two\nlines"};
  folder_ = top_ / kNames[static_cast<std::size_t>(Below(3))];
  data_ = folder_ / "Bvc";
  fs::create_directories(data_);
  before_.clear();
  if (scene_ == Scene::FirstStarts) return;
  before_.assign(pool_.begin(), pool_.begin() + 1 + Below(Once(4) ? 400 : 40));
  if (Once(2)) {
    for (PackRecord& record : before_) record.LevelSize = LevelSizeOf(0, kSize);
  }
  if (scene_ == Scene::FolderInPlace) {
    before_.clear();
    fs::create_directory(Pack());
  } else if (Once(3)) {
    WritePack((folder_ / "elsewhere.bvq").string(), before_);
    fs::create_symlink("../elsewhere.bvq", Pack());
  } else {
    WritePack(Pack(), before_);
  }
  // Files of somebody else, under names that come to mind.
  for (const char* ending : {".new", ".part", "~"}) WriteBytes(Pack() + ending, "mine");
  if (scene_ != Scene::ReadOnly || geteuid() != 0) return;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder_)) {
    if (!entry.is_symlink()) fs::permissions(entry, fs::perms(entry.is_directory() ? 0555 : 0666));
  }
}

/// Runs a body as a program of its own.
template <class Body>
void Torture::Fork(Program program, Body body) {
  std::fflush(nullptr);
  const std::string words = (top_ / ("words" + std::to_string(programs_.size()))).string();
  const bool starves = scene_ != Scene::FirstStarts && Once(6);
  const rlim_t limit = static_cast<rlim_t>(Below(static_cast<int>((before_.size() + 40) * kBytes)));
  program.Id = fork();
  if (program.Id == 0) {
    std::signal(SIGXFSZ, SIG_IGN);
    const int errors = open(words.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    dup2(errors, STDERR_FILENO);
    dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
    if (starves) {
      const rlimit most{limit, limit};
      setrlimit(RLIMIT_FSIZE, &most);
    }
    if (scene_ == Scene::ReadOnly && geteuid() == 0 && (setgid(kNobody) != 0 || setuid(kNobody) != 0))
      _exit(9);
    body();
    _exit(0);
  }
  programs_.push_back(std::move(program));
}

void Torture::RunTool(const std::string& name, std::vector<std::string> arguments,
                      std::vector<PackRecord> makes) {
  const bool merges = name == "merge";
  Fork({.Name = name, .Makes = std::move(makes), .Merges = merges}, [&] {
    std::vector<char*> argv = {packMaker_.data(), const_cast<char*>(name.c_str())};
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    execv(packMaker_.c_str(), argv.data());
    _exit(127);
  });
}

void Torture::RunMake() {
  const int seed = 10 + Below(1000);
  const int count = 1 + Below(40);
  RunTool("make",
          {"--size", std::to_string(kSize), "--count", std::to_string(count), "--seed", std::to_string(seed),
           "--jobs", "1", Pack()},
          MakePool(static_cast<std::uint64_t>(seed), static_cast<std::size_t>(count)));
}

void Torture::RunMerge() {
  const std::string other = (folder_ / ("other" + std::to_string(programs_.size()))).string();
  const auto first = pool_.begin() + Below(700);
  std::vector<PackRecord> puzzles(first, first + 1 + Below(100));
  WritePack(other, puzzles);
  RunTool("merge", {Pack(), other}, std::move(puzzles));
}

/// A game that saves new puzzles, as New does, and keeps times, each player those of puzzles of their own.
void Torture::RunGame(int number) {
  const std::uint64_t seed = random_.Next();
  const bool solves = timesAreKept_ && !before_.empty();
  Fork({.Name = "game"}, [&] {
    const auto tell = [&](Report report) {
      if (write(pipe_[1], &report, sizeof report) != sizeof report) _exit(8);
    };
    try {
      HeadlessGame game((top_ / "program").string(), folder_.string());
      Main& main = game.main;
      Random random(seed);
      for (int step = 0; step < 12; ++step) {
        game.desktop.Titles.clear();
        if (solves && random.Below(2) == 0) {
          const int puzzle = 1 + number + 4 * random.Below(static_cast<int>(before_.size()));
          if (puzzle > static_cast<int>(before_.size())) continue;
          game.global.CurrentPlayer = 1 + number % kPlayers;
          game.desktop.Answer = std::to_string(puzzle);
          cmdOpen_Click(main);
          if (!game.desktop.Titles.empty()) continue;
          main.Elapsed = 1000 - step;
          RecordTimes(main);
          const bool kept =
              std::count(game.desktop.Titles.begin(), game.desktop.Titles.end(), "File Error") == 0;
          if (kept) tell({Report::Timed, puzzle, game.global.CurrentPlayer, main.Elapsed});
        } else {
          const int fresh = 400 + number * 100 + step * 5 + random.Below(5);
          game.global.PuzzleRec = pool_[static_cast<std::size_t>(fresh)];
          main.Level = LevelOf(game.global.PuzzleRec.LevelSize);
          Save_New(main);
          if (game.desktop.Titles.empty()) tell({Report::Saved, fresh, 0, 0});
        }
      }
    } catch (const RunTimeError& error) {
      std::fprintf(stderr, "error %d: %s\n", static_cast<int>(error.Number()), error.what());
      _exit(1);
    }
  });
}

void Torture::KillSomeAndWait() {
  constexpr int kHalted = 200'000;  // Longer than a game waits.
  struct Signal {
    pid_t Id;
    int Number;
  };
  const auto start = std::chrono::steady_clock::now();
  std::multimap<int, Signal> signals;
  if (!Once(4)) {
    for (const Program& program : programs_) {
      // Most of what a program does, it does in its first milliseconds.
      const int microseconds = Below(1 << (9 + Below(8)));
      if (Once(2)) {
        signals.emplace(microseconds, Signal{program.Id, SIGKILL});
      } else if (program.Name != "game" && Once(8)) {
        signals.emplace(microseconds, Signal{program.Id, SIGSTOP});
        signals.emplace(microseconds + kHalted, Signal{program.Id, SIGCONT});
      }
    }
  }
  for (const auto& [microseconds, signal] : signals) {
    std::this_thread::sleep_until(start + std::chrono::microseconds(microseconds));
    kill(signal.Id, signal.Number);
  }
  for (std::size_t i = 0; i < programs_.size(); ++i) {
    Program& program = programs_[i];
    int status = 0;
    waitpid(program.Id, &status, 0);
    program.Killed = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    program.Status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    program.Words = BytesOf((top_ / ("words" + std::to_string(i))).string());
    killed_ = killed_ || program.Killed;
    totals_.Kills += program.Killed;
    if (!program.Killed && program.Status < 0)
      Lose(program.Name + " ended by signal " + std::to_string(WTERMSIG(status)));
  }
}

void Torture::ReadReports() {
  close(pipe_[1]);
  for (Report report{}; read(pipe_[0], &report, sizeof report) == sizeof report;) reports_.push_back(report);
  close(pipe_[0]);
  totals_.Reports += static_cast<long>(reports_.size());
}

/// How many puzzles a maker says that it added: "3 puzzles added", or "...; added before: 3".
std::size_t AddedBy(const std::string& words) {
  const std::size_t before = words.rfind("added before: ");
  if (before != std::string::npos) return std::strtoul(words.c_str() + before + 14, nullptr, 10);
  return words.find(" added to ") != std::string::npos ? std::strtoul(words.c_str(), nullptr, 10) : 0;
}

void Torture::Verify() {
  if (scene_ == Scene::ReadOnly) {
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder_)) {
      if (entry.is_directory() && !entry.is_symlink()) fs::permissions(entry, fs::perms(0755));
    }
  }
  std::vector<PackRecord> after;
  if (fs::is_regular_file(Pack())) after = RecordFile<PackRecord>(Pack()).ReadAll();
  std::map<std::string, int> present;
  for (const PackRecord& record : after) ++present[IdentityOf(record)];
  const auto take = [&](const PackRecord& record, const char* whose) {
    if (--present[IdentityOf(record)] < 0) Lose(std::string("a puzzle is missing: ") + whose);
  };
  for (const PackRecord& record : before_) take(record, "of the pack before");
  for (const Report& report : reports_) {
    if (report.Did == Report::Saved) take(pool_[static_cast<std::size_t>(report.Number)], "saved by a game");
  }
  std::set<std::string> views;
  for (const PackRecord& record : after) views.insert(ViewedFromAnySide(record));
  for (const Program& program : programs_) {
    if (program.Killed || program.Makes.empty()) continue;
    const std::size_t added = AddedBy(program.Words);
    totals_.Reports += static_cast<long>(added);
    if (program.Status == 0 && !program.Merges && added != program.Makes.size())
      Lose("a maker that says less");
    for (std::size_t i = 0; i < program.Makes.size(); ++i) {
      if (!program.Merges && i < added) take(program.Makes[i], "reported by make");
      if (program.Merges && program.Status == 0 && views.count(ViewedFromAnySide(program.Makes[i])) == 0)
        Lose("a puzzle is missing: merged");
    }
  }
  // The best that each player said to have kept, in the player's file and in the pack. Each puzzle has one
  // player.
  std::map<std::pair<int, int>, int> best;
  for (const Report& report : reports_) {
    if (report.Did != Report::Timed) continue;
    int& seconds = best.try_emplace({report.Player, report.Number}, report.Seconds).first->second;
    seconds = std::min(seconds, report.Seconds);
  }
  Global global;
  global.DataDir = (data_ / "").string();
  for (const auto& [key, seconds] : best) {
    const auto [player, number] = key;
    int own = 0;
    for (const PersonalRecord& record : RecordFile<PersonalRecord>(PersonalPath(global, player)).ReadAll()) {
      const int time = record.PersonalMinutes * 60 + record.PersonalSeconds;
      if (record.PersonalPuzzle == number && (own == 0 || time < own)) own = time;
    }
    if (own == 0 || own > seconds) Lose("an own time is missing");
    const PackRecord& record = after[static_cast<std::size_t>(number) - 1];
    if (record.BestMinutes * 60 + record.BestSeconds > seconds || record.BestPlayer == 0)
      Lose("a best time is missing");
  }
  if (scene_ == Scene::Rewriters) {
    const bool refused = std::none_of(programs_.begin(), programs_.end(), [](const Program& program) {
      return program.Name == "rate" && program.Status == 0 && !program.Killed;
    });
    if (!refused && after.size() == before_.size() &&
        std::any_of(after.begin(), after.end(),
                    [](const PackRecord& record) { return LevelOf(record.LevelSize) == 0; }))
      Lose("a level is missing");
  }
  for (const fs::directory_entry& entry : fs::directory_iterator(data_)) {
    const std::string name = entry.path().filename().string();
    const bool known = name.starts_with("BVPack") || name.starts_with("PLBest");
    if (!known && !(killed_ && name.starts_with(".bivouac-"))) Lose("left lying about: " + name);
  }
  if (scene_ != Scene::FirstStarts) {
    for (const char* ending : {".new", ".part", "~"}) {
      if (BytesOf(Pack() + ending) != "mine") Lose(std::string("somebody's file is gone: ") + ending);
    }
  }
  try {
    // Half a record, which a program had not yet reported when it was killed, goes at the next start.
    const bool half = fs::is_regular_file(Pack()) && fs::file_size(Pack()) % kBytes != 0;
    totals_.Halves += half;
    if (half && !killed_) Lose("half a record");
    const HeadlessGame next((top_ / "program").string(), folder_.string());
    for (int size = kMinSize; size <= kMaxSize; ++size) {
      const int count = next.main.PuzzleCount[size - kMinSize];
      const std::string path = (data_ / PackName(size)).string();
      if (size != kSize && BytesOf(path) != BytesOf((top_ / "program" / PackName(size)).string()))
        Lose("a copy is cut");
      if (size == kSize && scene_ != Scene::FolderInPlace && count < static_cast<int>(before_.size()))
        Lose("the next start counts less");
    }
    if (fs::is_regular_file(Pack()) && fs::file_size(Pack()) % kBytes != 0) Lose("half a record stays");
  } catch (const RunTimeError& error) {
    Lose(std::string("the next start ends: ") + error.what());
  }
}

void Torture::Round(long round) {
  round_ = round;
  random_ = Random(Random::Mix(seed_) + static_cast<std::uint64_t>(round));
  SetUp();
  if (pipe(pipe_.data()) != 0) throw std::runtime_error("no pipe");
  const int programs = 2 + Below(3);
  timesAreKept_ = scene_ == Scene::Games;
  for (int number = 0; number < programs; ++number) {
    const int choice = Below(3);
    switch (scene_) {
      case Scene::Makers:
        choice == 0 ? RunMake() : choice == 1 ? RunMerge() : RunGame(number);
        break;
      case Scene::Rewriters:
        choice == 0   ? RunTool("sort", {Pack()})
        : choice == 1 ? RunTool("rate", {"--write", Pack()})
        : Once(2)     ? RunMake()
                      : RunGame(number);
        break;
      case Scene::Games:
        choice == 0 ? RunTool("rate", {"--write", Pack()}) : RunGame(number);
        break;
      case Scene::FirstStarts:
        RunGame(number);
        break;
      case Scene::ReadOnly:
      case Scene::FolderInPlace:
        choice == 0   ? RunMake()
        : choice == 1 ? RunGame(number)
        : Once(2)     ? RunTool("sort", {Pack()})
                      : RunMerge();
        break;
    }
  }
  KillSomeAndWait();
  ReadReports();
  ++totals_.Rounds;
  totals_.Programs += static_cast<long>(programs_.size());
  totals_.Races += programs_.size() > 1;
  Verify();
  fs::remove_all(folder_);
}

int Run(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "torture PACK_MAKER [ROUNDS [SEED]]\n");
    return 2;
  }
  const long rounds = argc > 2 ? std::atol(argv[2]) : 100;
  Torture torture(fs::absolute(argv[1]).string(), argc > 3 ? std::strtoull(argv[3], nullptr, 10) : 1);
  for (long round = 1; round <= rounds; ++round) torture.Round(round);
  const Totals& sums = torture.Sums();
  std::printf(
      "%ld rounds, %ld programs, %ld kills, %ld races, %ld reports held against the files, "
      "%ld halves of records cut, %ld losses\n",
      sums.Rounds, sums.Programs, sums.Kills, sums.Races, sums.Reports, sums.Halves, sums.Losses);
  return sums.Losses == 0 ? 0 : 1;
}

}  // namespace
}  // namespace bivouac

int main(int argc, char** argv) {
  try {
    return bivouac::Run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "torture: %s\n", error.what());
    return 2;
  }
}
