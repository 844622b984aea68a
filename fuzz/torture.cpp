// Kills, halts, starves and races the programs on packs, players' files and the list of players, and looks
// after each round whether anything was lost. See fuzz/torture.
//
//   torture PACK_MAKER [ROUNDS [SEED]]
#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "game/text.h"
#include "generator/random.h"
#include "packs/alike.h"
#include "packs/puzzle_maker.h"
#include "storage/best_times.h"
#include "storage/navigation.h"
#include "storage/pack_files.h"
#include "storage/record_file.h"
#include "storage/saving.h"
#include "tests/support/files.h"
#include "tests/support/installation.h"

namespace bivouac {
namespace {

namespace fs = std::filesystem;

constexpr int kSize = FolderDesktop::kSize;
constexpr uid_t kNobody = 65534;
constexpr std::uintmax_t kBytes = RecordFile<PackRecord>::kBytes;
constexpr const char* kBook = "book.pdf";

/// What tells one puzzle from another: trees, tents and clues. Levels and best times may change.
std::string IdentityOf(PackRecord record) {
  record.LevelSize = static_cast<std::int16_t>(SizeOf(record.LevelSize));
  record.BestMinutes = record.BestSeconds = record.BestPlayer = 0;
  const std::vector<std::uint8_t> bytes = BytesOf<PackRecord>(std::span(&record, 1));
  return {bytes.begin(), bytes.end()};
}

std::vector<PackRecord> MakePool(std::uint64_t seed, std::size_t count) {
  std::vector<PackRecord> pool;
  MakePuzzles({.Size = kSize, .Seed = seed, .Jobs = 1}, false, [&](const PackRecord& puzzle) {
    pool.push_back(puzzle);
    return pool.size() < count;
  });
  return pool;
}

/// What a program says that it has done. It goes through a pipe, so that it outlives a kill.
struct Report {
  enum What { Saved, Best, Own, Added } Did;
  int Puzzle;  ///< In the pool; for Added the program and its step, which are the name.
  int Number;  ///< Of the puzzle in the pack, or of the player.
  int Player;
  int Seconds;
};

struct Program {
  std::string Name{};
  std::vector<PackRecord> Makes{};  ///< Puzzles of make and merge, in their order.
  uid_t User = 0;
  pid_t Id = 0;
  bool Killed = false;
  int Status = 0;
  std::string Words{};  ///< From its standard error.
};

struct Totals {
  long Rounds = 0, Programs = 0, Kills = 0, Reports = 0, Unfinished = 0, Losses = 0;
};

/// A desktop whose settings are files of a folder, for games beside one another.
class SharedDesktop : public FolderDesktop {
 public:
  SharedDesktop(const std::string& program, const std::string& local)
      : FolderDesktop(program, local), settings_(local + "/settings") {}
  std::string GetSetting(std::string_view section, std::string_view key, std::string_view fallback) override {
    const std::string path = PathOf(key);
    return fs::exists(path) ? BytesOf(path) : FolderDesktop::GetSetting(section, key, fallback);
  }
  bool SaveSetting(std::string_view, std::string_view key, std::string_view value) override {
    fs::create_directories(settings_);
    const std::string fresh = PathOf(key) + std::to_string(getpid());
    WriteBytes(fresh, std::string(value));
    fs::rename(fresh, PathOf(key));
    return true;
  }

 private:
  std::string PathOf(std::string_view key) const { return settings_ + "/" + std::string(key); }
  std::string settings_;
};

/// How many puzzles a maker says that it added: "3 puzzles added", or "...; added before: 3".
std::size_t AddedBy(const std::string& words) {
  const std::size_t before = words.rfind("added before: ");
  if (before != std::string::npos) return std::strtoul(words.c_str() + before + 14, nullptr, 10);
  return words.find(" added to ") != std::string::npos ? std::strtoul(words.c_str(), nullptr, 10) : 0;
}

class Torture {
 public:
  Torture(std::string packMaker, std::uint64_t seed)
      : packMaker_(std::move(packMaker)), seed_(seed), pool_(MakePool(1, 900)) {
    fs::create_directory(top_ / "program");
    WriteShortPacks(top_ / "program");
    for (const PackRecord& puzzle : pool_) places_.emplace(IdentityOf(puzzle), places_.size());
  }

