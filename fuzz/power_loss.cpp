// Power loss by enumeration: records the calls that change files while the game or the pack maker works, and
// then plays every prefix of them, with each change that was not yet synced lost or kept, onto the files as
// they were. In each of these worlds every old record must be there, and the pack maker must work on; once
// the program has gone on, the new one must be there too.
//
// The model is stricter than file systems are: a synced file may still have lost its name, names are lost one
// by one, and unsynced writes in any order. One write is kept as a whole or not at all, and does not make a
// file longer that was made longer before.
//
// A kill is tried at every call too, within a longer write at bytes of every kind: there everything that was
// done stands, and the next start of the game must find every old record, nothing but whole ones, and leave
// nothing lying about. Eight bytes at a multiple of eight are never cut.
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

#include "game/clock.h"
#include "packs/pack_access.h"
#include "storage/best_times.h"
#include "storage/kept_game.h"
#include "storage/navigation.h"
#include "storage/pack_files.h"
#include "storage/record_file.h"
#include "storage/saving.h"
#include "tests/support/files.h"
#include "tests/support/installation.h"

namespace bivouac {
namespace {

namespace fs = std::filesystem;

using Inode = ino_t;
using Names = std::map<std::string, Inode>;
using Contents = std::map<Inode, std::string>;
/// The files of a folder with what they hold.
using World = std::map<std::string, std::string>;

struct Call {
  enum Kind { Create, Write, Truncate, Rename, Link, Unlink, SyncFile, SyncFolder } Did;
  Inode File = 0;
  std::string Path{}, To{};
  std::uint64_t Offset = 0;  ///< For Truncate the length.
  std::string Bytes{};
  bool Extends = false;  ///< A write beyond the end.
};

std::vector<Call> calls;
bool recording = false;

std::string Tidy(const char* path) {
  return fs::absolute(path).lexically_normal().string();
}

struct stat StatusOf(int descriptor) {
  struct stat status {};
  fstat(descriptor, &status);
  return status;
}

Inode InodeOf(const std::string& path) {
  struct stat status {};
  stat(path.c_str(), &status);
  return status.st_ino;
}

/// Notes a call that was done.
template <class Result>
Result Record(Result result, const Call& call) {
  if (!recording || result < 0) return result;
  recording = false;
  calls.push_back(call);
  recording = true;
  return result;
}

}  // namespace
}  // namespace bivouac

// The calls of the platform, as this program's own: they go straight to the kernel, and note what they
// changed.
extern "C" {

int open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const bool nameless = (flags & O_TMPFILE) == O_TMPFILE;
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): va_start stands above, the lint loses it at times.
  const unsigned mode = nameless || (flags & O_CREAT) != 0 ? va_arg(rest, unsigned) : 0;
  va_end(rest);
  using namespace bivouac;
  const bool creates = (flags & O_CREAT) != 0 && access(path, F_OK) != 0;
  const int descriptor = static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
  if (creates)
    Record(descriptor, {.Did = Call::Create, .File = StatusOf(descriptor).st_ino, .Path = Tidy(path)});
  return descriptor;
}

ssize_t pwrite(int descriptor, const void* bytes, std::size_t count, off_t offset) {
  using namespace bivouac;
  const struct stat before = StatusOf(descriptor);
  const ssize_t written = syscall(SYS_pwrite64, descriptor, bytes, count, offset);
  return Record(written, {.Did = Call::Write,
                          .File = before.st_ino,
                          .Offset = static_cast<std::uint64_t>(offset),
                          .Bytes = {static_cast<const char*>(bytes),
                                    written < 0 ? 0 : static_cast<std::size_t>(written)},
                          .Extends = offset + written > before.st_size});
}

int ftruncate(int descriptor, off_t length) noexcept {
  using namespace bivouac;
  return Record(static_cast<int>(syscall(SYS_ftruncate, descriptor, length)),
                {.Did = Call::Truncate,
                 .File = StatusOf(descriptor).st_ino,
                 .Offset = static_cast<std::uint64_t>(length)});
}

