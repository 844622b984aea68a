#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iomanip>
#include <map>
#include <memory>
#include <numeric>
#include <ostream>
#include <set>
#include <unordered_map>
#include <utility>

#include "game/clock.h"
#include "game/text.h"
#include "generator/unique_solution.h"
#include "packs/alike.h"
#include "packs/faults.h"
#include "packs/pack_access.h"
#include "packs/puzzle_facts.h"
#include "storage/best_times.h"
#include "storage/platform_files.h"
#include "storage/players.h"
#include "storage/saving.h"
#include "tools/command_line.h"
#include "walks/solution_walk.h"
#include "workbench/position.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

namespace fs = std::filesystem;

struct RateOptions {
  std::vector<std::string> Packs{};
  Format Output = Format::Words;
  bool Write = false;  ///< Stores the levels.
  bool Steps = false;  ///< Names the passes, in words too.
};

constexpr std::size_t kMergeBatch = 512;  // Puzzles added in one turn.

/// Reads all packs before the first line is written, so that bad input leaves no half of an answer.
std::vector<std::vector<PackRecord>> ReadSoundPacks(const std::vector<std::string>& paths) {
  std::vector<std::vector<PackRecord>> packs;
  packs.reserve(paths.size());
  for (const std::string& path : paths) packs.push_back(ReadSoundPack(path));
  return packs;
}

/// Calls visit(path, number, record) for every record of every pack.
template <class Visit>
void ForEachRecord(const std::vector<std::string>& paths, Visit visit) {
  const std::vector<std::vector<PackRecord>> packs = ReadSoundPacks(paths);
  auto path = paths.begin();
  for (const std::vector<PackRecord>& pack : packs) {
    long number = 0;
    for (const PackRecord& record : pack) visit(*path, ++number, record);
    ++path;
  }
}

/// The columns that every table of records begins with.
std::ostream& RowStart(std::ostream& out, const std::string& path, long number, int size) {
  return out << FileName(path) << '\t' << number << '\t' << size << '\t';
}

/// What every line in words begins with.
std::ostream& LineStart(std::ostream& out, const std::string& path, long number, int size) {
  return out << FileName(path) << ' ' << std::setw(5) << number << "  " << std::setw(2) << size << 'x'
             << std::left << std::setw(2) << size << std::right << "  ";
}

std::string BestTime(const PackRecord& record) {
  const int seconds = record.BestMinutes * 60 + record.BestSeconds;
  return seconds > 0 ? FormatClock(seconds) : "-";
}

int TreesIn(const PackRecord& record) {
  return static_cast<int>(std::count(record.Layout.begin(), record.Layout.end(), CELL_TREE));
}

/// What was found out about the records of a pack. While it is used, others may change the pack: what stands
/// where it stood is not looked at again.
template <class Found>
class Known {
 public:
  template <class Find>
  const Found& Of(std::size_t place, const PackRecord& record, Find find) {
    auto known = known_.find(place);
    if (known == known_.end() || known->second.first != record)
      known = known_.insert_or_assign(place, std::pair(record, find(record))).first;
    return known->second.second;
  }

 private:
  std::unordered_map<std::size_t, std::pair<PackRecord, Found>> known_;
};

class KnownRatings {
 public:
  /// Level and difficulty.
  const std::pair<int, float>& Of(std::size_t place, const PackRecord& record) {
    return known_.Of(place, record, [&](const PackRecord& unknown) {
      const Rating rating = Rate(bench_.main, unknown);
      return std::pair(rating.Level, rating.Difficulty);
    });
  }
  void Add(std::size_t place, const PackRecord& record, const Rating& rating) {
    known_.Of(place, record, [&](const PackRecord&) { return std::pair(rating.Level, rating.Difficulty); });
  }

 private:
  Known<std::pair<int, float>> known_;
  Workbench bench_;
};

