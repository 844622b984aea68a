// Calls that the C library of the platform lacks.
#include <cerrno>
#include <cstdio>
#include <sys/stat.h>

// Files in memory have one name. The only use of a second one is to refuse a name that is taken; the first is
// removed afterwards, so it may as well be gone.
extern "C" int linkat(int, const char* from, int, const char* to, int) {
  struct stat taken {};
  if (stat(to, &taken) != 0) return std::rename(from, to);
  errno = EEXIST;
  return -1;
}

// Room in memory is not kept.
extern "C" int fallocate(int, int, off_t, off_t) {
  errno = ENOTSUP;
  return -1;
}
