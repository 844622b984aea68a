#include "storage/record_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>

#include "game/text.h"

namespace bivouac {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr mode_t kNewFileMode = 0666;      // Less what the user's mask takes away.
constexpr std::size_t kBlockRecords = 64;  // Read in one go while writers wait.
constexpr std::chrono::milliseconds kShortPatience = 100ms;
constexpr std::chrono::milliseconds kLongPatience = 30s;
constexpr auto kBetweenTries = std::chrono::microseconds(200);

[[noreturn]] void ThrowFileError(ErrorNumber number, const std::string& words, const std::string& path) {
  throw RunTimeError(number, words + ": " + path);
}

/// Throws the file error for what the platform gave as the reason.
[[noreturn]] void ThrowFileError(int reason, const std::string& path) {
  switch (reason) {
    case ENOENT:
    case ENOTDIR:
      ThrowFileError(ErrorNumber::PathNotFound, "path not found", path);
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      ThrowFileError(ErrorNumber::DiskFull, "disk full", path);
    case ENAMETOOLONG:
      ThrowFileError(ErrorNumber::BadFileName, "bad file name", path);
    case EIO:
      ThrowFileError(ErrorNumber::DeviceInput, "error of the device", path);
    case ENODEV:
    case ENXIO:
      ThrowFileError(ErrorNumber::DeviceUnavailable, "device unavailable", path);
    case EISDIR:
      ThrowFileError(ErrorNumber::FileAccess, "a folder stands in the place of the file", path);
    default:
      ThrowFileError(ErrorNumber::FileAccess, "no access to the file", path);
  }
}

/// Repeats a call of the platform that a signal broke off. Returns what it returned.
template <class Call>
auto Repeating(Call call) {
  for (;;) {
    const auto result = call();
    if (result >= 0 || errno != EINTR) return result;
  }
}

enum class Lock { None, Shared, Exclusive };
enum class Answer { Done, Busy, NotHere };

/// The lock of the open file, which dies with it. Where a platform has no such lock, that of the whole file.
Answer TryToLock(int descriptor, Lock lock) {
#ifdef F_OFD_SETLK
  struct flock range {};
  range.l_type = static_cast<short>(lock == Lock::None ? F_UNLCK : lock == Lock::Shared ? F_RDLCK : F_WRLCK);
  range.l_whence = SEEK_SET;
  if (Repeating([&] { return fcntl(descriptor, F_OFD_SETLK, &range); }) == 0) return Answer::Done;
  if (errno == EAGAIN || errno == EACCES) return Answer::Busy;
  if (errno != EINVAL) return Answer::NotHere;
#endif
  const int operation = lock == Lock::None ? LOCK_UN : lock == Lock::Shared ? LOCK_SH : LOCK_EX;
  if (Repeating([&] { return flock(descriptor, operation | LOCK_NB); }) == 0) return Answer::Done;
  return errno == EWOULDBLOCK ? Answer::Busy : Answer::NotHere;
}

std::chrono::milliseconds LengthOf(Patience patience) {
  return patience == Patience::Short ? kShortPatience : kLongPatience;
}

/// Waits for other programs' turns; Busy if one did not end. What was waited in vain since the lock was last
/// free counts.
Answer WaitForLock(int descriptor, Lock lock, Patience patience, std::chrono::milliseconds& waited) {
  const std::chrono::milliseconds most = LengthOf(patience);
  const auto end = std::chrono::steady_clock::now() + most - waited;
  for (;;) {
    const Answer answer = TryToLock(descriptor, lock);
    if (answer == Answer::Busy && std::chrono::steady_clock::now() < end) {
      std::this_thread::sleep_for(kBetweenTries);
      continue;
    }
    waited = answer == Answer::Busy ? std::max(waited, most) : 0ms;
    return answer;
  }
}

/// Writes all bytes at an offset. Returns 0, or the platform's number for what failed.
int WriteAll(int descriptor, std::uintmax_t offset, std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t written =
        Repeating([&] { return pwrite(descriptor, bytes.data(), bytes.size(), static_cast<off_t>(offset)); });
    if (written < 0) return errno;
    if (written == 0) return ENOSPC;
    bytes = bytes.subspan(static_cast<std::size_t>(written));
    offset += static_cast<std::uintmax_t>(written);
  }
  return 0;
}

