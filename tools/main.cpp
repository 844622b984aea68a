// bivouac-packs: makes, checks and shows packs of puzzles. See bivouac-packs.6.
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <random>
#include <thread>
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

void AddMake(CLI::App& app, Command& chosen) {
  struct Input {
    MakeOptions Options;
    std::string Levels = "1-5";
  };
  const auto input = std::make_shared<Input>();
  input->Options.Request.Jobs = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
  CLI::App* make = app.add_subcommand("make", "Append new puzzles to a pack");
  make->add_option("--size", input->Options.Request.Size, "Lines of the board")
      ->required()
      ->check(CLI::Range(kMinSize, kMaxSize));
  make->add_option("--count", input->Options.Count, "How many to add")
      ->required()
      ->check(CLI::Range(1L, 100'000'000L));
  make->add_option("--level", input->Levels, "Keep only this level or range of levels");
  CLI::Option* seed =
      make->add_option("--seed", input->Options.Request.Seed, "The same seed gives the same puzzles")
          ->check([](const std::string& text) {
            const bool digits = text.find_first_not_of("0123456789") == std::string::npos;
            return digits ? std::string() : text + " is no whole number from 0 on";
          });
  make->add_option("--jobs", input->Options.Request.Jobs, "Threads; all cores unless told")
      ->check(CLI::Range(1, 1024));
  make->add_flag("--distinct", input->Options.Distinct, "Leave out what is alike, turned or mirrored");
  make->add_flag("--explained", input->Options.Explained, "Leave out what hints do not lead through");
  make->add_option("PACK", input->Options.Pack, "The pack")->required();
  make->callback([input, seed, &chosen] {
    const LevelRange levels = LevelsOf(input->Levels);
    input->Options.LowestLevel = levels.Lowest;
    input->Options.HighestLevel = levels.Highest;
    if (seed->count() == 0) {
      std::random_device random;
      input->Options.Request.Seed = std::uint64_t{random()} << 32 | random();
    }
    chosen = [input](Terminal& terminal) { return MakePack(input->Options, WatchForInterrupts(), terminal); };
  });
}

/// A command on any number of packs.
CLI::App* AddPacksCommand(CLI::App& app, const char* name, const char* help,
                          std::vector<std::string>& packs) {
  CLI::App* command = app.add_subcommand(name, help);
  command->add_option("PACK", packs, "The packs")->required();
  return command;
}

void AddTableFlag(CLI::App& command, Format& format) {
  command.add_flag_callback(
      "--tsv", [&format] { format = Format::Table; }, "Write a table, separated by tabs");
}

void AddListAndProve(CLI::App& app, Command& chosen) {
  struct Input {
    std::vector<std::string> Packs;
    Format Output = Format::Words;
  };
  const auto add = [&](const char* name, const char* help, auto run) {
    const auto input = std::make_shared<Input>();
    CLI::App* command = AddPacksCommand(app, name, help, input->Packs);
    AddTableFlag(*command, input->Output);
    command->callback([input, run, &chosen] {
      chosen = [input, run](Terminal& terminal) { return run(input->Packs, input->Output, terminal); };
    });
  };
  add("list", "One line a record: number, size, level, trees, best time", ListPacks);
  add("prove", "Verdict of the search for a second solution", ProvePacks);
}

void AddRate(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<RateOptions>();
  CLI::App* command =
      AddPacksCommand(app, "rate", "Level and difficulty, from trees and clues alone", options->Packs);
  AddTableFlag(*command, options->Output);
  command->add_flag("--write", options->Write, "Store the levels");
  command->add_flag("--steps", options->Steps, "Name the deductions, in order");
  command->callback([options, &chosen] {
    chosen = [options](Terminal& terminal) { return RatePacks(*options, terminal); };
  });
}

void AddCheckAndSort(CLI::App& app, Command& chosen) {
  struct Input {
    std::vector<std::string> Packs;
    bool Repair = false;
  };
  const auto input = std::make_shared<Input>();
  CLI::App* check =
      AddPacksCommand(app, "check", "Every fault in words; status 1 if there is any", input->Packs);
  check->add_flag("--repair", input->Repair, "Mend what can be, take out the rest, say what was done");
  check->callback([input, &chosen] {
    const auto command = input->Repair ? RepairPacks : CheckPacks;
    chosen = [input, command](Terminal& terminal) { return command(input->Packs, terminal); };
  });
  const auto pack = std::make_shared<std::string>();
  CLI::App* sort = app.add_subcommand("sort", "Sort a pack by level, then difficulty");
  sort->add_option("PACK", *pack, "The pack")->required();
  sort->callback(
      [pack, &chosen] { chosen = [pack](Terminal& terminal) { return SortPack(*pack, terminal); }; });
}

