#include "fuzz/target.h"

#include <cstdio>
#include <cstdlib>

namespace bivouac {
namespace {

struct EventCount {
  ~EventCount() { std::fprintf(stderr, "events: %llu\n", Events); }
  unsigned long long Events = 0;
};
EventCount eventCount;

}  // namespace

void CountEvent() {
  ++eventCount.Events;
}

void Fault(const std::string& what) {
  std::fprintf(stderr, "FAULT: %s\n", what.c_str());
  std::abort();
}

}  // namespace bivouac