int fdatasync(int descriptor) {
  using namespace bivouac;
  const struct stat status = StatusOf(descriptor);
  const std::string entry = "/proc/self/fd/" + std::to_string(descriptor);
  const Call synced = S_ISDIR(status.st_mode)
                          ? Call{.Did = Call::SyncFolder, .Path = fs::read_symlink(entry).string()}
                          : Call{.Did = Call::SyncFile, .File = status.st_ino};
  return Record(static_cast<int>(syscall(SYS_fdatasync, descriptor)), synced);
}

int rename(const char* from, const char* to) noexcept {
  using namespace bivouac;
  const Call call{.Did = Call::Rename, .File = InodeOf(from), .Path = Tidy(from), .To = Tidy(to)};
  return Record(static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0)), call);
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept {
  using namespace bivouac;
  return Record(static_cast<int>(syscall(SYS_linkat, fromFolder, from, toFolder, to, flags)),
                {.Did = Call::Link, .File = InodeOf(from), .To = Tidy(to)});
}

int unlink(const char* path) noexcept {
  using namespace bivouac;
  return Record(static_cast<int>(syscall(SYS_unlinkat, AT_FDCWD, path, 0)),
                {.Did = Call::Unlink, .Path = Tidy(path)});
}
}

namespace bivouac {
namespace {

/// Applies a change. Others than changes of this kind are left out.
void ApplyToContent(const Call& call, Contents& contents) {
  std::string& bytes = contents[call.File];
  if (call.Did == Call::Truncate) bytes.resize(call.Offset);
  if (call.Did != Call::Write) return;
  if (call.Extends && bytes.size() < call.Offset + call.Bytes.size())
    bytes.resize(call.Offset + call.Bytes.size());
  if (call.Offset < bytes.size())
    bytes.replace(call.Offset, call.Bytes.size(), call.Bytes, 0, bytes.size() - call.Offset);
}

void ApplyToNames(const Call& call, Names& names) {
  if (call.Did == Call::Create) names[call.Path] = call.File;
  if (call.Did == Call::Link || call.Did == Call::Rename) names[call.To] = call.File;
  if (call.Did == Call::Rename || call.Did == Call::Unlink) names.erase(call.Path);
}

bool IsContent(const Call& call) {
  return call.Did == Call::Write || call.Did == Call::Truncate;
}

std::string FolderOfNames(const Call& call) {
  return fs::path(call.Did == Call::Link ? call.To : call.Path).parent_path().string();
}

/// What is on the disk for certain, and what may be.
struct Disk {
  Names SafeNames{};
  Contents SafeContents{};
  std::vector<Call> Pending{};

  void Do(const Call& call) {
    if (call.Did != Call::SyncFile && call.Did != Call::SyncFolder) {
      Pending.push_back(call);
      return;
    }
    std::vector<Call> rest;
    for (const Call& change : Pending) {
      const bool settled = call.Did == Call::SyncFile
                               ? IsContent(change) && change.File == call.File
                               : !IsContent(change) && FolderOfNames(change) == call.Path;
      if (!settled) {
        rest.push_back(change);
      } else {
        Apply(change, SafeNames, SafeContents);
      }
    }
    Pending = std::move(rest);
  }

  static void Apply(const Call& call, Names& names, Contents& contents) {
    IsContent(call) ? ApplyToContent(call, contents) : ApplyToNames(call, names);
  }

  World After(std::uint64_t kept) const {
    Names names = SafeNames;
    Contents contents = SafeContents;
    for (std::size_t i = 0; i < Pending.size(); ++i) {
      if ((kept >> i & 1) != 0) Apply(Pending[i], names, contents);
    }
    World world;
    for (const auto& [path, file] : names) world[fs::path(path).filename().string()] = contents[file];
    return world;
  }
};

/// What becomes of a trial. Where it is refused, there is nothing to sync.
enum class End { Done, Refused };
/// How far a program came: it went on, the power failed on the way, or it was killed.
enum class Came { ToItsEnd, ToAPowerLoss, ToAKill };

struct Trial {
  const char* Name;
  std::function<void()> Prepare;
  std::function<void()> Act;
  /// True if a world is one that a person could live with.
  std::function<bool(const World& world, Came came)> IsSound;
  End Ends = End::Done;
};

/// An installation in a temporary folder.
struct Place {
  Place() {
    fs::create_directories(Data());
    fs::create_directory(Program());
    WriteShortPacks(Program());
  }
  std::string Program() const { return Top / "program"; }
  fs::path Data() const { return Top / "local/Bvc"; }
  std::string Pack() const { return (Data() / PackName(kSize)).string(); }