/// Stores levels in a pack, in place and each in a turn of its own, so that nobody waits.
void StoreLevels(const std::string& path, KnownRatings& ratings, const Patience& patience) {
  RecordFile<PackRecord> pack(path, Access::Write, patience);
  PackRecord record;
  const auto isStored = [&](long number) {
    pack.Read(number, record);
    const int level = ratings.Of(static_cast<std::size_t>(number) - 1, record).first;
    const auto levelSize = LevelSizeOf(level, SizeOf(record.LevelSize));
    return std::exchange(record.LevelSize, levelSize) == levelSize;
  };
  // Another program may put a pack in another order in its place.
  for (int openings = 0; openings != pack.Openings();) {
    openings = pack.Openings();
    for (long number = 1; number <= pack.Counts().Whole && openings == pack.Openings(); ++number) {
      if (isStored(number)) continue;
      const Turn turn(pack);
      if (openings == pack.Openings() && !isStored(number)) pack.WriteEnd(number, record);
    }
    const Turn turn(pack);
  }
  pack.Sync();
}

std::string Digits(float number, int significant) {
  char text[40];
  std::snprintf(text, sizeof text, "%.*g", significant, static_cast<double>(number));
  return text;
}

void WriteRating(const RateOptions& options, const std::string& path, long number, const Main& main,
                 const Rating& rating, Terminal& terminal) {
  if (options.Output == Format::Table) {
    RowStart(terminal.Out, path, number, main.BoardSize)
        << rating.Level << '\t' << Digits(rating.Difficulty, 9) << '\t' << DigitsOf(main) << '\t'
        << PassNames(rating.Trace) << '\n';
    return;
  }
  LineStart(terminal.Out, path, number, main.BoardSize)
      << "level " << std::setw(2) << rating.Level << "  difficulty " << Digits(rating.Difficulty, 7) << '\n';
  if (options.Steps) terminal.Out << "  " << PassNames(rating.Trace) << '\n';
}

/// Players' own times know their puzzles by number, in files beside the pack. Two files cannot change in one
/// step: a program that died in between would leave the times to other puzzles. So nothing with times may
/// move. `order` holds, for each new place, the old one. The game may know the pack by any link on the way to
/// it. With `turns`, no game can add a time until they end. Errors: InputError.
void RequireNoOwnTimes(const std::string& pack, const std::vector<std::size_t>& order,
                       std::map<std::string, FolderTurn>* turns = nullptr) {
  std::vector<fs::path> links = {pack};
  while (fs::is_symlink(links.back()))
    links.push_back(links.back().parent_path() / fs::read_symlink(links.back()));
  for (const fs::path& path : links) {
    const int size = SizeInName(path.filename().string());
    if (size == 0) continue;
    Global folder;
    folder.DataDir = (path.parent_path() / "").string();
    const std::string where = FolderOf(path.string());
    if (turns != nullptr && !turns->try_emplace(where, where).first->second.IsMine())
      throw InputError(where + ": another program holds the folder");
    for (int player = 1; player <= kMostPlayers; ++player) {
      const std::string file = PersonalPath(folder, player);
      if (!FileExists(file)) continue;
      for (const PersonalRecord& own : RecordFile<PersonalRecord>(file).ReadAll()) {
        const bool hasTime = own.PersonalMinutes != 0 || own.PersonalSeconds != 0;
        const auto place = static_cast<std::size_t>(own.PersonalPuzzle) - 1;
        const bool moves = place < order.size() ? order[place] != place
                                                : std::find(order.begin(), order.end(), place) != order.end();
        if (!hasTime || !moves || SizeOf(own.PersonalLevelSize) != size) continue;
        throw InputError(pack + ": puzzle " + std::to_string(place + 1) + " would get another number, and " +
                         FileName(file) + " holds a player's time under this one; work on a copy elsewhere");
      }
    }
  }
}

/// A record with a level that the rater gives, and without a best time that cannot be.
PackRecord Mended(PackRecord record, int size, Main& main) {
  record.LevelSize = LevelSizeOf(0, size);
  record.LevelSize = LevelSizeOf(Rate(main, record).Level, size);
  if (std::min({record.BestMinutes, record.BestSeconds, record.BestPlayer}) < 0 || record.BestSeconds > 59)
    record.BestMinutes = record.BestSeconds = record.BestPlayer = 0;
  return record;
}

/// Puts the change in the pack's place while no game can add a time to a puzzle that moves.
void CommitMoved(PackRewrite& rewrite, const std::string& pack, const std::vector<std::size_t>& order) {
  std::map<std::string, FolderTurn> turns;
  rewrite.Commit([&] { RequireNoOwnTimes(pack, order, &turns); });
}

