// An ordinary main for a target, where there is no libFuzzer: plays the inputs of files, or a season of
// random ones that is the same each time.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string_view>
#include <vector>

#include "fuzz/target.h"
#include "generator/random.h"

namespace {

constexpr int kLongest = 1500;  // Bytes of an input.

void Play(const std::vector<std::uint8_t>& input) {
  LLVMFuzzerTestOneInput(input.data(), input.size());
}

/// Writes an input before it is played, so that it stands there if it finds a fault.
void PlaySeason(std::uint64_t seed, long inputs, const char* keep) {
  for (long i = 0; i < inputs; ++i, ++seed) {
    bivouac::Random random(seed);
    std::vector<std::uint8_t> input(static_cast<std::size_t>(1 + random.Below(kLongest)));
    for (std::uint8_t& byte : input) byte = static_cast<std::uint8_t>(random.Below(256));
    if (keep != nullptr) {
      std::ofstream(keep, std::ios::binary)
          .write(reinterpret_cast<const char*>(input.data()), static_cast<std::streamsize>(input.size()));
    }
    Play(input);
  }
}

}  // namespace

/// Arguments: files; or --season INPUTS [SEED [FILE]], which keeps the present input in FILE.
int main(int argc, char** argv) {
  if (argc > 2 && std::string_view(argv[1]) == "--season") {
    const std::uint64_t seed = argc > 3 ? std::strtoull(argv[3], nullptr, 10) : 1;
    PlaySeason(seed, std::atol(argv[2]), argc > 4 ? argv[4] : nullptr);
    return 0;
  }
  for (int i = 1; i < argc; ++i) {
    std::ifstream file(argv[i], std::ios::binary);
    if (!file.is_open()) {
      std::fprintf(stderr, "%s cannot be read\n", argv[i]);
      return 1;
    }
    Play({std::istreambuf_iterator<char>(file), {}});
  }
}