  void Round(long round) {
    round_ = round;
    random_ = Random(Random::Mix(seed_) + static_cast<std::uint64_t>(round));
    SetUp();
    if (pipe(pipe_.data()) != 0) throw std::runtime_error("no pipe");
    const int programs = 2 + Below(3);
    for (int number = 0; number < programs; ++number) RunOneOf(number);
    KillSomeAndWait();
    ReadReports();
    ++totals_.Rounds;
    totals_.Programs += programs;
    Verify();
    fs::remove_all(folder_);
  }

  const Totals& Sums() const { return totals_; }

 private:
  enum class Scene {
    Makers,
    Rewriters,
    Games,
    FirstStarts,
    Players,
    Drawing,
    TwoUsers,
    ReadOnly,
    FolderInPlace
  };

  int Below(int limit) { return random_.Below(limit); }
  bool Once(int inSoMany) { return Below(inSoMany) == 0; }
  std::string Pack() const { return (data_ / PackName(kSize)).string(); }
  bool IsOneOf(std::initializer_list<Scene> scenes) const {
    return std::find(scenes.begin(), scenes.end(), scene_) != scenes.end();
  }

  void Lose(const std::string& what) {
    ++totals_.Losses;
    std::string programs;
    for (const Program& program : programs_)
      programs += " " + program.Name + (program.Killed ? "(killed)" : "");
    std::printf("round %ld, seed %llu: %s [%s ]\n", round_, static_cast<unsigned long long>(seed_),
                what.c_str(), programs.c_str());
    std::fflush(stdout);
  }

  void SetUp() {
    constexpr std::array kScenes = {Scene::Makers,       Scene::Makers,  Scene::Rewriters, Scene::Rewriters,
                                    Scene::Games,        Scene::Games,   Scene::Games,     Scene::FirstStarts,
                                    Scene::Players,      Scene::Drawing, Scene::TwoUsers,  Scene::ReadOnly,
                                    Scene::FolderInPlace};
    scene_ = kScenes[static_cast<std::size_t>(Below(kScenes.size()))];
    programs_.clear();
    reports_.clear();
    constexpr std::array<const char*, 3> kNames = {"plain", "with blanks", "two\nlines"};
    folder_ = top_ / kNames[static_cast<std::size_t>(Below(3))];
    data_ = folder_ / "Bvc";
    fs::create_directories(data_);
    before_.clear();
    if (scene_ == Scene::FirstStarts) return;
    before_.assign(pool_.begin(), pool_.begin() + 1 + Below(Once(4) ? 400 : 40));
    for (PackRecord& record : before_) {
      if (round_ % 2 == 0) record.LevelSize = LevelSizeOf(0, kSize);
    }
    const bool linked = Once(3);
    const std::string pack = linked ? (folder_ / "elsewhere.bvq").string() : Pack();
    if (linked) fs::create_symlink("../elsewhere.bvq", Pack());
    if (scene_ == Scene::FolderInPlace) {
      before_.clear();
      fs::create_directory(pack);
    } else {
      RecordFile<PackRecord>(pack, Access::Create).WriteAll(1, before_);
      // What a program that died has left.
      if (Once(4))
        fs::resize_file(pack, fs::file_size(pack) + static_cast<std::uintmax_t>(1 + Below(3)) * kBytes);
    }
    // Files of somebody else, under names that come to mind.
    for (const char* ending : {".new", ".part", "~"}) WriteBytes(Pack() + ending, "mine");
    WriteBytes((data_ / kBook).string(), "old");
    if (scene_ == Scene::TwoUsers) fs::permissions(data_, fs::perms(01777));
    if (scene_ != Scene::ReadOnly || geteuid() != 0) return;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder_)) {
      if (!entry.is_symlink()) fs::permissions(entry, fs::perms(entry.is_directory() ? 0555 : 0666));
    }
  }