/// Makes a pack sound: levels and best times are mended, other records with faults and what was never
/// finished are taken out.
class Repair {
 public:
  explicit Repair(const std::string& path) : path_(path), name_(FileName(path)) {}

  /// The records then. Called again when the pack has changed meanwhile.
  std::vector<PackRecord> Of(const PackContent& content);
  /// The place of each record before.
  const std::vector<std::size_t>& Order() const { return order_; }
  /// What was done.
  const std::string& Words() const { return words_; }

 private:
  std::vector<Fault> FaultsOf(const PackRecord& record) {
    return bivouac::FaultsOf(name_, {{record}, 0}, bench_.main);
  }

  const std::string path_;
  const std::string name_;
  std::vector<std::size_t> order_;
  std::string words_;
  Known<std::vector<Fault>> faults_;
  Workbench bench_;
};

std::vector<PackRecord> Repair::Of(const PackContent& content) {
  words_.clear();
  order_.clear();
  const int size = SizeOfPack(name_, content);
  std::vector<PackRecord> sound;
  for (std::size_t place = 0; place < content.Records.size(); ++place) {
    PackRecord record = content.Records[place];
    const std::vector<Fault>& faults =
        faults_.Of(place, record, [&](const PackRecord& unknown) { return FaultsOf(unknown); });
    const bool hasOtherSize = size != 0 && SizeOf(record.LevelSize) != size;
    if (!faults.empty() || hasOtherSize) {
      if (size != 0) record = Mended(record, size, bench_.main);
      const bool isSound = FaultsOf(record).empty();
      words_ += name_ + ": record " + std::to_string(place + 1) + (isSound ? " mended" : " taken out");
      if (!faults.empty()) words_ += ": " + faults.front().Field + ": " + faults.front().Words;
      words_ += '\n';
      if (!isSound) continue;
    }
    sound.push_back(record);
    order_.push_back(place);
  }
  if (content.SpareBytes != 0)
    words_ += name_ + ": " + std::to_string(content.SpareBytes) + " bytes behind the last record taken out\n";
  if (content.Unfinished != 0)
    words_ += name_ + ": " + Counted(content.Unfinished, "record") + " never finished, taken out\n";
  RequireNoOwnTimes(path_, order_);
  return sound;
}

ExitStatus ListPacks(const std::vector<std::string>& packs, Format format, Terminal& terminal) {
  ForEachRecord(packs, [&](const std::string& path, long number, const PackRecord& record) {
    const int size = SizeOf(record.LevelSize);
    const int level = LevelOf(record.LevelSize);
    if (format == Format::Table) {
      RowStart(terminal.Out, path, number, size)
          << level << '\t' << TreesIn(record) << '\t' << BestTime(record) << '\n';
      return;
    }
    LineStart(terminal.Out, path, number, size)
        << "level " << std::setw(2) << level << "  " << std::setw(2) << TreesIn(record) << " trees  best "
        << BestTime(record) << '\n';
  });
  return ExitStatus::Done;
}

ExitStatus RatePacks(const RateOptions& options, Terminal& terminal) {
  const std::vector<std::vector<PackRecord>> packs = ReadSoundPacks(options.Packs);
  Workbench bench;
  std::vector<KnownRatings> ratings(packs.size());
  for (std::size_t i = 0; i < packs.size(); ++i) {
    long number = 0;
    for (const PackRecord& record : packs[i]) {
      const Rating rating = Rate(bench.main, record);
      WriteRating(options, options.Packs[i], ++number, bench.main, rating, terminal);
      if (options.Write) ratings[i].Add(static_cast<std::size_t>(number) - 1, record, rating);
    }
  }
  terminal.Out.flush();
  // Where nobody could read them, whoever runs the command says so, and no pack changes.
  if (!options.Write || !terminal.Out) return ExitStatus::Done;
  const Patience patience = LongPatience(terminal.Err);
  std::string changed;
  for (std::size_t i = 0; i < packs.size(); ++i) {
    try {
      StoreLevels(options.Packs[i], ratings[i], patience);
    } catch (const RunTimeError& error) {
      throw InputError(error.what() + (changed.empty() ? "" : "; changed before:" + changed));
    }
    changed += " " + options.Packs[i];
  }
  return ExitStatus::Done;
}

