// What every target shares. A target is one source with LLVMFuzzerTestOneInput: it does what the bytes tell
// it, and calls Fault where something is wrong.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace bivouac {

/// Counts an event, whatever the target takes for one. The sum is printed when the program ends.
void CountEvent();

/// Takes in what an input ended with, for a sum of all that is printed with that of the events.
void NoteEnd(const std::string& state);

/// Prints what is wrong and ends the program by abort, so that the input is kept.
[[noreturn]] void Fault(const std::string& what);

}  // namespace bivouac
