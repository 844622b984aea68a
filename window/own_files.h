// Where the program finds what belongs to it: beside itself in the tree that it was built in, in the system's
// folders once it is installed. Installed folders are found from the program's own, so that the whole may
// stand anywhere.
#pragma once

#include <string>

namespace bivouac {

/// The folder of the packs to begin with and the wave files. Requires: a QCoreApplication.
std::string OwnFolder();
/// The path of a file that the program opens or runs as a part of itself, whether it is there or not.
/// Requires: a QCoreApplication.
std::string OwnModule(const std::string& name);

/// The folder of the guide, with the separator at its end, whether there is one or not: an installed program
/// has it, and one that ./play built. Requires: a QCoreApplication.
std::string OwnGuide();

}  // namespace bivouac
