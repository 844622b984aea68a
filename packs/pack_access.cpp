#include "packs/pack_access.h"

#include <algorithm>
#include <filesystem>

#include "packs/alike.h"
#include "storage/pack_files.h"
#include "storage/platform_files.h"

namespace bivouac {
namespace {

constexpr int kAttempts = 3;  // After these a rewrite makes the others wait.

void RequireSizes(const std::string& path, const std::vector<PackRecord>& records, int lowest, int highest) {
  long number = 0;
  for (const PackRecord& record : records) {
    ++number;
    const int size = SizeOf(record.LevelSize);
    if (size >= lowest && size <= highest) continue;
    throw InputError(path + ": record " + std::to_string(number) + " has the size " + std::to_string(size) +
                     (lowest == highest ? ", not " + std::to_string(lowest) : ", which is not 6 to 18"));
  }
}

std::vector<PackRecord> RequireWhole(const std::string& path, PackContent content) {
  if (content.SpareBytes == 0) return std::move(content.Records);
  throw InputError(path + ": " + std::to_string(content.SpareBytes) + " bytes behind the last whole record");
}

/// Runs a step whose file errors are errors of the input.
template <class Step>
auto OnPack(Step step) {
  try {
    return step();
  } catch (const RunTimeError& error) {
    throw InputError(error.what());
  }
}

}  // namespace

int SizeInName(const std::string& name) {
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    if (name == PackName(size)) return size;
  }
  return 0;
}

std::string FileName(const std::string& path) {
  return OnOneLine(std::filesystem::path(path).filename().string());
}

PackContent ReadContent(const std::string& path) {
  // Opening creates what is not there.
  if (!FileExists(path)) throw InputError(path + ": no such file");
  return OnPack([&]() -> PackContent {
    RecordFile<PackRecord> file(path, Patience::Long);
    return {file.ReadAll(), file.SpareBytes()};
  });
}

std::vector<PackRecord> ReadSoundPack(const std::string& path) {
  std::vector<PackRecord> records = RequireWhole(path, ReadContent(path));
  RequireSizes(path, records, kMinSize, kMaxSize);
  return records;
}

void RequireSize(const std::string& path, const std::vector<PackRecord>& records, int size) {
  RequireSizes(path, records, size, size);
}

PackRewrite::PackRewrite(std::string path, Change change)
    : path_(std::move(path)), change_(std::move(change)) {
  Prepare(ReadSoundPack(path_));
}

void PackRewrite::Prepare(std::vector<PackRecord> records) {
  replacement_.reset();
  const std::vector<PackRecord> after = change_(records);
  before_ = std::move(records);
  if (after == before_) return;
  OnPack([&] {
    replacement_ = std::make_unique<Replacement>(path_);
    replacement_->Append(BytesOf<PackRecord>(after));
    replacement_->Sync();
  });
}

void PackRewrite::Commit() {
  for (int attempt = 1; replacement_; ++attempt) {
    if (attempt > 1 && attempt < kAttempts) Prepare(ReadSoundPack(path_));
    OnPack([&] {
      RecordFile<PackRecord> pack(path_, Patience::Long);
      const Turn turn(pack);
      std::vector<PackRecord> present = RequireWhole(path_, {pack.ReadAll(), pack.SpareBytes()});
      if (present != before_) {
        if (attempt < kAttempts) return;
        Prepare(std::move(present));
      }
      if (replacement_) replacement_->TakePlace();
      replacement_.reset();
    });
  }
}

PackAppender::PackAppender(std::string path, int size, Twins twins) : path_(std::move(path)), twins_(twins) {
  if (FileExists(path_)) RequireSize(path_, ReadSoundPack(path_), size);
}

void PackAppender::LookAtNewRecords() {
  // A rewrite may have put new puzzles anywhere.
  if (file_->Openings() != openings_) seen_ = 0;
  openings_ = file_->Openings();
  for (const PackRecord& record : file_->ReadAll(seen_ + 1)) {
    const int size = SizeOf(record.LevelSize);
    if (size >= kMinSize && size <= kMaxSize) views_.insert(ViewedFromAnySide(record));
    ++seen_;
  }
}

/// Whoever waits for the turn finds out that the name is free again.
void PackAppender::TakeBackEmptyFile() {
  IgnoringFileErrors([&] {
    const Turn turn(*file_);
    std::error_code error;
    const std::string behindLinks = std::filesystem::canonical(path_, error).string();
    if (file_->Counts().Whole + file_->SpareBytes() == 0) DeleteWholeFile(behindLinks);
  });
}

void PackAppender::Add(const std::vector<PackRecord>& puzzles) {
  if (puzzles.empty()) return;
  std::vector<std::string> views;
  if (twins_ == Twins::LeaveOut) {
    for (const PackRecord& puzzle : puzzles) views.push_back(ViewedFromAnySide(puzzle));
  }
  const long before = added_;
  const auto addInTurn = [&] {
    // Most of the looking is done while nobody waits.
    if (twins_ == Twins::LeaveOut) LookAtNewRecords();
    const Turn turn(*file_);
    if (twins_ == Twins::LeaveOut) {
      if (file_->Openings() != openings_) return false;
      LookAtNewRecords();
    }
    std::vector<PackRecord> wanted;
    if (twins_ == Twins::Keep) wanted = puzzles;
    for (std::size_t i = 0; i < views.size(); ++i) {
      if (views_.insert(std::move(views[i])).second) wanted.push_back(puzzles[i]);
    }
    const long whole = file_->Counts().Whole;
    if (IgnoringFileErrors([&] { file_->WriteAll(whole + 1, wanted); })) {
      added_ += static_cast<long>(wanted.size());
    } else {
      // As many as there is room for.
      for (long number = whole; const PackRecord& puzzle : wanted) {
        file_->Write(++number, puzzle);
        ++added_;
      }
    }
    seen_ = whole + static_cast<long>(wanted.size());
    return true;
  };
  try {
    if (!file_) {
      created_ = !FileExists(path_);
      file_.emplace(path_, Patience::Long);
    }
    while (!addInTurn()) {
    }
    if (added_ != before) file_->Sync();
  } catch (const RunTimeError& error) {
    std::string words = error.what();
    if (added_ > 0) words += "; added before: " + std::to_string(added_);
    if (file_ && created_ && added_ == 0) TakeBackEmptyFile();
    throw InputError(words);
  }
}

}  // namespace bivouac