void AddMerge(CLI::App& app, Command& chosen) {
  struct Input {
    std::string Pack;
    std::vector<std::string> Others;
  };
  const auto input = std::make_shared<Input>();
  CLI::App* merge = app.add_subcommand("merge", "Append the puzzles of other packs, but for those alike");
  merge->add_option("OUT", input->Pack, "The pack that grows")->required();
  merge->add_option("IN", input->Others, "The other packs")->required();
  merge->callback([input, &chosen] {
    chosen = [input](Terminal& terminal) { return MergePacks(input->Pack, input->Others, terminal); };
  });
}

void AddShow(CLI::App& app, Command& chosen) {
  struct Input {
    std::string Pack;
    long Number = 1;
    bool Solution = false;
    bool Line = false;
    Reveal What() const { return Line ? Reveal::Line : Solution ? Reveal::Solution : Reveal::Puzzle; }
  };
  const auto input = std::make_shared<Input>();
  CLI::App* show = app.add_subcommand("show", "A board with its clues");
  show->add_option("PACK", input->Pack, "The pack")->required();
  show->add_option("NUMBER", input->Number, "The puzzle, counted from 1")->required();
  CLI::Option* solution = show->add_flag("--solution", input->Solution, "Show tents and grass too");
  show->add_flag("--line", input->Line, "The puzzle as a line of text, for add")->excludes(solution);
  show->callback([input, &chosen] {
    chosen = [input](Terminal& terminal) {
      return ShowPuzzle(input->Pack, input->Number, input->What(), terminal);
    };
  });
}

void AddAdd(CLI::App& app, Command& chosen) {
  const auto pack = std::make_shared<std::string>();
  CLI::App* add = app.add_subcommand("add", "Append puzzles that are given as lines of text");
  add->add_option("PACK", *pack, "The pack")->required();
  add->add_option("LINES", "Standard input, -")->required()->check(CLI::IsMember({"-"}));
  add->callback(
      [pack, &chosen] { chosen = [pack](Terminal& terminal) { return AddPuzzles(*pack, terminal); }; });
}

void AddHint(CLI::App& app, Command& chosen) {
  const auto options = std::make_shared<HintOptions>();
  CLI::App* hint = app.add_subcommand("hint", "The next hint for a position, as the game gives it");
  hint->add_option("PACK", options->Pack, "The pack; - reads positions from standard input")->required();
  CLI::Option* number = hint->add_option("NUMBER", options->Number, "The puzzle, counted from 1");
  CLI::Option* board = hint->add_option("--board", options->Board, "The position, a digit a cell");
  AddTableFlag(*hint, options->Output);
  hint->callback([options, number, board, &chosen] {
    if (options->Pack == "-") {
      if (options->Output != Format::Table)
        throw CLI::ValidationError("-", "positions from standard input need --tsv");
      if (number->count() + board->count() != 0)
        throw CLI::ValidationError("-", "standard input takes no NUMBER and no --board");
      chosen = GiveHintsForInput;
      return;
    }
    if (number->count() == 0) throw CLI::RequiredError("NUMBER");
    if (board->count() != 0 && options->Board.empty()) throw CLI::ValidationError("--board", "no digits");
    chosen = [options](Terminal& terminal) { return GiveHint(*options, terminal); };
  });
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
  app.require_subcommand(0, 1);
  app.set_version_flag("--version", "bivouac-packs " BIVOUAC_VERSION, "Print the version");
  Command chosen;
  AddMake(app, chosen);
  AddListAndProve(app, chosen);
  AddShow(app, chosen);
  AddAdd(app, chosen);
  AddRate(app, chosen);
  AddCheckAndSort(app, chosen);
  AddMerge(app, chosen);
  AddHint(app, chosen);
  AddExplain(app, chosen);
  AddStats(app, chosen);
  AddPrint(app, chosen);
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
