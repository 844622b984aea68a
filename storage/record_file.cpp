#include "storage/record_file.h"

#include <algorithm>
#include <array>
#include <bit>
#include <type_traits>
#include <utility>

#include "game/text.h"
#include "storage/platform_files.h"

namespace bivouac {
namespace {

/// Puts the integers of records from the order of a file into the machine's, or back.
void Reorder(std::span<std::uint8_t> bytes) {
  if constexpr (std::endian::native == std::endian::little) return;
  for (std::size_t i = 0; i < bytes.size(); i += 2) std::swap(bytes[i], bytes[i + 1]);
}

}  // namespace

template <class Record>
std::vector<std::uint8_t> BytesOf(std::span<const Record> records) {
  const auto* const first = reinterpret_cast<const std::uint8_t*>(records.data());
  std::vector<std::uint8_t> bytes(first, first + records.size_bytes());
  Reorder(bytes);
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
  Record read;
  ReadInto(number, std::span(&read, 1));
  record = read;
}

template <class Record>
std::vector<Record> RecordFile<Record>::ReadAll(long first) const {
  std::vector<Record> records(static_cast<std::size_t>(std::max(0L, Counts().Whole - first + 1)));
  ReadInto(first, records);
  return records;
}

template <class Record>
void RecordFile<Record>::ReadInto(long first, std::span<Record> records) const {
  static_assert(std::is_trivially_copyable_v<Record>);
  const std::span bytes(reinterpret_cast<std::uint8_t*>(records.data()), records.size_bytes());
  if (ReadAt(OffsetOf(first), bytes) < bytes.size())
    ThrowFileError(ErrorNumber::PastEndOfFile, "past the end of the file", Path());
  Reorder(bytes);
}

template <class Record>
void RecordFile<Record>::WriteAll(long first, std::span<const Record> records) {
  if (records.empty()) return;
  const Turn turn(*this);
  CutTo(FinishedLength());
  WriteAt(OffsetOf(first), BytesOf(records));
}

template <class Record>
void RecordFile<Record>::WriteEnd(long number, const Record& record) {
  const std::vector<std::uint8_t> bytes = BytesOf(std::span(&record, 1));
  WriteAt(OffsetOf(number) + kBytes - kEndBytes, std::span(bytes).last(kEndBytes));
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
template RecordCounts CountRecords<PackRecord>(const std::string& path);
template RecordCounts CountRecords<PersonalRecord>(const std::string& path);

}  // namespace bivouac