ExitStatus ProvePacks(const std::vector<std::string>& packs, Format format, Terminal& terminal) {
  Workbench bench;
  ForEachRecord(packs, [&](const std::string& path, long number, const PackRecord& record) {
    LayOutRecord(bench.main, record);
    bool unique = false;
    CheckUniqueSolution(bench.main, unique);
    const int size = bench.main.BoardSize;
    if (format == Format::Table) {
      RowStart(terminal.Out, path, number, size) << (unique ? 1 : 0) << '\n';
    } else {
      LineStart(terminal.Out, path, number, size) << (unique ? "one solution" : "not proved") << '\n';
    }
  });
  return ExitStatus::Done;
}

/// FaultsFound if there is any. Puzzles that are alike, and those that hints do not lead through, are named,
/// but are no fault.
ExitStatus CheckPacks(const std::vector<std::string>& packs, Terminal& terminal) {
  std::vector<PackContent> contents;
  contents.reserve(packs.size());
  for (const std::string& path : packs) contents.push_back(ContentOf(OpenPack(path)));
  Workbench bench;
  long faults = 0;
  auto path = packs.begin();
  for (const PackContent& content : contents) {
    std::set<long> faulty;
    for (const Fault& fault : FaultsOf(FileName(*path), content, bench.main)) {
      faulty.insert(fault.Record);
      terminal.Out << FileName(*path) << ": ";
      if (fault.Record > 0) terminal.Out << "record " << fault.Record << ", ";
      terminal.Out << fault.Field << ": " << fault.Words << '\n';
      ++faults;
    }
    for (const auto& [number, first] : AlikePuzzles(content.Records)) {
      terminal.Out << FileName(*path) << ": record " << number << " is alike to record " << first << '\n';
    }
    for (long number = 1; number <= static_cast<long>(content.Records.size()); ++number) {
      if (faulty.contains(number)) continue;
      const SolutionWalk::End end =
          EndOfWay(bench.main, content.Records[static_cast<std::size_t>(number - 1)]);
      if (end == SolutionWalk::End::Solved) continue;
      terminal.Out << FileName(*path) << ": record " << number
                   << " is not explained to its end: " << WordsOf(end) << '\n';
    }
    ++path;
  }
  return faults == 0 ? ExitStatus::Done : ExitStatus::FaultsFound;
}

/// Says what it did. Refuses what SortPack refuses.
ExitStatus RepairPacks(const std::vector<std::string>& packs, Terminal& terminal) {
  for (const std::string& path : packs) {
    Repair repair(path);
    PackRewrite rewrite(path, LongPatience(terminal.Err),
                        [&](const PackContent& content) { return repair.Of(content); });
    CommitMoved(rewrite, path, repair.Order());
    terminal.Out << repair.Words();
  }
  return ExitStatus::Done;
}

/// Refuses to move a puzzle for which a player's file beside the pack holds a time.
ExitStatus SortPack(const std::string& pack, Terminal& terminal) {
  KnownRatings ratings;
  std::vector<std::size_t> order;
  PackRewrite rewrite(pack, LongPatience(terminal.Err), [&](const PackContent& content) {
    const std::vector<PackRecord>& records = SoundRecords(pack, content);
    order.resize(records.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
      return ratings.Of(a, records[a]) < ratings.Of(b, records[b]);
    });
    RequireNoOwnTimes(pack, order);
    std::vector<PackRecord> sorted;
    sorted.reserve(records.size());
    for (const std::size_t place : order) sorted.push_back(records[place]);
    return sorted;
  });
  CommitMoved(rewrite, pack, order);
  return ExitStatus::Done;
}