/// Returns 0, or the platform's number for what failed. What cannot be synced at all counts as synced.
int SyncDescriptor(int descriptor) {
  if (Repeating([&] { return fdatasync(descriptor); }) == 0) return 0;
  return errno == EINVAL || errno == ENOSYS || errno == EROFS ? 0 : errno;
}

std::string FolderOf(const std::string& path) {
  const fs::path folder = fs::path(path).parent_path();
  return folder.empty() ? "." : folder.string();
}

/// Brings the names in a folder to the disk. A folder that nobody may open is left to the platform. An error
/// says what was done before.
void SyncFolder(const std::string& folder, const std::string& before = "") {
  const int descriptor = Repeating([&] { return open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
  if (descriptor < 0) return;
  const int reason = SyncDescriptor(descriptor);
  close(descriptor);
  if (reason != 0) ThrowFileError(reason, folder + before);
}

/// Where a chain of links ends, whether anything is there or not.
std::string BehindLinks(const std::string& path) {
  constexpr int kMostLinks = 40;
  fs::path target = path;
  std::error_code error;
  for (int i = 0; i < kMostLinks && fs::is_symlink(target, error); ++i) {
    const fs::path next = fs::read_symlink(target, error);
    if (error) break;
    target = target.parent_path() / next;
  }
  return target.string();
}

/// A mark beside a file, only there while records are added. A program can be killed when a part of a record
/// is written: the kernel breaks its write off between two pages, a full disk or a limit at any byte. The
/// next turn finds the mark then, and cuts what is no record.
struct EndMark {
  std::uint64_t Before;       ///< The length of the file.
  std::uint64_t After;        ///< What it is to become.
  std::uint64_t RecordBytes;  ///< What it grows by.
};

std::string PathOfMark(const std::string& path) {
  const fs::path target = BehindLinks(path);
  return (target.parent_path() / (".bivouac-end-" + target.filename().string())).string();
}

/// Returns whether the mark stands. In a folder that takes no new files it is done without; where only the
/// room is missing, there is none for a record either. Errors: DiskFull.
bool MarkEnd(const std::string& path, const EndMark& end) {
  const std::string mark = PathOfMark(path);
  const int descriptor = Repeating([&] {
    return open(mark.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, kNewFileMode);
  });
  if (descriptor < 0) return false;
  const ssize_t written = Repeating([&] { return write(descriptor, &end, sizeof end); });
  close(descriptor);
  if (written == sizeof end) return true;
  unlink(mark.c_str());
  ThrowFileError(ENOSPC, path);
}

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

template <class Record>
std::array<std::uint8_t, sizeof(Record)> Encode(const Record& record) {
  std::array<std::uint8_t, sizeof(Record)> bytes;
  auto next = bytes.begin();
  ForEachField(record, [&](const std::int16_t& field) {
    const auto bits = static_cast<std::uint16_t>(field);
    *next++ = static_cast<std::uint8_t>(bits & 0xFF);
    *next++ = static_cast<std::uint8_t>(bits >> 8);
  });
  return bytes;
}

template <class Record>
RecordCounts CountsOf(std::uintmax_t length) {
  const double quotient = static_cast<double>(length) / sizeof(Record);
  return {RoundHalfEven(quotient), static_cast<long>(length / sizeof(Record)), RoundHalfEven(quotient + 1)};
}

}  // namespace

SharedFile::SharedFile(std::string path, Patience patience) : path_(std::move(path)), patience_(patience) {
  Open();
  if (!FileExists(PathOfMark(path_))) return;
  // A mark whose program is at work is no leftover, and nothing to wait for.
  waited_ = LengthOf(patience_);
  IgnoringFileErrors([this] { const Turn cuts(*this); });
  waited_ = 0ms;
}

SharedFile::~SharedFile() {
  Close();
}

void SharedFile::Open() {
  ++openings_;
  const auto attempt = [&](int flags) {
    return Repeating([&] { return open(path_.c_str(), flags | O_CLOEXEC | O_NONBLOCK, kNewFileMode); });
  };
  descriptor_ = attempt(O_RDWR | O_CREAT);
  writable_ = descriptor_ >= 0;
  if (!writable_) {
    const int reason = errno;
    descriptor_ = attempt(O_RDONLY);
    // Of a file that is not there, what kept it from being created tells more.
    if (descriptor_ < 0) ThrowFileError(errno == ENOENT ? reason : errno, path_);
  }
  struct stat status {};
  if (fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode)) return;
  Close();
  ThrowFileError(S_ISDIR(status.st_mode) ? EISDIR : EACCES, path_);
}

