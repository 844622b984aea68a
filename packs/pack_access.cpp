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

constexpr auto kClockStep = std::chrono::milliseconds(25);

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

Patience LongPatience(std::ostream& err) {
  const auto said = std::make_shared<std::set<std::string>>();
  return {std::chrono::seconds(30), [&err, said](const std::string& words) {
            if (said->insert(words).second) err << "bivouac-packs: " << OnOneLine(words) << std::endl;
          }};
}

PackRewrite::PackRewrite(std::string path, Patience patience, Change change)
    : path_(std::move(path)), patience_(std::move(patience)), change_(std::move(change)) {
  const RecordFile<PackRecord> pack = OpenPack(path_, Access::Write);
  stamp_ = pack.TakeStamp();
  if (!stamp_.Certain) {
    std::this_thread::sleep_for(kClockStep);
    stamp_ = pack.TakeStamp();
  }
  Prepare(ContentOf(pack));
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
  if (!replacement_) return;
  RecordFile<PackRecord> pack(path_, Access::Write, patience_);
  const Turn turn(pack);
  if (!stamp_.Certain || pack.TakeStamp() != stamp_) Prepare(ContentOf(pack));
  if (!replacement_) return;
  last();
  replacement_->TakePlace();
  replacement_.reset();
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
    if (IsSize(size)) views_.insert(ViewedFromAnySide(record));
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