  /// Runs a body as a program of its own.
  template <class Body>
  void Fork(Program program, Body body) {
    std::fflush(nullptr);
    const std::string words = top_ / ("words" + std::to_string(programs_.size()));
    fs::remove(words);
    const bool starves = !IsOneOf({Scene::FirstStarts, Scene::Players}) && Once(6);
    const auto limit = static_cast<rlim_t>(Below(static_cast<int>((before_.size() + 40) * kBytes)));
    const bool isNobodys =
        scene_ == Scene::ReadOnly || (scene_ == Scene::TwoUsers && programs_.size() % 2 == 1);
    if (isNobodys && geteuid() == 0) program.User = kNobody;
    const std::chrono::microseconds delay(Below(1 << Below(18)));
    program.Id = fork();
    if (program.Id == 0) {
      std::this_thread::sleep_for(delay);
      std::signal(SIGXFSZ, SIG_IGN);
      dup2(open(words.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666), STDERR_FILENO);
      dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
      const rlimit most{limit, limit};
      if (starves) setrlimit(RLIMIT_FSIZE, &most);
      if (program.User != 0 && (setgid(program.User) != 0 || setuid(program.User) != 0)) _exit(9);
      body();
      _exit(0);
    }
    programs_.push_back(std::move(program));
  }

  void RunTool(const std::string& name, std::vector<std::string> arguments,
               std::vector<PackRecord> makes = {}) {
    Fork({.Name = name, .Makes = std::move(makes)}, [&] {
      std::vector<char*> argv = {const_cast<char*>(packMaker_.data()), const_cast<char*>(name.c_str())};
      for (std::string& argument : arguments) argv.push_back(argument.data());
      argv.push_back(nullptr);
      execv(packMaker_.c_str(), argv.data());
      _exit(127);
    });
  }

  void RunMake() {
    const int seed = 10 + Below(1000);
    const int count = 1 + Below(40);
    RunTool("make",
            {"--size", std::to_string(kSize), "--count", std::to_string(count), "--seed",
             std::to_string(seed), "--jobs", "1", Pack()},
            MakePool(static_cast<std::uint64_t>(seed), static_cast<std::size_t>(count)));
  }

  void RunMerge() {
    const std::string other = (folder_ / ("other" + std::to_string(programs_.size()))).string();
    const auto first = pool_.begin() + Below(700);
    std::vector<PackRecord> puzzles(first, first + 1 + Below(100));
    if (scene_ != Scene::ReadOnly) RecordFile<PackRecord>(other, Access::Create).WriteAll(1, puzzles);
    RunTool("merge", {Pack(), other}, std::move(puzzles));
  }

  void RunPrint() { RunTool("print", {Pack(), "--numbers", "1", "--force", "-o", (data_ / kBook).string()}); }

  void Tell(const Report& report) const {
    if (write(pipe_[1], &report, sizeof report) != sizeof report) _exit(8);
  }

  /// Saves a new puzzle, as New does.
  void SaveOne(LoadedProgram& game, FolderDesktop& desktop, int fresh) {
    game.global.PuzzleRec = pool_[static_cast<std::size_t>(fresh)];
    game.main.Level = LevelOf(game.global.PuzzleRec.LevelSize);
    Save_New(game.main);
    if (desktop.Boxes.empty()) Tell({Report::Saved, fresh, 0, 0, 0});
  }

  /// Solves a puzzle that others may solve, too.
  void SolveOne(LoadedProgram& game, FolderDesktop& desktop, int puzzle, int seconds) {
    desktop.Inputs = {std::to_string(puzzle)};
    cmdOpen_Click(game.main);
    if (!desktop.Boxes.empty()) return;
    const auto place = places_.find(IdentityOf(game.global.PuzzleRec));
    // Meanwhile others write, or sort.
    std::this_thread::sleep_for(std::chrono::milliseconds(seconds % 5));
    game.main.LostTimes = Loss::None;
    game.main.Elapsed = seconds;
    RecordTimes(game.main);
    const auto wasShown = [&](const char* title) {
      return std::any_of(desktop.Boxes.begin(), desktop.Boxes.end(),
                         [&](const MessageBox& box) { return box.Title == title; });
    };
    const auto known = static_cast<int>(place == places_.end() ? pool_.size() : place->second);
    Report report{Report::Own, known, puzzle, game.global.CurrentPlayer, seconds};
    if (!wasShown("Time not saved")) Tell(report);
    report.Did = Report::Best;
    if (!wasShown("File Error") && !wasShown("Puzzle Save Error")) Tell(report);
  }