void SharedFile::Close() {
  if (descriptor_ >= 0) close(descriptor_);
  descriptor_ = -1;
}

/// A reader who waited in vain reads all the same: at worst it sees half of a write.
bool SharedFile::LockToRead() {
  return turns_ == 0 && WaitForLock(descriptor_, Lock::Shared, Patience::Short, waited_) == Answer::Done;
}

std::uintmax_t SharedFile::Length() {
  const bool locked = LockToRead();
  struct stat status {};
  const int reason = fstat(descriptor_, &status) == 0 ? 0 : errno;
  if (locked) TryToLock(descriptor_, Lock::None);
  if (reason != 0) ThrowFileError(reason, path_);
  return static_cast<std::uintmax_t>(status.st_size);
}

void SharedFile::ReadAt(std::uintmax_t offset, std::span<std::uint8_t> bytes) {
  const bool locked = LockToRead();
  int reason = 0;
  while (!bytes.empty() && reason == 0) {
    const ssize_t count =
        Repeating([&] { return pread(descriptor_, bytes.data(), bytes.size(), static_cast<off_t>(offset)); });
    if (count == 0) break;
    if (count < 0) {
      reason = errno;
    } else {
      bytes = bytes.subspan(static_cast<std::size_t>(count));
      offset += static_cast<std::uintmax_t>(count);
    }
  }
  if (locked) TryToLock(descriptor_, Lock::None);
  if (reason != 0) ThrowFileError(reason, path_);
  if (!bytes.empty()) ThrowFileError(ErrorNumber::PastEndOfFile, "past the end of the file", path_);
}

void SharedFile::WriteAt(std::uintmax_t offset, std::span<const std::uint8_t> bytes, int recordBytes) {
  if (!writable_) ThrowFileError(ErrorNumber::PermissionDenied, "the file is read-only", path_);
  const Turn turn(*this);
  const std::uintmax_t before = Length();
  if (before == 0) maybeNew_ = true;
  const std::uintmax_t after = offset + bytes.size();
  const bool marked =
      after > before && MarkEnd(path_, {before, after, static_cast<std::uint64_t>(recordBytes)});
  int reason = WriteAll(descriptor_, offset, bytes);
  if (reason != 0 && Length() > before && ftruncate(descriptor_, static_cast<off_t>(before)) != 0)
    reason = errno;
  if (marked) unlink(PathOfMark(path_).c_str());
  if (reason != 0) ThrowFileError(reason, path_);
}

void SharedFile::CutWhatAKilledProgramLeft() {
  const std::string mark = PathOfMark(path_);
  const int descriptor = Repeating([&] { return open(mark.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC); });
  if (descriptor < 0) return;
  EndMark end{};
  const bool known = read(descriptor, &end, sizeof end) == sizeof end && end.RecordBytes > 0;
  close(descriptor);
  const std::uintmax_t length = Length();
  // A file that has grown by more since, or was replaced, is left alone.
  if (known && length > end.Before && length < end.After) {
    const std::uintmax_t wholeRecords =
        std::max<std::uintmax_t>(end.Before, length - length % end.RecordBytes);
    if (length > wholeRecords && ftruncate(descriptor_, static_cast<off_t>(wholeRecords)) != 0) return;
  }
  unlink(mark.c_str());
}

void SharedFile::Sync() {
  if (const int reason = SyncDescriptor(descriptor_); reason != 0) ThrowFileError(reason, path_);
  if (maybeNew_) SyncFolder(FolderOf(BehindLinks(path_)));
  maybeNew_ = false;
}