/// Appends the puzzles of other packs that are not alike to one that is there.
ExitStatus MergePacks(const std::string& pack, const std::vector<std::string>& others, Terminal& terminal) {
  std::vector<PackRecord> puzzles = FileExists(pack) ? ReadSoundPack(pack) : std::vector<PackRecord>();
  int size = puzzles.empty() ? 0 : SizeOf(puzzles.front().LevelSize);
  puzzles.clear();
  for (const std::string& other : others) {
    const std::vector<PackRecord> records = ReadSoundPack(other);
    if (size == 0 && !records.empty()) size = SizeOf(records.front().LevelSize);
    RequireSize(other, records, size);
    puzzles.insert(puzzles.end(), records.begin(), records.end());
  }
  PackAppender appender(pack, size, PackAppender::Twins::LeaveOut, LongPatience(terminal.Err));
  for (std::size_t first = 0; first < puzzles.size(); first += kMergeBatch) {
    const auto begin = puzzles.begin() + static_cast<std::ptrdiff_t>(first);
    const std::size_t count = std::min(kMergeBatch, puzzles.size() - first);
    appender.Add({begin, begin + static_cast<std::ptrdiff_t>(count)});
  }
  const long added = appender.Added();
  terminal.Err << Counted(added, "puzzle") << " added to " << OnOneLine(pack) << ", "
               << static_cast<long>(puzzles.size()) - added << " left out that were alike\n";
  return ExitStatus::Done;
}

/// A command on any number of packs.
CLI::App* AddPacksCommand(CLI::App& app, const char* name, const char* help,
                          std::vector<std::string>& packs) {
  CLI::App* command = app.add_subcommand(name, help);
  command->add_option("PACK", packs, "The packs")->required();
  return command;
}

}  // namespace

void AddListAndProve(CLI::App& app, Command& chosen) {
  struct Input {
    std::vector<std::string> Packs;
    Format Output = Format::Words;
  };
  const auto add = [&](const char* name, const char* help, auto run) {
    const auto input = std::make_shared<Input>();
    CLI::App* command = AddPacksCommand(app, name, help, input->Packs);
    AddTableFlag(*command, input->Output);
    command->callback([input, run, &chosen] {
      chosen = [input, run](Terminal& terminal) { return run(input->Packs, input->Output, terminal); };
    });
  };
  add("list", "One line a record: number, size, level, trees, best time", ListPacks);
  add("prove", "Verdict of the search for a second solution", ProvePacks);
}

void AddRate(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<RateOptions>();
  CLI::App* command =
      AddPacksCommand(app, "rate", "Level and difficulty, from trees and clues alone", options->Packs);
  AddTableFlag(*command, options->Output);
  command->add_flag("--write", options->Write, "Store the levels");
  command->add_flag("--steps", options->Steps, "Name the deductions, in order");
  command->callback([options, &chosen] {
    chosen = [options](Terminal& terminal) { return RatePacks(*options, terminal); };
  });
}

void AddCheckAndSort(CLI::App& app, Command& chosen) {
  struct Input {
    std::vector<std::string> Packs;
    bool Repair = false;
  };
  const auto input = std::make_shared<Input>();
  CLI::App* check =
      AddPacksCommand(app, "check", "Every fault in words; status 1 if there is any", input->Packs);
  check->add_flag("--repair", input->Repair, "Mend what can be, take out the rest, say what was done");
  check->callback([input, &chosen] {
    const auto command = input->Repair ? RepairPacks : CheckPacks;
    chosen = [input, command](Terminal& terminal) { return command(input->Packs, terminal); };
  });
  const auto pack = std::make_shared<std::string>();
  CLI::App* sort = app.add_subcommand("sort", "Sort a pack by level, then difficulty");
  sort->add_option("PACK", *pack, "The pack")->required();
  sort->callback(
      [pack, &chosen] { chosen = [pack](Terminal& terminal) { return SortPack(*pack, terminal); }; });
}

void AddMerge(CLI::App& app, Command& chosen) {
  struct Input {
    std::string Pack;
    std::vector<std::string> Others;
  };
  const auto input = std::make_shared<Input>();
  CLI::App* merge = app.add_subcommand("merge", "Append the puzzles of other packs, but for those alike");
  merge->add_option("OUT", input->Pack, "The pack that grows")->required();
  merge->add_option("IN", input->Others, "The other packs")->required();
  merge->callback([input, &chosen] {
    chosen = [input](Terminal& terminal) { return MergePacks(input->Pack, input->Others, terminal); };
  });
}

}  // namespace bivouac