  void AddPlayer(LoadedProgram& game, int name) {
    KnopNieuweSpeler_Click(game.form);
    game.form.NaamInvoerveld.Text = std::to_string(name) + "th";
    NaamInvoerveld_KeyPress(game.form, Key::Enter);
    if (game.form.NaamLijst.Enabled) Tell({Report::Added, name, game.form.NaamLijst.ListIndex + 1, 0, 0});
  }

  void RunGame(int number) {
    const std::uint64_t seed = random_.Next();
    Fork({.Name = "game"}, [&] {
      try {
        SharedDesktop desktop(top_ / "program", folder_.string());
        ProgramRun game(desktop);
        Random random(seed);
        for (int step = 0; step < 12; ++step) {
          desktop.Boxes.clear();
          if (scene_ == Scene::Players) {
            AddPlayer(game, number * 100 + step);
          } else if (!before_.empty() && random.Below(2) == 0) {
            game.global.CurrentPlayer = 1 + number % FolderDesktop::kPlayers;
            const auto some = static_cast<int>(std::min<std::size_t>(before_.size(), 12));
            SolveOne(game, desktop, 1 + random.Below(some), 2000 - 100 * step + random.Below(100));
          } else {
            SaveOne(game, desktop, 400 + number * 100 + step * 5 + random.Below(5));
          }
        }
      } catch (const RunTimeError& error) {
        std::fprintf(stderr, "error %d: %s\n", static_cast<int>(error.Number()), error.what());
        _exit(1);
      }
    });
  }

