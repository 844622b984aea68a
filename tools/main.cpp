// bivouac-packs: makes, checks and shows packs of puzzles. See bivouac-packs.6.
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <unistd.h>

#include "packs/pack_access.h"
#include "tools/command_line.h"

namespace bivouac {
namespace {

bool UnderstandsColours() {
  const char* terminal = std::getenv("TERM");
  return isatty(STDOUT_FILENO) != 0 && std::getenv("NO_COLOR") == nullptr && terminal != nullptr &&
         std::string_view(terminal) != "dumb";
}

int BadInput(const std::string& text) {
  std::cerr << "bivouac-packs: " << OnOneLine(text) << '\n';
  return static_cast<int>(ExitStatus::BadInput);
}

/// Goes on as the program that draws, which lies beside this one or, once installed, where only programs
/// look.
int DrawElsewhere(char** argv) {
  std::error_code error;
  const std::filesystem::path here = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  for (const std::filesystem::path& folder : {here, here / BIVOUAC_MODULES_FROM_PROGRAM})
    execv((folder / "bivouac-draw").c_str(), argv);
  return BadInput("there is no bivouac-draw beside this program: it cannot draw");
}

int Run(int argc, char** argv) {
  CLI::App app("Makes, checks and shows packs of puzzles.", "bivouac-packs");
  app.set_version_flag("--version", "bivouac-packs " BIVOUAC_VERSION, "Print the version");
  Command chosen;
  AddCommands(app, chosen);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) return app.exit(error);
    return BadInput(error.what());
  }
  if (!chosen) return BadInput("a command is needed, see --help");

  Terminal terminal{.In = std::cin,
                    .Out = std::cout,
                    .Err = std::cerr,
                    .Colour = UnderstandsColours(),
                    .Progress = isatty(STDERR_FILENO) != 0};
  const ExitStatus status = chosen(terminal);
  std::cout.flush();
  if (!std::cout) return BadInput("cannot write to standard output");
  return static_cast<int>(status);
}

}  // namespace

}  // namespace bivouac

int main(int argc, char** argv) {
  // Where files may only become so long, it is told as a full disk is.
  std::signal(SIGXFSZ, SIG_IGN);
  std::ios::sync_with_stdio(false);
  try {
    return bivouac::Run(argc, argv);
  } catch (const bivouac::DrawingWanted&) {
    return bivouac::DrawElsewhere(argv);
  } catch (const std::bad_alloc&) {
    return bivouac::BadInput("there is not enough memory");
  } catch (const std::exception& error) {
    return bivouac::BadInput(error.what());
  }
}