Turn::Turn(SharedFile& file) : file_(file) {
  bool locked = false;
  // Of a file that cannot be written nothing changes.
  while (file_.turns_ == 0 && file_.writable_) {
    const Answer answer = WaitForLock(file_.descriptor_, Lock::Exclusive, file_.patience_, file_.waited_);
    if (answer == Answer::Busy) {
      ThrowFileError(ErrorNumber::PermissionDenied, "another program holds the file", file_.path_);
    }
    // Whoever held the lock may have put another file in the place of this one.
    struct stat opened {};
    struct stat named {};
    if (fstat(file_.descriptor_, &opened) == 0 && stat(file_.path_.c_str(), &named) == 0 &&
        opened.st_dev == named.st_dev && opened.st_ino == named.st_ino) {
      locked = answer == Answer::Done;
      break;
    }
    file_.Close();
    file_.Open();
  }
  ++file_.turns_;
  if (locked) file_.CutWhatAKilledProgramLeft();
}

Turn::~Turn() {
  if (--file_.turns_ == 0 && file_.writable_) TryToLock(file_.descriptor_, Lock::None);
}

template <class Record>
std::uintmax_t RecordFile<Record>::OffsetOf(long number) const {
  if (number < 1) ThrowFileError(ErrorNumber::BadRecordNumber, "bad record number", Path());
  return static_cast<std::uintmax_t>(number - 1) * kBytes;
}

template <class Record>
void RecordFile<Record>::Read(long number, Record& record) {
  std::array<std::uint8_t, kBytes> bytes;
  ReadAt(OffsetOf(number), bytes);
  Decode(bytes, record);
}

template <class Record>
std::vector<Record> RecordFile<Record>::ReadAll(long first) {
  std::vector<Record> records(static_cast<std::size_t>(std::max(0L, Counts().Whole - first + 1)));
  std::vector<std::uint8_t> block(kBlockRecords * kBytes);
  for (std::size_t start = 0; start < records.size(); start += kBlockRecords) {
    const std::size_t count = std::min(kBlockRecords, records.size() - start);
    const std::span bytes = std::span(block).first(count * kBytes);
    ReadAt(OffsetOf(first) + start * kBytes, bytes);
    for (std::size_t i = 0; i < count; ++i) Decode(bytes.subspan(i * kBytes, kBytes), records[start + i]);
  }
  return records;
}

template <class Record>
void RecordFile<Record>::Write(long number, const Record& record) {
  WriteAt(OffsetOf(number), Encode(record), kBytes);
}

template <class Record>
void RecordFile<Record>::WriteAll(long first, std::span<const Record> records) {
  if (records.empty()) return;
  std::vector<std::uint8_t> bytes;
  bytes.reserve(records.size() * kBytes);
  for (const Record& record : records) {
    const auto encoded = Encode(record);
    bytes.insert(bytes.end(), encoded.begin(), encoded.end());
  }
  WriteAt(OffsetOf(first), bytes, kBytes);
}

template <class Record>
RecordCounts RecordFile<Record>::Counts() {
  return CountsOf<Record>(Length());
}

template <class Record>
RecordCounts CountRecords(const std::string& path) {
  if (FileExists(path) && FileExists(PathOfMark(path))) IgnoringFileErrors([&] { RecordFile<Record>{path}; });
  std::error_code error;
  const std::uintmax_t length = fs::file_size(path, error);
  return CountsOf<Record>(error ? 0 : length);
}

template class RecordFile<PackRecord>;
template class RecordFile<PersonalRecord>;
template RecordCounts CountRecords<PackRecord>(const std::string& path);
template RecordCounts CountRecords<PersonalRecord>(const std::string& path);

Replacement::Replacement(const std::string& path) : target_(BehindLinks(path)) {
  std::random_device random;
  do {
    std::array<char, 40> name;
    std::snprintf(name.data(), name.size(), "/.bivouac-%08x%08x", random(), random());
    hidden_ = FolderOf(target_) + name.data();
    descriptor_ = Repeating([&] {
      return open(hidden_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC, kNewFileMode);
    });
  } while (descriptor_ < 0 && errno == EEXIST);
  if (descriptor_ < 0) ThrowFileError(errno, path);
  struct stat old {};
  if (stat(target_.c_str(), &old) != 0) return;
  // Where root works on a user's file, it stays the user's; nobody else may give files away.
  static_cast<void>(fchown(descriptor_, old.st_uid, old.st_gid) == 0);
  static_cast<void>(fchmod(descriptor_, old.st_mode & 07777) == 0);
}

