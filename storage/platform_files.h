// Files and folders as wholes, and what all code that works on files needs of the platform.
#pragma once

#include <cerrno>
#include <cstdint>
#include <span>
#include <string>

#include "game/error.h"

namespace bivouac {

/// True if the path leads to something, whatever it is.
bool FileExists(const std::string& path);

/// Errors: a file error if the path names a folder or cannot be removed.
void DeleteWholeFile(const std::string& path);
/// Creates a folder, for its user alone, and its parents where missing. Errors are ignored: the first file in
/// it tells.
void CreateFolders(const std::string& path);

/// Runs a step and drops a file error that ends it. Returns whether there was none.
template <class Step>
bool IgnoringFileErrors(Step step) {
  try {
    step();
    return true;
  } catch (const RunTimeError& error) {
    if (!error.IsFileError()) throw;
    return false;
  }
}

// For storage/ itself.

inline constexpr unsigned kNewFileMode = 0666;  ///< Less what the user's mask takes away.

/// Repeats a call of the platform that a signal broke off. Returns what it returned.
template <class Call>
auto Repeating(Call call) {
  for (;;) {
    const auto result = call();
    if (result >= 0 || errno != EINTR) return result;
  }
}

/// Writes all bytes at an offset. Returns 0, or the platform's number for what failed.
int WriteAllAt(int descriptor, std::uintmax_t offset, std::span<const std::uint8_t> bytes);

enum class LockAnswer { Done, Busy, NotHere };
/// Takes the lock of the open file or folder, or gives it back; it dies with the descriptor.
LockAnswer SetLock(int descriptor, bool taken);

/// Returns 0 when what was written has reached the disk, or the platform's number for what failed. What
/// cannot be synced at all counts as synced.
int SyncDescriptor(int descriptor);
/// Brings the names in a folder to the disk. A folder that nobody may open is left to the platform. An error
/// says what was done before.
void SyncFolder(const std::string& folder, const std::string& before = "");
/// The folder in which a path lies; "." for a bare name.
std::string FolderOf(const std::string& path);
/// Where a chain of links ends, whether anything is there or not.
std::string BehindLinks(const std::string& path);

}  // namespace bivouac
