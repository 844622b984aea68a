// The game without its window: bytes become presses, ticks, answers and hours.
#include "fuzz/game_player.h"
#include "fuzz/target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  bivouac::Bytes bytes(data, size);
  bivouac::PlayGame(bytes);
  return 0;
}