Replacement::~Replacement() {
  close(descriptor_);
  if (!hidden_.empty()) unlink(hidden_.c_str());
}

void Replacement::Append(std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = Repeating([&] { return write(descriptor_, bytes.data(), bytes.size()); });
    if (written <= 0) ThrowFileError(written < 0 ? errno : ENOSPC, target_);
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
}

template <class Record>
void Replacement::Append(const std::vector<Record>& records) {
  std::vector<std::uint8_t> block;
  for (const Record& record : records) {
    const auto bytes = Encode(record);
    block.insert(block.end(), bytes.begin(), bytes.end());
    if (block.size() < kBlockRecords * sizeof(Record)) continue;
    Append(std::span<const std::uint8_t>(block));
    block.clear();
  }
  Append(std::span<const std::uint8_t>(block));
}

template void Replacement::Append(const std::vector<PackRecord>& records);

void Replacement::Sync() {
  if (Repeating([&] { return fsync(descriptor_); }) != 0 && errno != EINVAL && errno != ENOSYS) {
    ThrowFileError(errno, target_);
  }
}

void Replacement::TakePlace() {
  if (std::rename(hidden_.c_str(), target_.c_str()) != 0) ThrowFileError(errno, target_);
  hidden_.clear();
  SyncFolder(FolderOf(target_), ", when the file was changed: " + target_);
}

void Replacement::TakeFreePlace() {
  // A second name is refused where there is a file; a file system without second names knows such a rename.
  int reason = link(hidden_.c_str(), target_.c_str()) == 0 ? 0 : errno;
  if (reason != 0 && reason != EEXIST) {
#ifdef RENAME_NOREPLACE
    reason =
        renameat2(AT_FDCWD, hidden_.c_str(), AT_FDCWD, target_.c_str(), RENAME_NOREPLACE) == 0 ? 0 : errno;
    if (reason == 0) hidden_.clear();
#endif
  }
  if (reason != 0 && reason != EEXIST) ThrowFileError(reason, target_);
  if (!hidden_.empty()) unlink(hidden_.c_str());
  hidden_.clear();
  SyncFolder(FolderOf(target_));
}

bool FileExists(const std::string& path) {
  std::error_code error;
  static_cast<void>(fs::last_write_time(path, error));
  return !error;
}

void CopyWholeFile(const std::string& from, const std::string& to) {
  if (!FileExists(from)) ThrowFileError(ErrorNumber::FileNotFound, "file not found", from);
  const int source = Repeating([&] { return open(from.c_str(), O_RDONLY | O_CLOEXEC); });
  if (source < 0) ThrowFileError(errno, from);
  struct Closer {
    ~Closer() { close(Descriptor); }
    int Descriptor;
  };
  const Closer closer{source};
  Replacement copy(to);
  std::vector<std::uint8_t> block(1 << 16);
  for (;;) {
    const ssize_t count = Repeating([&] { return read(source, block.data(), block.size()); });
    if (count < 0) ThrowFileError(errno, from);
    if (count == 0) break;
    copy.Append(std::span<const std::uint8_t>(block).first(static_cast<std::size_t>(count)));
  }
  copy.Sync();
  copy.TakeFreePlace();
}

void DeleteWholeFile(const std::string& path) {
  std::error_code error;
  if (fs::is_directory(path, error)) ThrowFileError(EISDIR, path);
  fs::remove(path, error);
  if (error) ThrowFileError(error.value(), path);
}

void CreateFolders(const std::string& path) {
  std::error_code error;
  std::vector<fs::path> made;
  for (fs::path folder = path; !folder.empty() && !fs::exists(folder, error); folder = folder.parent_path()) {
    made.push_back(folder);
    if (folder == folder.parent_path()) break;
  }
  fs::create_directories(path, error);
  for (const fs::path& folder : made) {
    IgnoringFileErrors([&] { SyncFolder(FolderOf(folder.string())); });
  }
}

}  // namespace bivouac
