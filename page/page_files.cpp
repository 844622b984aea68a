// Files lie in memory; the browser's database holds what was synced, and tabs share it. files.js does the
// work.
#include <cerrno>
#include <string>
#include <sys/file.h>
#include <unistd.h>

#include "page/page.h"

namespace {

/// Asks the page, whose answer is 0 or one of <cerrno>.
int Asked(const char* what, int file, int number = 0) {
  const int reason = std::stoi(
      bivouac::AskPage(bivouac::Message().Add("ask", what).Add("file", file).Add("number", number).Text()));
  if (reason == 0) return 0;
  errno = reason;
  return -1;
}

}  // namespace

extern "C" {

// Both return once the browser has every change, of whatever file.
int fsync(int descriptor) {
  return Asked("sync", descriptor);
}
int fdatasync(int descriptor) {
  return Asked("sync", descriptor);
}

// A lock of all tabs. With it come the changes that other tabs have made to the file.
int flock(int descriptor, int operation) {
  return Asked("lock", descriptor, operation);
}

}  // extern "C"
