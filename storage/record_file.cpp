#include "storage/record_file.h"

#include <algorithm>
#include <array>

#include "game/text.h"
#include "storage/platform_files.h"

namespace bivouac {
namespace {

constexpr std::size_t kBlockRecords = 64;  // Read in one go.

/// Calls visit(field) for every integer of a record, in the order of the file.
template <class Record, class Visit>
void ForEachField(Record& record, Visit visit) {
  if constexpr (requires { record.TentDirs; }) {
    for (auto& field : record.TentDirs) visit(field);
    for (auto& field : record.Layout) visit(field);
    for (auto& field : record.RowCounts) visit(field);
    for (auto& field : record.ColCounts) visit(field);
    visit(record.LevelSize);
    visit(record.BestMinutes);
    visit(record.BestSeconds);
    visit(record.BestPlayer);
  } else {
    visit(record.PersonalPuzzle);
    visit(record.PersonalLevelSize);
    visit(record.PersonalMinutes);
    visit(record.PersonalSeconds);
  }
}

template <class Record>
void Decode(std::span<const std::uint8_t> bytes, Record& record) {
  auto next = bytes.begin();
  ForEachField(record, [&](std::int16_t& field) {
    const unsigned low = *next++;
    const unsigned high = *next++;
    field = static_cast<std::int16_t>(low | high << 8);
  });
}

}  // namespace

template <class Record>
std::vector<std::uint8_t> BytesOf(std::span<const Record> records) {
  std::vector<std::uint8_t> bytes;
  bytes.reserve(records.size_bytes());
  for (const Record& record : records) {
    ForEachField(record, [&](const std::int16_t& field) {
      const auto bits = static_cast<std::uint16_t>(field);
      bytes.push_back(static_cast<std::uint8_t>(bits & 0xFF));
      bytes.push_back(static_cast<std::uint8_t>(bits >> 8));
    });
  }
  return bytes;
}

template <class Record>
std::uintmax_t RecordFile<Record>::OffsetOf(long number) const {
  if (number < 1) ThrowFileError(ErrorNumber::BadRecordNumber, "bad record number", Path());
  return static_cast<std::uintmax_t>(number - 1) * kBytes;
}

/// How much of a file is finished: what a pack's last record lacks is its size. More of such records than
/// programs can leave are somebody's own, and stay.
template <class Record>
std::uintmax_t RecordFile<Record>::FinishedLength() const {
  std::uintmax_t length = Length();
  if constexpr (requires(Record record) { record.LevelSize; }) {
    constexpr int kMostUnfinished = 4096;
    constexpr std::array<std::uint8_t, 2> kNoSize{};
    for (int i = 0; i < kMostUnfinished && length >= kBytes && length % kBytes == 0; ++i) {
      std::array<std::uint8_t, 2> size{};
      if (ReadAt(length - kEndBytes, size) == size.size() && size != kNoSize) break;
      length -= kBytes;
    }
  }
  return length;
}

template <class Record>
void RecordFile<Record>::Read(long number, Record& record) const {
  std::array<std::uint8_t, kBytes> bytes;
  if (ReadAt(OffsetOf(number), bytes) < bytes.size())
    ThrowFileError(ErrorNumber::PastEndOfFile, "past the end of the file", Path());
  Decode(bytes, record);
}

template <class Record>
std::vector<Record> RecordFile<Record>::ReadAll(long first) const {
  std::vector<Record> records(static_cast<std::size_t>(std::max(0L, Counts().Whole - first + 1)));
  std::vector<std::uint8_t> block(kBlockRecords * kBytes);
  for (std::size_t start = 0; start < records.size(); start += kBlockRecords) {
    const std::size_t count = std::min(kBlockRecords, records.size() - start);
    const std::span bytes = std::span(block).first(count * kBytes);
    if (ReadAt(OffsetOf(first) + start * kBytes, bytes) < bytes.size())
      ThrowFileError(ErrorNumber::PastEndOfFile, "the file became shorter", Path());
    for (std::size_t i = 0; i < count; ++i) Decode(bytes.subspan(i * kBytes, kBytes), records[start + i]);
  }
  return records;
}

template <class Record>
void RecordFile<Record>::WriteAll(long first, std::span<const Record> records) {
  if (records.empty()) return;
  const Turn turn(*this);
  CutTo(FinishedLength());
  WriteAt(OffsetOf(first), BytesOf(records), kBytes);
}

template <class Record>
void RecordFile<Record>::WriteEnd(long number, const Record& record) {
  const std::vector<std::uint8_t> bytes = BytesOf(std::span(&record, 1));
  WriteAt(OffsetOf(number) + kBytes - kEndBytes, std::span(bytes).last(kEndBytes), kEndBytes);
}

template <class Record>
void RecordFile<Record>::RemoveIfEmpty() {
  const Turn turn(*this);
  if (FinishedLength() == 0) DeleteWholeFile(BehindLinks(Path()));
}

template <class Record>
RecordCounts RecordFile<Record>::Counts() const {
  const std::uintmax_t length = FinishedLength();
  const double quotient = static_cast<double>(length) / kBytes;
  return {RoundHalfEven(quotient), static_cast<long>(length / kBytes), RoundHalfEven(quotient + 1)};
}

template <class Record>
RecordCounts CountRecords(const std::string& path) {
  RecordCounts counts;
  IgnoringFileErrors([&] { counts = RecordFile<Record>(path).Counts(); });
  return counts;
}

template class RecordFile<PackRecord>;
template class RecordFile<PersonalRecord>;
template std::vector<std::uint8_t> BytesOf(std::span<const PackRecord> records);
template std::vector<std::uint8_t> BytesOf(std::span<const PersonalRecord> records);
template RecordCounts CountRecords<PackRecord>(const std::string& path);
template RecordCounts CountRecords<PersonalRecord>(const std::string& path);

}  // namespace bivouac
