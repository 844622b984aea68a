// Packs on disk: added to and rewritten. A pack is never left half-written, and other programs may use it at
// the same time.
#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "game/error.h"
#include "game/text.h"
#include "packs/pack_reader.h"
#include "storage/replacement.h"

namespace bivouac {

/// The path without its folder, on one line.
std::string FileName(const std::string& path);

/// The size that a pack's name such as "BVPack06.bvq" tells; 0 for any other name.
int SizeInName(const std::string& name);

/// Errors: InputError if a file to be written is one of those that are read.
void RequireNoInput(const std::string& output, const std::vector<std::string>& inputs);

/// The patience of a program that nobody waits for: half a minute. What a person should know goes there, each
/// sentence once.
Patience LongPatience(std::ostream& err);

/// Puts a new content in the place of a pack's, which is prepared beside it. What other programs change
/// meanwhile is kept: the change is made anew then, while they wait. Errors: InputError, file errors; the
/// pack is as it was then.
class PackRewrite {
 public:
  /// What is to stand in a pack instead of this. Called again if the pack changes meanwhile, when it should
  /// not look long at what is as it was.
  using Change = std::function<std::vector<PackRecord>(const PackContent&)>;

  /// Brings the new content to the disk, unless it is what stands there already.
  PackRewrite(std::string path, Patience patience, Change change);
  /// `last` is called in the turn, when nothing but an error from it can keep the change back any more.
  void Commit(const std::function<void()>& last = [] {});

 private:
  void Prepare(PackContent content);

  std::string path_;
  Patience patience_;
  Change change_;
  PackContent before_;
  SharedFile::Stamp stamp_{};  ///< Of the pack when it was `before_`.
  std::unique_ptr<Replacement> replacement_;
};

/// Adds puzzles behind those of a pack, in short turns. Several programs may do so at the same time.
class PackAppender {
 public:
  enum class Twins { Keep, LeaveOut };

  /// The pack is created with the first puzzle. Errors: InputError if there is one already that is not sound
  /// or has puzzles of another size.
  PackAppender(std::string path, int size, Twins twins, Patience patience = {});

  /// Adds puzzles and returns when they have reached the disk. With LeaveOut, those that are alike to one of
  /// the pack, turned and mirrored boards included, are left out. Errors: InputError, which says how many
  /// were added before; a new pack into which none came is not left behind.
  void Add(const std::vector<PackRecord>& puzzles);
  /// How many were added so far.
  long Added() const { return added_; }

 private:
  void LookAtNewRecords();

  std::string path_;
  Twins twins_;
  Patience patience_;
  std::optional<RecordFile<PackRecord>> file_;
  std::unordered_set<std::string> views_;  ///< Of the puzzles in the pack.
  long seen_ = 0;                          ///< Records whose views are known, of the file opened last.
  int openings_ = 0;
  bool created_ = false;  ///< The file was not there.
  long added_ = 0;
};

}  // namespace bivouac