  static constexpr int kSize = FolderDesktop::kSize;
  TempFolder Top;
};

struct Verdict {
  long Sound = 0, Unsound = 0;
  void Add(bool sound) { ++(sound ? Sound : Unsound); }
};
enum class Syncs { Count, DoNotCount };

/// Looks at every world that a power loss may leave.
Verdict Enumerate(const Disk& start, const Trial& trial, Syncs syncs) {
  constexpr std::size_t kMostPending = 16;
  Verdict verdict;
  Disk disk = start;
  for (std::size_t done = 0; done <= calls.size(); ++done) {
    if (done > 0) {
      const Call& call = calls[done - 1];
      const bool isSync = call.Did == Call::SyncFile || call.Did == Call::SyncFolder;
      if (!isSync || syncs == Syncs::Count) disk.Do(call);
    }
    if (disk.Pending.size() > kMostPending) throw std::runtime_error("too much is pending at once");
    const Came came = done == calls.size() ? Came::ToItsEnd : Came::ToAPowerLoss;
    for (std::uint64_t kept = 0; kept < std::uint64_t{1} << disk.Pending.size(); ++kept) {
      verdict.Add(trial.IsSound(disk.After(kept), came));
      // Without syncs one is enough: it shows that the worlds can tell.
      if (syncs == Syncs::DoNotCount && verdict.Unsound > 0) return verdict;
    }
  }
  return verdict;
}

/// How many bytes of a write may stand when its program was killed.
std::vector<std::size_t> CutsOf(const Call& call) {
  constexpr std::size_t kPage = 4096;
  constexpr std::size_t kNeverCut = 8;
  const std::size_t all = call.Bytes.size();
  if (call.Did != Call::Write || (all <= kNeverCut && call.Offset % kNeverCut == 0)) return {all};
  std::vector<std::size_t> cuts = {1, all / 2, all - 1, all};
  for (const std::size_t edge : {kPage - call.Offset % kPage, sizeof(PackRecord), sizeof(PackRecord) + 1}) {
    if (edge < all) cuts.push_back(edge);
  }
  return cuts;
}

/// Looks at what the next start of the game makes of every world that a kill may leave.
Verdict EnumerateKills(const Place& place, Disk disk, const Trial& trial) {
  Verdict verdict;
  const auto isSoundAtNextStart = [&](const World& world) {
    const fs::path local = place.Top / "killed";
    fs::create_directories(local / "Bvc");
    for (const auto& [name, bytes] : world) WriteBytes((local / "Bvc" / name).string(), bytes);
    FolderDesktop desktop(place.Program(), local.string());
    const ProgramRun next(desktop);
    const World after = FilesIn((local / "Bvc").string());
    fs::remove_all(local);
    for (const auto& [name, bytes] : after) {
      const std::size_t record = name.starts_with("BVPack") ? sizeof(PackRecord)
                                 : name.ends_with(".bvq")   ? sizeof(PersonalRecord)
                                                            : 1;
      if (name.starts_with(".") || bytes.size() % record != 0) return false;
    }
    return trial.IsSound(after, Came::ToAKill);
  };
  for (const Call& call : calls) {
    for (const std::size_t kept : CutsOf(call)) {
      Call last = call;
      last.Bytes.resize(kept);
      disk.Pending = {last};
      verdict.Add(isSoundAtNextStart(disk.After(1)));
    }
    Disk::Apply(call, disk.SafeNames, disk.SafeContents);
  }
  return verdict;
}

/// Returns whether every world is sound, and whether some would not be without the syncs.
bool Passes(const Place& place, const Trial& trial) {
  trial.Prepare();
  Disk start;
  for (const fs::directory_entry& entry : fs::directory_iterator(place.Data())) {
    const std::string path = entry.path().string();
    start.SafeNames[path] = InodeOf(path);
    start.SafeContents[InodeOf(path)] = BytesOf(path);
  }
  calls.clear();
  recording = true;
  trial.Act();
  recording = false;
  const Verdict verdict = Enumerate(start, trial, Syncs::Count);
  const bool tells = trial.Ends == End::Refused || Enumerate(start, trial, Syncs::DoNotCount).Unsound > 0;
  const Verdict killed = EnumerateKills(place, start, trial);
  std::printf("%s: %zu calls, %ld worlds, %ld of them unsound (without syncs %s), %ld kills, %ld unsound\n",
              trial.Name, calls.size(), verdict.Sound + verdict.Unsound, verdict.Unsound,
              tells ? "some" : "NONE", killed.Sound + killed.Unsound, killed.Unsound);
  return verdict.Unsound == 0 && killed.Unsound == 0 && tells;
}

std::string BytesOfAll(const std::vector<PackRecord>& records) {
  const std::vector<std::uint8_t> bytes = BytesOf<PackRecord>(records);
  return {bytes.begin(), bytes.end()};
}

/// A pack that puzzles are added to: the old ones, then of the new ones the first, as many as there are, and
/// records that were never finished. A power loss may leave the end of a record without the rest of it.
bool HasGrownSoundly(const std::string& bytes, const std::string& before,
                     const std::vector<PackRecord>& added, Came came) {
  constexpr std::size_t kBytes = sizeof(PackRecord);
  if (!bytes.starts_with(before) || bytes.size() % kBytes != 0) return false;
  const std::string whole = before + BytesOfAll(added);
  if (came == Came::ToItsEnd) return bytes == whole;
  std::size_t finished = bytes.size();
  while (finished > before.size() && IntegerAt(bytes, finished - 8) == 0) finished -= kBytes;
  return finished <= whole.size() &&
         (came == Came::ToAPowerLoss || whole.starts_with(bytes.substr(0, finished)));
}

bool Run() {
  constexpr std::size_t kPartOfRecord = 700;
  const Place place;
  FolderDesktop desktop(place.Program(), place.Top / "local");
  const std::string pack = PackName(Place::kSize);
  const std::string own = "PLBest01.bvq";
  const std::vector<PackRecord> spare = ReadPack("assets/packs/" + pack);
  const std::vector<PackRecord> five(spare.begin() + 60, spare.begin() + 65);
  const World installed = FilesIn(place.Program());
  std::string packBefore, ownBefore;
  const auto readFiles = [&] {
    packBefore = fs::exists(place.Pack()) ? BytesOf(place.Pack()) : "";
    ownBefore = BytesOf((place.Data() / own).string());
  };
  const auto content = [](const World& world, const std::string& name) {
    const auto found = world.find(name);
    return found == world.end() ? std::string() : found->second;
  };
  const auto grows = [&](const std::vector<PackRecord>& added) {
    return [&, added](const World& world, Came came) {
      // The next start brings the pack that comes with the game where none was begun.
      const std::string bytes = content(world, pack);
      const bool isInstalled = bytes == installed.at(pack);
      return (packBefore.empty() && came == Came::ToAKill && isInstalled) ||
             HasGrownSoundly(bytes, packBefore, added, came);
    };
  };
  std::string packAfter;
  const auto becomesAnother = [&](const World& world, Came came) {
    const std::string bytes = content(world, pack);
    return bytes == packAfter || (came != Came::ToItsEnd && bytes == packBefore);
  };
  const auto make = [&](const std::vector<PackRecord>& puzzles) {
    PackAppender(place.Pack(), Place::kSize, PackAppender::Twins::Keep).Add(puzzles);
  };
  const auto makeStarved = [&] {
    const FileSizeLimit limit(packBefore.size() + kPartOfRecord);
    try {
      make({spare.at(65)});
    } catch (const InputError&) {
    }
  };

  // One pack was begun by a program that died.
  bool passes = Passes(
      place, {"first start", [&] { WriteBytes(place.Pack(), ""); }, [&] { const ProgramRun game(desktop); },
              [&](const World& world, Came came) {
                for (const auto& [name, bytes] : installed) {
                  const bool there = world.count(name) != 0;
                  const bool begun = name == pack && there && world.at(name).empty();
                  if (there ? world.at(name) != bytes && !begun : came == Came::ToItsEnd) return false;
                }
                return came != Came::ToItsEnd || !world.at(pack).empty();
              }});

  ProgramRun game(desktop);
  const auto saveNew = [&] {
    game.global.PuzzleRec = spare.at(50);
    Save_New(game.main);
  };
  passes &= Passes(place, {"new puzzle", readFiles, saveNew, grows({spare.at(50)})});
  passes &= Passes(place, {"no room for a new puzzle", readFiles,
                           [&] {
                             const FileSizeLimit limit(packBefore.size() + kPartOfRecord);
                             saveNew();
                           },
                           grows({}), End::Refused});
  passes &= Passes(place, {"puzzles made", readFiles, [&] { make(five); }, grows(five)});
  passes &= Passes(place, {"puzzles made behind some that were never finished",
                           [&] {
                             readFiles();
                             fs::resize_file(place.Pack(), packBefore.size() + 2 * sizeof(PackRecord));
                           },
                           [&] { make({spare.at(66)}); }, grows({spare.at(66)})});
  passes &= Passes(place, {"no room for a new pack",
                           [&] {
                             fs::remove(place.Pack());
                             readFiles();
                           },
                           makeStarved, grows({}), End::Refused});
  passes &= Passes(place, {"first puzzle of a pack", [&] { game.main.PuzzleCount[0] = 0; }, saveNew,
                           grows({spare.at(50)})});

  WriteBytes(place.Pack(), BytesOfAll(spare).substr(0, 3 * sizeof(PackRecord)));
  const auto solve = [&](int seconds) {
    return [&, seconds] {
      game.main.Elapsed = seconds;
      RecordTimes(game.main);
    };
  };
  const auto open = [&] {
    CountPacks(game.main);
    game.global.CurrentPlayer = 1;
    desktop.Inputs = {"2"};
    cmdOpen_Click(game.main);
    readFiles();
    packAfter = packBefore;
  };
  const auto keepsTime = [&](const std::string& best, const std::string& ownTime) {
    return [&, best, ownTime](const World& world, Came came) {
      const std::string bytes = content(world, pack);
      const std::string ownBytes = content(world, own);
      const std::string after = std::string(packBefore).replace(sizeof(PackRecord) + 1370, 6, best);
      const bool kept = bytes == after && ownBytes == ownTime;
      const bool ownIsSound =
          ownBytes == ownTime || ownBytes == ownBefore || ownBytes == std::string(8, '\0');
      return kept || (came != Came::ToItsEnd && ownIsSound && (bytes == after || bytes == packBefore));
    };
  };
  passes &=
      Passes(place, {"time kept", open, solve(61), keepsTime(Integers({1, 1, 1}), Integers({2, 38, 1, 1}))});
  passes &= Passes(
      place, {"better time", open, solve(59), keepsTime(Integers({0, 59, 1}), Integers({2, 38, 0, 59}))});

  const std::string kept = "Kept06-2-01.txt";
  std::string keptBefore;
  passes &= Passes(place, {"game kept in the place of an older",
                           [&] {
                             open();
                             KeepGame(game.main);
                             keptBefore = BytesOf((place.Data() / kept).string());
                             game.main.StepCount = 0;
                             AddPenalty(game.main, 75);
                           },
                           [&] { KeepGame(game.main); },
                           [&](const World& world, Came came) {
                             const std::string bytes = content(world, kept);
                             const bool isNew =
                                 bytes.find("\nclock 75\n") != bytes.npos && bytes.ends_with("\n");
                             return isNew || (came != Came::ToItsEnd && bytes == keptBefore);
                           }});

  std::vector<PackRecord> changed;
  const auto change = [&](const std::function<void(PackRecord&)>& act) {
    return [&, act] {
      readFiles();
      changed = ReadSoundPack(place.Pack());
      for (PackRecord& record : changed) act(record);
      packAfter = BytesOfAll(changed);
    };
  };
  passes &= Passes(
      place, {"rewrite", change([](PackRecord& record) { record.BestMinutes = 9; }),
              [&] { PackRewrite(place.Pack(), {}, [&](const PackContent&) { return changed; }).Commit(); },
              becomesAnother});
  return passes;
}

}  // namespace
}  // namespace bivouac

int main() {
  try {
    return bivouac::Run() ? 0 : 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "power_loss: %s\n", error.what());
    return 2;
  }
}
