// Tries a sound engine in a process of its own. Ends with 0 if it has a device to play on.
#include <dlfcn.h>
#include <memory>

#include "window/sound_engine.h"

int main(int argc, char** argv) {
  void* module = argc == 2 ? dlopen(argv[1], RTLD_LAZY) : nullptr;
  void* open = module == nullptr ? nullptr : dlsym(module, bivouac::kOpenSoundEngine);
  if (open == nullptr) return 1;
  const std::unique_ptr<bivouac::SoundEngine> engine(reinterpret_cast<bivouac::OpenSoundEngine*>(open)());
  return engine == nullptr ? 1 : 0;
}
