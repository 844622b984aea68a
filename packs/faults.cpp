#include "packs/faults.h"

#include <array>

#include "game/board.h"
#include "generator/unique_solution.h"
#include "packs/pack_access.h"
#include "packs/ranges.h"
#include "rating/rating.h"
#include "storage/record_file.h"
#include "workbench/workbench.h"

namespace bivouac {
namespace {

std::string Number(long value) {
  return std::to_string(value);
}

std::string Indexed(const char* field, int index) {
  return std::string(field) + '[' + Number(index) + ']';
}

const char* NameOf(RecordField field) {
  return std::array{"Layout", "TentDirs", "RowCounts", "ColCounts"}.at(static_cast<std::size_t>(field));
}

std::string KindOf(RecordField field) {
  if (field == RecordField::Layout) return "the code ";
  return field == RecordField::TentDirs ? "the direction " : "";
}

/// Looks through one record and collects what is wrong with it.
class Inspection {
 public:
  Inspection(std::vector<Fault>& faults, long number, const PackRecord& record, Main& main)
      : faults_(faults), number_(number), record_(record), main_(main), size_(SizeOf(record.LevelSize)) {}

  void Run(int sizeOfPack) {
    if (!IsSize(size_)) {
      Add("LevelSize", "the size is " + Number(size_) + ", not 6 to 18");
      return;
    }
    if (sizeOfPack != 0 && size_ != sizeOfPack) {
      Add("LevelSize", "the size is " + Number(size_) + " in a pack of size " + Number(sizeOfPack));
    }
    LayOutRecord(main_, record_);
    CheckBestTime();
    const std::size_t before = faults_.size();
    CheckRanges();
    if (faults_.size() != before) return;
    CheckTents();
    CheckCounts();
    if (faults_.size() == before) CheckByRules();
  }

 private:
  void Add(std::string field, std::string words) {
    faults_.push_back({number_, std::move(field), std::move(words)});
  }

  void CheckBestTime() {
    if (record_.BestMinutes < 0) Add("BestMinutes", Number(record_.BestMinutes) + " is below 0");
    if (record_.BestSeconds < 0 || record_.BestSeconds > 59) {
      Add("BestSeconds", Number(record_.BestSeconds) + " is not 0 to 59");
    }
    if (record_.BestPlayer < 0) Add("BestPlayer", Number(record_.BestPlayer) + " is below 0");
  }

  void CheckRanges() {
    ForEachOutOfRange(record_, [&](RecordField field, int index, int value, int highest) {
      const bool isOfCell = field == RecordField::Layout || field == RecordField::TentDirs;
      Add(Indexed(NameOf(field), index),
          highest == 0
              ? Number(value) + " behind the last " + (isOfCell ? "cell" : "line") + ", where 0 belongs"
              : KindOf(field) + Number(value) + " is not 0 to " + Number(highest));
    });
  }

  void CheckTents() {
    FixedArray<int, kMaxCells> trees;  // By cell: the trees that have their tent there.
    for (int tree = 0; tree < main_.CellCount; ++tree) {
      if (record_.Layout[tree] != CELL_TREE) continue;
      bool hasTent = false;
      ForEachSide(main_.BoardSize, tree, [&](int side, int direction) {
        if (direction != record_.TentDirs[tree]) return;
        ++trees[side];
        hasTent = record_.Layout[side] == CELL_TENT;
      });
      if (!hasTent) Add(Indexed("TentDirs", tree), "no tent stands where this tree has its own");
    }
    for (int tent = 0; tent < main_.CellCount; ++tent) {
      if (record_.Layout[tent] != CELL_TENT) continue;
      const int owners = trees[tent];
      if (owners == 0) Add(Indexed("Layout", tent), "a tent without its tree");
      if (owners > 1) Add(Indexed("Layout", tent), "a tent of " + Number(owners) + " trees");
      AnyAround(main_, tent, [&](int near) {
        const bool touches = near > tent && record_.Layout[near] == CELL_TENT;
        if (touches) Add(Indexed("Layout", tent), "the tent touches the one on cell " + Number(near));
        return touches;
      });
    }
  }

  void CheckCounts() {
    for (int i = 0; i < size_; ++i) {
      int inRow = 0;
      int inCol = 0;
      for (int j = 0; j < size_; ++j) {
        inRow += record_.Layout[i * size_ + j] == CELL_TENT;
        inCol += record_.Layout[j * size_ + i] == CELL_TENT;
      }
      CheckCount("RowCounts", i, record_.RowCounts[i], inRow);
      CheckCount("ColCounts", i, record_.ColCounts[i], inCol);
    }
  }

  void CheckCount(const char* field, int line, int clue, int tents) {
    if (clue != tents)
      Add(Indexed(field, line), Number(clue) + ", but the line has " + Number(tents) + " tents");
  }

  void CheckByRules() {
    bool unique = false;
    CheckUniqueSolution(main_, unique);
    if (!unique) Add("Layout", "a second solution, by the measure of the generator's proof");
    int level = 0;
    RatePuzzle(main_, level);
    const int stored = LevelOf(record_.LevelSize);
    if (level != stored)
      Add("LevelSize", "the level is " + Number(stored) + ", the rater gives " + Number(level));
  }

  std::vector<Fault>& faults_;
  const long number_;
  const PackRecord& record_;
  Main& main_;
  const int size_;
};

}  // namespace

int SizeOfPack(const std::string& name, const PackContent& content) {
  if (const int named = SizeInName(name); named != 0) return named;
  const int size = content.Records.empty() ? 0 : SizeOf(content.Records.front().LevelSize);
  return IsSize(size) ? size : 0;
}

std::vector<Fault> FaultsOf(const std::string& name, const PackContent& content, Main& main) {
  std::vector<Fault> faults;
  const int size = SizeOfPack(name, content);
  long number = 0;
  for (const PackRecord& record : content.Records) Inspection(faults, ++number, record, main).Run(size);
  if (content.SpareBytes != 0) {
    faults.push_back({0, "length",
                      Number(content.SpareBytes) + " bytes behind the last whole record of " +
                          Number(RecordFile<PackRecord>::kBytes)});
  }
  return faults;
}

}  // namespace bivouac