  void KillSomeAndWait() {
    // Longer than a game waits.
    const int halted = scene_ == Scene::Players ? 1'700'000 : 200'000;
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
        } else if (Once(8)) {
          signals.emplace(microseconds, Signal{program.Id, SIGSTOP});
          signals.emplace(microseconds + halted, Signal{program.Id, SIGCONT});
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
      const std::string words = top_ / ("words" + std::to_string(i));
      program.Words = fs::exists(words) ? BytesOf(words) : "";
      totals_.Kills += program.Killed;
      if (!program.Killed && program.Status < 0)
        Lose(program.Name + " ended by signal " + std::to_string(WTERMSIG(status)));
    }
  }

  void ReadReports() {
    close(pipe_[1]);
    for (Report report{}; read(pipe_[0], &report, sizeof report) == sizeof report;)
      reports_.push_back(report);
    close(pipe_[0]);
    totals_.Reports += static_cast<long>(reports_.size());
  }

  void VerifyPuzzles(const std::vector<PackRecord>& after) {
    std::map<std::string, int> present;
    std::set<std::string> views, known;
    for (const PackRecord& record : after) {
      ++present[IdentityOf(record)];
      views.insert(ViewedFromAnySide(record));
    }
    const auto take = [&](const PackRecord& record, const char* whose) {
      if (--present[IdentityOf(record)] < 0) Lose(std::string("a puzzle is missing: ") + whose);
    };
    for (const PackRecord& record : before_) take(record, "of the pack before");
    for (const Report& report : reports_) {
      if (report.Did == Report::Saved)
        take(pool_[static_cast<std::size_t>(report.Puzzle)], "saved by a game");
    }
    for (const Program& program : programs_) {
      for (const PackRecord& puzzle : program.Makes) known.insert(IdentityOf(puzzle));
      const bool merges = program.Name == "merge";
      if (program.User != 0 && scene_ == Scene::TwoUsers && AddedBy(program.Words) != 0)
        Lose("who may not write a pack has: " + program.Name);
      if (program.Killed || program.Makes.empty()) continue;
      const std::size_t added = AddedBy(program.Words);
      totals_.Reports += static_cast<long>(added);
      if (program.Status == 0 && !merges && added != program.Makes.size()) Lose("a maker that says less");
      for (std::size_t i = 0; i < program.Makes.size(); ++i) {
        if (!merges && i < added) take(program.Makes[i], "reported by make");
        if (merges && program.Status == 0 && views.count(ViewedFromAnySide(program.Makes[i])) == 0)
          Lose("a puzzle is missing: merged");
      }
    }
    for (const auto& [identity, count] : present) {
      const bool isFirst = scene_ == Scene::FirstStarts;  // The packs to begin with are others.
      if (count > 0 && !isFirst && places_.count(identity) == 0 && known.count(identity) == 0)
        Lose("a puzzle that nobody made");
      if (count > 0 && places_.count(identity) != 0 && places_[identity] < before_.size() &&
          IsOneOf({Scene::Games}))
        Lose("a puzzle is there twice");
    }
  }

  /// The best that was said to be kept must stand, of each puzzle in the pack and of each player under the
  /// number.
  void VerifyTimes(const std::vector<PackRecord>& after) {
    std::map<int, int> bests;
    std::map<std::pair<int, int>, int> owns;
    const auto least = [](auto& times, const auto& key, int seconds) {
      int& time = times.try_emplace(key, seconds).first->second;
      time = std::min(time, seconds);
    };
    for (const Report& report : reports_) {
      if (report.Did == Report::Best) least(bests, report.Puzzle, report.Seconds);
      if (report.Did != Report::Own) continue;
      least(owns, std::pair(report.Player, report.Number), report.Seconds);
      const auto solved = static_cast<std::size_t>(report.Puzzle);
      const auto place = static_cast<std::size_t>(report.Number - 1);
      if (solved < pool_.size() && place < after.size() &&
          IdentityOf(pool_[solved]) != IdentityOf(after[place]))
        Lose("an own time is another puzzle's");
    }
    for (const PackRecord& record : after) {
      const auto place = places_.find(IdentityOf(record));
      const auto best = place == places_.end() ? bests.end() : bests.find(static_cast<int>(place->second));
      if (best == bests.end()) continue;
      const int seconds = record.BestMinutes * 60 + record.BestSeconds;
      if (seconds == 0 || seconds > best->second || record.BestPlayer == 0) Lose("a best time is missing");
    }
    Global global;
    global.DataDir = (data_ / "").string();
    for (const auto& [key, seconds] : owns) {
      std::map<std::pair<int, int>, int> kept;
      for (const PersonalRecord& own :
           RecordFile<PersonalRecord>(PersonalPath(global, key.first)).ReadAll()) {
        const int time = own.PersonalMinutes * 60 + own.PersonalSeconds;
        if (time > 0) least(kept, std::pair(key.first, int{own.PersonalPuzzle}), time);
      }
      if (kept.count(key) == 0 || kept[key] > seconds) Lose("an own time is missing");
    }
  }

  void VerifyFiles() {
    for (const Report& report : reports_) {
      if (report.Did != Report::Added) continue;
      const std::string file = (folder_ / "settings" / ("Player" + TwoDigits(report.Number))).string();
      const bool stands =
          fs::exists(file) && BytesOf(file) == FixedName(std::to_string(report.Puzzle) + "th");
      const std::string count = (folder_ / "settings/Count").string();
      if (!stands || std::stoi(BytesOf(count)) < report.Number) Lose("a player is missing");
    }
    if (scene_ == Scene::FirstStarts) return;
    for (const char* ending : {".new", ".part", "~"}) {
      if (BytesOf(Pack() + ending) != "mine") Lose(std::string("somebody's file is gone: ") + ending);
    }
    const std::string book = BytesOf((data_ / kBook).string());
    const bool printed = std::any_of(programs_.begin(), programs_.end(), [](const Program& program) {
      return program.Name == "print" && program.Status == 0 && !program.Killed;
    });
    const bool whole = book.starts_with("%PDF") && book.ends_with("%%EOF\n");
    if (!whole && (printed || book != "old")) Lose("half a book");
  }

  void VerifyNextStart() {
    try {
      const bool wasThere = fs::is_regular_file(Pack());
      if (wasThere && fs::file_size(Pack()) % kBytes != 0) Lose("half a record");
      const long records = wasThere ? static_cast<long>(fs::file_size(Pack()) / kBytes) : 0;
      totals_.Unfinished += wasThere && records != CountRecords<PackRecord>(Pack()).Whole;
      FolderDesktop desktop(top_ / "program", folder_.string());
      const ProgramRun next(desktop);
      for (int size = kMinSize; size <= kMaxSize; ++size) {
        const std::string path = (data_ / PackName(size)).string();
        if (size != kSize && BytesOf(path) != BytesOf(top_ / ("program/" + PackName(size))))
          Lose("a copy is cut");
      }
      if (scene_ != Scene::FolderInPlace &&
          next.main.PuzzleCount[kSize - kMinSize] < static_cast<int>(before_.size()))
        Lose("the next start counts less");
    } catch (const RunTimeError& error) {
      Lose(std::string("the next start ends: ") + error.what());
    }
    for (const fs::directory_entry& entry : fs::directory_iterator(data_)) {
      const std::string name = entry.path().filename().string();
      if (!name.starts_with("BVPack") && !name.starts_with("PLBest") && name != kBook)
        Lose("left lying about: " + name);
    }
  }

  void Verify() {
    if (scene_ == Scene::ReadOnly) {
      for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder_)) {
        if (entry.is_directory() && !entry.is_symlink()) fs::permissions(entry, fs::perms(0755));
      }
    }
    std::vector<PackRecord> after;
    if (fs::is_regular_file(Pack())) after = RecordFile<PackRecord>(Pack()).ReadAll();
    VerifyPuzzles(after);
    VerifyTimes(after);
    const bool rated = std::any_of(programs_.begin(), programs_.end(), [](const Program& program) {
      return program.Name == "rate" && program.Status == 0 && !program.Killed;
    });
    const bool unrated = std::any_of(after.begin(), after.end(),
                                     [](const PackRecord& record) { return LevelOf(record.LevelSize) == 0; });
    if (rated && unrated) Lose("a level is missing");
    VerifyFiles();
    VerifyNextStart();
  }

  void RunOneOf(int number) {
    const int choice = Below(4);
    const auto rewrite = [&] { Once(2) ? RunTool("sort", {Pack()}) : RunTool("rate", {"--write", Pack()}); };
    switch (scene_) {
      case Scene::Makers:
        return choice == 0 ? RunMake() : choice == 1 ? RunMerge() : RunGame(number);
      case Scene::Rewriters:
        return choice < 2 ? rewrite() : choice == 2 ? RunMake() : RunGame(number);
      case Scene::Games:
        return choice == 0 ? rewrite() : RunGame(number);
      case Scene::FirstStarts:
      case Scene::Players:
        return RunGame(number);
      case Scene::Drawing:
        return choice < 2 ? RunPrint() : choice == 2 ? rewrite() : RunGame(number);
      case Scene::TwoUsers:
      case Scene::ReadOnly:
      case Scene::FolderInPlace:
        return choice == 0 ? RunMake() : choice == 1 ? RunGame(number) : choice == 2 ? rewrite() : RunMerge();
    }
  }

  const std::string packMaker_;
  const std::uint64_t seed_;
  Random random_{0};
  const std::vector<PackRecord> pool_;
  std::map<std::string, std::size_t> places_;  ///< Of identities in the pool.
  const TempFolder top_;

  // Of the round.
  fs::path folder_, data_;
  Scene scene_ = Scene::Makers;
  long round_ = 0;
  std::vector<PackRecord> before_;
  std::vector<Program> programs_;
  std::vector<Report> reports_;
  std::array<int, 2> pipe_{};
  Totals totals_;
};

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
      "%ld rounds, %ld programs, %ld kills, %ld reports held against the files, %ld packs with records that "
      "were never finished, %ld losses\n",
      sums.Rounds, sums.Programs, sums.Kills, sums.Reports, sums.Unfinished, sums.Losses);
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
