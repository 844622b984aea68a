#include "packs/pack_access.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <ostream>
#include <set>
#include <thread>

#include "packs/alike.h"
#include "storage/pack_files.h"
#include "storage/platform_files.h"

namespace bivouac {
namespace {

constexpr int kAttempts = 3;  // After these a rewrite makes the others wait.
constexpr auto kClockStep = std::chrono::milliseconds(25);

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

/// Runs a step whose file errors are errors of the input.
template <class Step>
auto OnPack(Step step) {
  try {
    return step();
  } catch (const RunTimeError& error) {
    throw InputError(error.what());
  }
}

PackContent ContentOf(const RecordFile<PackRecord>& file) {
  PackContent content{file.ReadAll(), file.SpareBytes()};
  const auto records = static_cast<long>(file.TakeStamp().Length / RecordFile<PackRecord>::kBytes);
  content.Unfinished = std::max(0L, records - static_cast<long>(content.Records.size()));
  return content;
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

void RequireNoInput(const std::string& output, const std::vector<std::string>& inputs) {
  std::error_code error;
  for (const std::string& input : inputs) {
    if (std::filesystem::equivalent(output, input, error))
      throw InputError(output + ": the output is an input");
  }
}

PackContent ReadContent(const std::string& path) {
  if (!FileExists(path)) throw InputError(path + ": no such file");
  return OnPack([&] { return ContentOf(RecordFile<PackRecord>(path)); });
}

const std::vector<PackRecord>& SoundRecords(const std::string& path, const PackContent& content) {
  if (content.SpareBytes != 0)
    throw InputError(path + ": " + std::to_string(content.SpareBytes) +
                     " bytes behind the last whole record");
  RequireSizes(path, content.Records, kMinSize, kMaxSize);
  return content.Records;
}

std::vector<PackRecord> ReadSoundPack(const std::string& path) {
  return SoundRecords(path, ReadContent(path));
}

void RequireSize(const std::string& path, const std::vector<PackRecord>& records, int size) {
  RequireSizes(path, records, size, size);
}

Patience LongPatience(std::ostream& err) {
  const auto said = std::make_shared<std::set<std::string>>();
  return {std::chrono::seconds(30), [&err, said](const std::string& words) {
            if (said->insert(words).second) err << "bivouac-packs: " << OnOneLine(words) << std::endl;
          }};
}

PackRewrite::PackRewrite(std::string path, Patience patience, Change change)
    : path_(std::move(path)), patience_(std::move(patience)), change_(std::move(change)) {
  Read();
}

void PackRewrite::Read() {
  if (!FileExists(path_)) throw InputError(path_ + ": no such file");
  OnPack([&] {
    const RecordFile<PackRecord> pack(path_, Access::Write);
    stamp_ = pack.TakeStamp();
    if (!stamp_.Certain) {
      std::this_thread::sleep_for(kClockStep);
      stamp_ = pack.TakeStamp();
    }
    Prepare(ContentOf(pack));
  });
}

void PackRewrite::Prepare(PackContent content) {
  if (replacement_ && content == before_) return;
  replacement_.reset();
  const PackContent after{change_(content)};
  before_ = std::move(content);
  if (after == before_) return;
  replacement_ = std::make_unique<Replacement>(path_);
  replacement_->Append(BytesOf<PackRecord>(after.Records));
  replacement_->Sync();
}

void PackRewrite::Commit(const std::function<void()>& last) {
  for (int attempt = 1; replacement_; ++attempt) {
    if (attempt > 1) Read();
    OnPack([&] {
      RecordFile<PackRecord> pack(path_, Access::Write, patience_);
      const Turn turn(pack);
      const bool isAsRead = stamp_.Certain && pack.TakeStamp() == stamp_;
      if (!isAsRead && attempt < kAttempts) return;
      if (!isAsRead) Prepare(ContentOf(pack));
      if (replacement_) {
        last();
        replacement_->TakePlace();
      }
      replacement_.reset();
    });
  }
}

PackAppender::PackAppender(std::string path, int size, Twins twins, Patience patience)
    : path_(std::move(path)), twins_(twins), patience_(std::move(patience)) {
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
      file_.emplace(path_, Access::Create, patience_);
    }
    while (!addInTurn()) {
    }
    if (added_ != before) file_->Sync();
  } catch (const RunTimeError& error) {
    std::string words = error.what();
    if (added_ > 0) words += "; added before: " + std::to_string(added_);
    if (file_ && created_ && added_ == 0) IgnoringFileErrors([&] { file_->RemoveIfEmpty(); });
    throw InputError(words);
  }
}

}  // namespace bivouac
